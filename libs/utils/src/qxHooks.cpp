// One function pointer for each event. They are read relaxed: a function is set while libraries are loaded,
// when nothing occurs yet.
#include "qxHooks.h"

#include <atomic>

namespace qx::hooks
{

namespace
{

constinit std::atomic<function> functions[eventCount] = {};

} // namespace

void set(event occurring, function called) noexcept
{
    functions[occurring].store(called, std::memory_order_relaxed);
}

void call(event occurring) noexcept
{
    if (const function called = functions[occurring].load(std::memory_order_relaxed))
        called();
}

} // namespace qx::hooks
