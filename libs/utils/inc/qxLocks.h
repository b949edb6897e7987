// Counters and locks.
#pragma once

#include "qxCompiler.h"
#include "qxExport.h"
#include "qxTypes.h"

#include <cstdint>

namespace qx
{

// Atomic counters: each gives the new value.
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

inline uint interlockedAdd(volatile uint* counter, uint added) noexcept
{
    return atomics::add(*counter, added);
}
inline uint interlockedSubtract(volatile uint* counter, uint taken) noexcept
{
    return atomics::subtract(*counter, taken);
}

// The same for the 32-bit `long` and `unsigned long` of the system, whatever they are on the platform.
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

// The present value of such a counter. Who reads 1 sees what those did who have counted down before.
inline ulong32 interlockedRead(const ulong32* counter) noexcept
{
    using plain = std::conditional_t<sizeof(long) == 4, unsigned long, uint>;
    return ulong32(atomics::loadAcquire(*reinterpret_cast<const plain*>(counter)));
}

// A spin lock that its owner may take again. Waiting threads yield after a short spin.
class QXUTILS_API spinLockerRecursive
{
public:
    constexpr spinLockerRecursive() noexcept = default;
    spinLockerRecursive(const spinLockerRecursive&) = delete;
    spinLockerRecursive& operator=(const spinLockerRecursive&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    std::uintptr_t mOwner = 0; // identity of the owning thread, 0 when free; accessed atomically
    uint mDepth = 0;           // touched by the owner alone
};

// Holds a holder's lock for its own lifetime.
class QXUTILS_API genericValueHolderLocker
{
public:
    // Where a holder's lock is made: it lies in the holder's own block.
    static spinLockerRecursive createLocker() noexcept { return spinLockerRecursive(); }

    explicit genericValueHolderLocker(spinLockerRecursive& lock) noexcept : mLock(lock) { mLock.lock(); }
    ~genericValueHolderLocker() { mLock.unlock(); }
    genericValueHolderLocker(const genericValueHolderLocker&) = delete;
    genericValueHolderLocker& operator=(const genericValueHolderLocker&) = delete;

private:
    spinLockerRecursive& mLock;
};

// Holds the one lock of the process that guards shared pointers which several threads can reach.
class QXUTILS_API sharedPtrLocker
{
public:
    sharedPtrLocker() noexcept;
    ~sharedPtrLocker();
    sharedPtrLocker(const sharedPtrLocker&) = delete;
    sharedPtrLocker& operator=(const sharedPtrLocker&) = delete;
};

} // namespace qx
