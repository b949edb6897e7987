// The bounds of the calling thread's stack, asked of the platform once for each thread.
#include "qxStack.h"

#include "qxException.h"
#include "qxPlatform.h"

#include <algorithm>

namespace qx::stack
{

namespace
{

constexpr std::uintptr_t usualReserve = 256 * 1024;

constinit QX_THREAD_LOCAL limits bounds{0, UINTPTR_MAX}; // with this reserve they have not been read

limits readLimits() noexcept
{
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;
    threadStackBounds(low, high);
    if (low >= high)
        return {};
    return {low, std::min(usualReserve, (high - low) / 2)};
}

} // namespace

const limits& threadLimits() noexcept
{
    if (bounds.reserve == UINTPTR_MAX)
        bounds = readLimits();
    return bounds;
}

void raiseExhausted()
{
    throw unexpectedErrorException(L"stack exhausted");
}

} // namespace qx::stack
