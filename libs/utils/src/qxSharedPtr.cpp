// Use counters of shared pointers: four bytes each, from the free lists.
#include "qxSharedPtr.h"

#include "qxFreeLists.h"

#include <new>

namespace qx
{

ulong32* shptr::allocCounter()
{
    void* const storage = freelists::take(sizeof(ulong32));
    if (!storage)
        throw std::bad_alloc();
    return new (storage) ulong32();
}

void shptr::releaseCounter(ulong32* counter) noexcept
{
    freelists::give(counter, sizeof(ulong32));
}

} // namespace qx
