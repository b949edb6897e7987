// Small blocks from thread-caching free lists, for objects that are made and ended all the time.
//
// Each thread keeps the blocks it frees, by size, up to a cap, and takes from there first. A thread's lists
// are given back to the heap when it ends.
#pragma once

#include "qxExport.h"

#include <cstddef>
#include <new>

namespace qx
{

namespace freelists
{

// Storage of at least `size` bytes, aligned for everything. Null without memory.
QXUTILS_API void* take(std::size_t size) noexcept;
// `size` is what was asked for. Null is ignored.
QXUTILS_API void give(void* freed, std::size_t size) noexcept;

} // namespace freelists

// Base of classes whose objects come from the free lists. One that is deleted through a base of its own needs
// a virtual destructor there.
class fromFreeLists
{
public:
    static void* operator new(std::size_t size) // NOLINT(misc-new-delete-overloads): the sized delete matches
    {
        if (void* const storage = freelists::take(size))
            return storage;
        throw std::bad_alloc();
    }
    static void operator delete(void* freed, std::size_t size) noexcept { freelists::give(freed, size); }
};

// For containers whose storage comes from the free lists.
template <class T>
struct freeListAllocator
{
    using value_type = T;

    freeListAllocator() noexcept = default;
    template <class Other>
    freeListAllocator(const freeListAllocator<Other>&) noexcept
    {}

    T* allocate(std::size_t count)
    {
        if (void* const storage = freelists::take(count * sizeof(T)))
            return static_cast<T*>(storage);
        throw std::bad_alloc();
    }
    void deallocate(T* freed, std::size_t count) noexcept { freelists::give(freed, count * sizeof(T)); }

    friend bool operator==(const freeListAllocator&, const freeListAllocator&) noexcept { return true; }
};

} // namespace qx
