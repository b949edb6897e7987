// The end of the machine stack, seen coming.
//
// Nesting and recursion are bounded by the stack alone. Whatever recurses over input (parsing, running,
// copying, converting) asks here first, and fails with an exception while there is still room to handle it.
#pragma once

#include "qxCompiler.h"
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
inline constinit QX_THREAD_LOCAL bool isWatched = false;

} // namespace detail

// True where the end is known to be far, without a call: the usual case. Otherwise isExhausted has to tell.
inline bool isFar() noexcept
{
    return frameAddress() - detail::known.end >= detail::known.reserve;
}

// While it is on, isFar is false everywhere in the library that says so, for the calling thread: whoever
// takes a short way where the end is far takes the other one, which may look at more than the stack.
inline void setWatched(bool on) noexcept
{
    detail::isWatched = on;
    detail::known = {0, UINTPTR_MAX};
}

// A frame outside the thread's bounds (a fibre, an alternate stack) is never exhausted: nothing is known of
// its end.
inline bool isExhausted() noexcept
{
    if (isFar()) [[likely]]
        return false;
    const limits& bounds = threadLimits();
    if (!detail::isWatched)
        detail::known = bounds;
    return frameAddress() - bounds.end < bounds.reserve;
}

inline void check()
{
    if (isExhausted())
        raiseExhausted();
}

} // namespace qx::stack
