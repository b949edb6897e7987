// Keeps the reasons for the long way: the library below calls a hook when logging or the conversions change,
// and the reason is worked out anew then.
#include "statements/qxScriptLongWay.h"

#include "qxCell.h"
#include "qxHooks.h"
#include "qxLocks.h"
#include "qxLog.h"

namespace qx::script
{

constinit std::atomic<unsigned> longWayReasons = 0;

namespace
{

// Asked and set under one lock, so that of two changes at a time the later state stays.
template <class Applies>
void refresh(longWay reason, const Applies& applies) noexcept
{
    static constinit spinLockerRecursive lock;
    const genericValueHolderLocker guard(lock);
    setLongWay(reason, applies());
}

void refreshTraced() noexcept
{
    refresh(longWayTraced, [] { return qxlog::logManager::listens(qxlog::level::trace); });
}

void refreshConverters() noexcept
{
    refresh(longWayConverters, [] { return !cell::onlyOwnConversions(); });
}

struct listening
{
    listening()
    {
        hooks::set(hooks::logging, refreshTraced);
        hooks::set(hooks::conversions, refreshConverters);
        refreshTraced(); // a host may have set its sink and its converters before this library was loaded
        refreshConverters();
    }
    ~listening()
    {
        hooks::set(hooks::logging, nullptr);
        hooks::set(hooks::conversions, nullptr);
    }
    listening(const listening&) = delete;
    listening& operator=(const listening&) = delete;
};

const listening whileLoaded;

} // namespace

void setLongWay(longWay reason, bool applies) noexcept
{
    if (applies)
        longWayReasons.fetch_or(reason, std::memory_order_relaxed);
    else
        longWayReasons.fetch_and(~static_cast<unsigned>(reason), std::memory_order_relaxed);
}

} // namespace qx::script
