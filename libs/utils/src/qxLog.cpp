// Loggers and the sink behind them. Level and sink are two atomics, read relaxed, since all
// code of a program may ask whether somebody listens.
#include "qxLog.h"

#include "qxHooks.h"
#include "qxLocks.h"

#include <atomic>

namespace qxlog
{

namespace
{

std::atomic<int> mostWritten{static_cast<int>(level::off)};
std::atomic<sink*> target{nullptr};

} // namespace

sink::~sink() = default;

bool logger::listens(level severity) noexcept
{
    return logManager::listens(severity);
}

void logger::addRef() noexcept
{
    qx::interlockedIncrement(&mReferences);
}

void logger::release() noexcept
{
    if (qx::interlockedDecrement(&mReferences) == 0)
        delete this;
}

void logger::write(level severity, const qx::string& text) const
{
    if (sink* const receiver = target.load(std::memory_order_acquire))
        receiver->write(severity, mName, text);
}

qx::refPtr<logger> logManager::getLogger(const wchar_t* name)
{
    return qx::refPtr<logger>(new logger(name));
}

bool logManager::listens(level severity) noexcept
{
    return static_cast<int>(severity) <= mostWritten.load(std::memory_order_relaxed) &&
           target.load(std::memory_order_relaxed) != nullptr;
}

void logManager::setLevel(level most) noexcept
{
    mostWritten.store(static_cast<int>(most), std::memory_order_relaxed);
    qx::hooks::call(qx::hooks::logging);
}

level logManager::currentLevel() noexcept
{
    return static_cast<level>(mostWritten.load(std::memory_order_relaxed));
}

sink* logManager::setSink(sink* receiver) noexcept
{
    sink* const previous = target.exchange(receiver, std::memory_order_acq_rel);
    qx::hooks::call(qx::hooks::logging);
    return previous;
}

} // namespace qxlog
