// The bounds of a thread's stack, from the thread library. That of the main thread reads
// /proc.
#include "qxPlatform.h"

#include <pthread.h>

namespace qx
{

void threadStackBounds(std::uintptr_t& low, std::uintptr_t& high)
{
    low = high = 0;
    pthread_attr_t attributes;
    if (::pthread_getattr_np(::pthread_self(), &attributes) != 0)
        return;
    void* start = nullptr;
    std::size_t size = 0;
    if (::pthread_attr_getstack(&attributes, &start, &size) == 0) {
        low = reinterpret_cast<std::uintptr_t>(start);
        high = low + size;
    }
    ::pthread_attr_destroy(&attributes);
}

} // namespace qx
