// What the public headers want of a compiler beyond the standard: that of g++ and clang, or what any other
// has.
//
// QX_STANDARD_ONLY chooses the second for every compiler. Both do the same, so one program may mix them.
#pragma once

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "qxScript needs C++20: -std=c++20, /std:c++20 or newer"
#endif

#if defined(__GNUC__) && !defined(QX_STANDARD_ONLY)
#define QX_GNU_COMPILER 1
#else
#define QX_GNU_COMPILER 0
#endif

#if !QX_GNU_COMPILER
#include <atomic>
#include <type_traits>
#endif
#include <cstdint>

//     QX_VISIBLE        seen by other libraries, where those of ELF hide what is not
//     QX_NOINLINE       a function that is called, so that its callers stay short
//     QX_INITIAL_EXEC   a variable of each thread that is found without a call; the loader has little room for
//                       such in a library that a running program opens
#if QX_GNU_COMPILER && !defined(_WIN32)
#define QX_VISIBLE __attribute__((visibility("default")))
#else
#define QX_VISIBLE
#endif
#if QX_GNU_COMPILER
#define QX_NOINLINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define QX_NOINLINE __declspec(noinline)
#else
#define QX_NOINLINE
#endif
#if QX_GNU_COMPILER && defined(__linux__) && defined(__x86_64__)
#define QX_INITIAL_EXEC __attribute__((tls_model("initial-exec"), visibility("hidden")))
#else
#define QX_INITIAL_EXEC
#endif

namespace qx
{

// An address within the frame of the caller.
inline std::uintptr_t frameAddress() noexcept
{
#if QX_GNU_COMPILER
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
#else
    // Assigned and not initialised: compilers refuse the plain address of a local that is returned, or make it null.
    const char here = 0;
    const volatile char* volatile place = nullptr;
    place = &here;
    return reinterpret_cast<std::uintptr_t>(place);
#endif
}

// Plain integers, accessed by several threads.
namespace atomics
{

#if QX_GNU_COMPILER

template <class T>
T loadRelaxed(const T& place) noexcept
{
    return __atomic_load_n(&place, __ATOMIC_RELAXED);
}
template <class T>
T loadAcquire(const T& place) noexcept
{
    return __atomic_load_n(&place, __ATOMIC_ACQUIRE);
}
template <class T>
void storeRelaxed(T& place, T value) noexcept
{
    __atomic_store_n(&place, value, __ATOMIC_RELAXED);
}
// Both give the new value, and order what comes before and after.
template <class T>
T add(volatile T& place, T added) noexcept
{
    return __atomic_add_fetch(&place, added, __ATOMIC_ACQ_REL);
}
template <class T>
T subtract(volatile T& place, T taken) noexcept
{
    return __atomic_sub_fetch(&place, taken, __ATOMIC_ACQ_REL);
}
// True where `place` was `expected` and is `value` now. Releases what came before.
template <class T>
bool replaceRelease(T& place, T expected, T value) noexcept
{
    return __atomic_compare_exchange_n(&place, &expected, value, false, __ATOMIC_RELEASE, __ATOMIC_RELAXED);
}

#else

template <class T>
T loadRelaxed(const T& place) noexcept
{
    return std::atomic_ref<T>(const_cast<T&>(place)).load(std::memory_order_relaxed);
}
template <class T>
T loadAcquire(const T& place) noexcept
{
    return std::atomic_ref<T>(const_cast<T&>(place)).load(std::memory_order_acquire);
}
template <class T>
void storeRelaxed(T& place, T value) noexcept
{
    std::atomic_ref<T>(place).store(value, std::memory_order_relaxed);
}
template <class T>
T add(volatile T& place, T added) noexcept
{
    // Unsigned, since the sum of the old value must wrap here as it does in memory.
    using sum = std::make_unsigned_t<T>;
    const T old = std::atomic_ref<T>(const_cast<T&>(place)).fetch_add(added, std::memory_order_acq_rel);
    return static_cast<T>(static_cast<sum>(old) + static_cast<sum>(added));
}
template <class T>
T subtract(volatile T& place, T taken) noexcept
{
    using difference = std::make_unsigned_t<T>;
    const T old = std::atomic_ref<T>(const_cast<T&>(place)).fetch_sub(taken, std::memory_order_acq_rel);
    return static_cast<T>(static_cast<difference>(old) - static_cast<difference>(taken));
}
template <class T>
bool replaceRelease(T& place, T expected, T value) noexcept
{
    return std::atomic_ref<T>(place).compare_exchange_strong(expected, value, std::memory_order_release,
                                                             std::memory_order_relaxed);
}

#endif

} // namespace atomics

} // namespace qx
