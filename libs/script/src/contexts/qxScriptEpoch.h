// The epoch of a thread: it moves whenever code outside the engine may have run on the thread, or the engine
// has touched the system. What was found out about files holds within an epoch.
#pragma once

#include "qxExport.h"

#include <cstdint>

namespace qx::script::epoch
{

inline constinit QX_THREAD_LOCAL std::uint64_t current = 1;

inline void move() noexcept
{
    ++current;
}

// Moves the epoch where a piece of work that leaves the engine begins, and where it ends.
class outside
{
public:
    outside() noexcept { move(); }
    ~outside() { move(); }
    outside(const outside&) = delete;
    outside& operator=(const outside&) = delete;
};

} // namespace qx::script::epoch
