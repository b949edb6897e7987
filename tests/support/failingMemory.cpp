// The program's operators new and delete, within limits.
#include "failingMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace
{

struct limits
{
    std::size_t largest = SIZE_MAX;
    std::size_t left = SIZE_MAX;
    bool isReached = false;

    bool allow(std::size_t size) noexcept
    {
        constexpr std::size_t few = 4096; // what telling a failure takes
        if (size > largest || (size > left && size > few)) {
            isReached = true;
            return false;
        }
        if (left != SIZE_MAX)
            left -= std::min(size, left);
        return true;
    }
};

thread_local constinit limits inForce;

} // namespace

memoryLimit::memoryLimit(std::size_t largest, std::size_t inAll) noexcept
{
    inForce = {largest, inAll, false};
}

memoryLimit::~memoryLimit()
{
    inForce = limits();
}

bool memoryLimit::isReached() const noexcept
{
    return inForce.isReached;
}

// The program's own operators serve the libraries too, the sanitizers' do not.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return inForce.allow(size) ? std::malloc(size ? size : 1) : nullptr;
}

void* operator new(std::size_t size)
{
    if (void* const storage = operator new(size, std::nothrow))
        return storage;
    throw std::bad_alloc();
}

void operator delete(void* storage) noexcept
{
    std::free(storage);
}

void operator delete(void* storage, std::size_t) noexcept
{
    std::free(storage);
}

void operator delete(void* storage, const std::nothrow_t&) noexcept
{
    std::free(storage);
}
