// Counters and locks: what objects use that several threads share. Nothing here allocates
// or throws, and everything may be used by any thread. Locks are kept for a few
// instructions; who waits for one that is held longer yields.
#pragma once

#include "qxCompiler.h"
#include "qxExport.h"
#include "qxTypes.h"

#include <cstdint>

namespace qx
{

// Atomic counters: each gives the new value, and orders what comes before and after on this
// thread, so an object whose count has come to 0 may be deleted at once. They wrap. The
// pointer may not be null.
inline int interlockedIncrement(volatile int* counter) noexcept
{
    return atomics::add(*counter, 1);
}
inline int interlockedDecrement(volatile int* counter) noexcept
{
    return atomics::subtract(*counter, 1);
}
inline uint interlockedIncrement(volatile uint* counter) noexcept
{
    return atomics::add(*counter, 1u);
}
inline uint interlockedDecrement(volatile uint* counter) noexcept
{
    return atomics::subtract(*counter, 1u);
}

// Several counts at a time, for whoever hands out or gives back many shares at once.
inline uint interlockedAdd(volatile uint* counter, uint added) noexcept
{
    return atomics::add(*counter, added);
}
inline uint interlockedSubtract(volatile uint* counter, uint taken) noexcept
{
    return atomics::subtract(*counter, taken);
}

// As above, for the 32-bit `long` and `unsigned long` of the system, whatever they are on
// the platform: counters of shared pointers are such.
template <class Counter>
requires std::same_as<Counter, long32> || std::same_as<Counter, ulong32>
    Counter interlockedIncrement(volatile Counter* counter)
noexcept
{
    using plain = std::conditional_t<std::same_as<Counter, long32>, int, uint>;
    return Counter(interlockedIncrement(reinterpret_cast<volatile plain*>(counter)));
}
template <class Counter>
requires std::same_as<Counter, long32> || std::same_as<Counter, ulong32>
    Counter interlockedDecrement(volatile Counter* counter)
noexcept
{
    using plain = std::conditional_t<std::same_as<Counter, long32>, int, uint>;
    return Counter(interlockedDecrement(reinterpret_cast<volatile plain*>(counter)));
}

// The present value of a counter. Who reads 1 sees what those did who have counted down
// before, and may take the object for his own: nobody else is left to count up.
inline ulong32 interlockedRead(const ulong32* counter) noexcept
{
    using plain = std::conditional_t<sizeof(long) == 4, unsigned long, uint>;
    return ulong32(atomics::loadAcquire(*reinterpret_cast<const plain*>(counter)));
}

// A spin lock that its owner may take again, and gives back as often as it took it.
//
//     static constinit qx::spinLockerRecursive lock;
//     const qx::genericValueHolderLocker guard(lock); // until the end of the block
//
// Waiting threads yield after a short spin; they get the lock in no particular order. For
// short work only: no allocation, no conversion, nothing of a host's. One of 16 bytes lies
// in each holder of a value.
class QXUTILS_API spinLockerRecursive
{
public:
    // Free. Constant, so that a static lock exists before any constructor runs. Ending a
    // lock that is taken is not allowed.
    constexpr spinLockerRecursive() noexcept = default;
    spinLockerRecursive(const spinLockerRecursive&) = delete;
    spinLockerRecursive& operator=(const spinLockerRecursive&) = delete;

    // Waits until the lock is free or the caller's own. Everything that its owner before
    // has done is seen afterwards.
    void lock() noexcept;
    // By the owner alone.
    void unlock() noexcept;

private:
    std::uintptr_t mOwner = 0; // identity of the owning thread, 0 when free; accessed atomically
    uint mDepth = 0;           // touched by the owner alone
};

// Takes a lock and holds it for its own lifetime, which lies within that of the lock.
class QXUTILS_API genericValueHolderLocker
{
public:
    // How a holder makes its lock, which lies in the holder's own block.
    static spinLockerRecursive createLocker() noexcept { return spinLockerRecursive(); }

    // Waits for the lock.
    explicit genericValueHolderLocker(spinLockerRecursive& lock) noexcept : mLock(lock) { mLock.lock(); }
    ~genericValueHolderLocker() { mLock.unlock(); }
    genericValueHolderLocker(const genericValueHolderLocker&) = delete;
    genericValueHolderLocker& operator=(const genericValueHolderLocker&) = delete;

private:
    spinLockerRecursive& mLock;
};

// Holds the one lock of the process that guards shared pointers which several threads can
// reach. For its own lifetime; the same thread may nest several.
//
//     qx::sharedPtr<settings> mine;
//     {
//         const qx::sharedPtrLocker guard;
//         mine = common; // written by others under the same lock
//     }
class QXUTILS_API sharedPtrLocker
{
public:
    // Waits for the lock. What a pointer that is replaced meanwhile lets go of ends under
    // it, unless it is swapped out first.
    sharedPtrLocker() noexcept;
    ~sharedPtrLocker();
    sharedPtrLocker(const sharedPtrLocker&) = delete;
    sharedPtrLocker& operator=(const sharedPtrLocker&) = delete;
};

} // namespace qx
