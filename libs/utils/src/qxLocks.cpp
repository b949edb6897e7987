// Spin locks that yield. A thread is known by the address of a variable of its own, which
// costs no call to ask for.
#include "qxLocks.h"

#include <thread>

namespace qx
{

namespace
{

// The address of a thread's own variable is its identity.
std::uintptr_t thisThread() noexcept
{
    static thread_local char identity;
    return reinterpret_cast<std::uintptr_t>(&identity);
}

spinLockerRecursive& processLock() noexcept
{
    static constinit spinLockerRecursive lock;
    return lock;
}

} // namespace

void spinLockerRecursive::lock() noexcept
{
    constexpr int spinsBeforeYield = 64;
    const std::uintptr_t self = thisThread();
    if (__atomic_load_n(&mOwner, __ATOMIC_RELAXED) != self) {
        std::uintptr_t expected = 0;
        for (int spins = 0;
             !__atomic_compare_exchange_n(&mOwner, &expected, self, true, __ATOMIC_ACQUIRE, __ATOMIC_RELAXED);
             expected = 0)
            if (++spins > spinsBeforeYield)
                std::this_thread::yield();
    }
    ++mDepth;
}

void spinLockerRecursive::unlock() noexcept
{
    if (--mDepth == 0)
        __atomic_store_n(&mOwner, std::uintptr_t(0), __ATOMIC_RELEASE);
}

sharedPtrLocker::sharedPtrLocker() noexcept
{
    processLock().lock();
}

sharedPtrLocker::~sharedPtrLocker()
{
    processLock().unlock();
}

} // namespace qx
