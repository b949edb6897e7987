// Switches of the engine, and the limit of steps.
#include "qxScriptSettings.h"

#include "statements/qxScriptLongWay.h"
#include "statements/qxScriptSteps.h"

#include "qxException.h"
#include "qxStack.h"

namespace qx::script::settings
{

namespace
{

constinit std::atomic<bool> compiles = true;
constinit std::atomic<bool> strict = false;

constexpr std::uint64_t unlimited = UINT64_MAX;
constinit QX_THREAD_LOCAL std::uint64_t stepsLeft = unlimited;

} // namespace

bool shortCuts() noexcept
{
    return !(longWayReasons.load(std::memory_order_relaxed) & longWayWanted);
}

void setShortCuts(bool on) noexcept
{
    setLongWay(longWayWanted, !on);
}

bool compiled() noexcept
{
    return compiles.load(std::memory_order_relaxed);
}

void setCompiled(bool on) noexcept
{
    compiles.store(on, std::memory_order_relaxed);
}

bool strictFileCheck() noexcept
{
    return strict.load(std::memory_order_relaxed);
}

void setStrictFileCheck(bool on) noexcept
{
    strict.store(on, std::memory_order_relaxed);
}

std::uint64_t stepLimit() noexcept
{
    return stepsLeft;
}

void setStepLimit(std::uint64_t steps) noexcept
{
    stepsLeft = steps;
    stack::setWatched(steps != unlimited);
}

} // namespace qx::script::settings

void qx::script::takeStep()
{
    using namespace settings;
    if (stepsLeft == unlimited)
        return;
    if (stepsLeft == 0)
        throw unexpectedErrorException(L"step limit reached");
    --stepsLeft;
}
