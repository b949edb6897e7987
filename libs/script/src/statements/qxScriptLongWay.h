// Whether statements may take short cuts at this moment, as one load.
#pragma once

#include <atomic>

namespace qx::script
{

// Why every statement has to go the long way.
enum longWay : unsigned
{
    longWayWanted = 1,    // settings::setShortCuts(false)
    longWayTraced = 2,    // somebody listens to the run of each statement
    longWayConverters = 4 // a host has conversions of its own between small values and text
};

// Those that apply; kept by qxScriptLongWay.cpp alone.
extern std::atomic<unsigned> longWayReasons;

inline bool shortCutsAllowed() noexcept
{
    return longWayReasons.load(std::memory_order_relaxed) == 0;
}
inline bool isTraced() noexcept
{
    return longWayReasons.load(std::memory_order_relaxed) & longWayTraced;
}

void setLongWay(longWay reason, bool applies) noexcept;

} // namespace qx::script
