// Switches of the engine.
#include "qxScriptSettings.h"

#include "qxCell.h"

namespace qx::script::settings
{

namespace
{

constinit std::atomic<bool> strict = false;

} // namespace

bool shortCuts() noexcept
{
    return !(cell::longWayReasons.load(std::memory_order_relaxed) & cell::longWayWanted);
}

void setShortCuts(bool on) noexcept
{
    cell::setLongWay(cell::longWayWanted, !on);
}

bool strictFileCheck() noexcept
{
    return strict.load(std::memory_order_relaxed);
}

void setStrictFileCheck(bool on) noexcept
{
    strict.store(on, std::memory_order_relaxed);
}

} // namespace qx::script::settings
