// The bounds of a thread's stack, which Windows keeps at hand.
#include "qxPlatform.h"

#include <windows.h>

namespace qx
{

void threadStackBounds(std::uintptr_t& low, std::uintptr_t& high)
{
    ULONG_PTR lowest = 0;
    ULONG_PTR highest = 0;
    GetCurrentThreadStackLimits(&lowest, &highest);
    low = lowest;
    high = highest;
}

} // namespace qx
