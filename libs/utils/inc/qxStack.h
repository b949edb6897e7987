// The end of the machine stack, seen coming.
//
// Nesting and recursion are bounded by the stack alone. Whatever recurses over input (parsing, running,
// copying, converting) asks here first, and fails with an exception while there is still room to handle it.
#pragma once

#include "qxExport.h"

#include <cstdint>

namespace qx::stack
{

// A thread's stack as far as the check asks: the address of its end, and how many bytes before that end work
// stops. The reserve is 256 KiB, or half of a smaller stack, and 0 where the bounds are unknown.
struct limits
{
    std::uintptr_t end = 0;
    std::uintptr_t reserve = 0;
};

// The calling thread's, read from the system once per thread.
QXUTILS_API const limits& threadLimits() noexcept;

// Throws unexpectedErrorException "stack exhausted".
[[noreturn]] QXUTILS_API void raiseExhausted();

namespace detail
{

// What this library knows of the calling thread: at first that every address is too near to the end.
inline constinit QX_THREAD_LOCAL limits known{0, UINTPTR_MAX};

} // namespace detail

// A frame outside the thread's bounds (a fibre, an alternate stack) is never exhausted: nothing is known of
// its end.
inline bool isExhausted() noexcept
{
    const auto frame = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    if (frame - detail::known.end >= detail::known.reserve) [[likely]]
        return false;
    detail::known = threadLimits();
    return frame - detail::known.end < detail::known.reserve;
}

inline void check()
{
    if (isExhausted())
        raiseExhausted();
}

} // namespace qx::stack
