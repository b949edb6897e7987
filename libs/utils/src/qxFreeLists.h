// Small blocks from thread-caching free lists.
//
// Each thread keeps the blocks it frees, by size, up to a cap, and takes from there first. A thread's lists
// are given back to the heap when it ends.
#pragma once

#include <cstddef>

namespace qx::freelists
{

// Storage of at least `size` bytes, aligned for everything. Null without memory.
void* take(std::size_t size) noexcept;
// `size` is what was asked for. Null is ignored.
void give(void* freed, std::size_t size) noexcept;

} // namespace qx::freelists
