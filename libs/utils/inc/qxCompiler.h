// What the public headers want of a compiler beyond the standard: that of g++ and clang, or
// what any other has.
//
// QX_STANDARD_ONLY chooses the second for every compiler. Both do the same and lay out the
// same, so one program may mix them. This header is the first that every other one
// includes, so it also refuses a compiler that is too old.
//
// Nothing here owns or throws anything. The functions may be called from any thread.
#pragma once

// Said here by name, since what an older compiler says of the first concept it meets helps
// nobody.
#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "qxScript needs C++20: -std=c++20, /std:c++20 or newer"
#endif

// Whether attributes and built-ins of g++ and clang may be used.
#if defined(__GNUC__) && !defined(QX_STANDARD_ONLY)
#define QX_GNU_COMPILER 1
#else
#define QX_GNU_COMPILER 0
#endif

// Only the standard's means need these; with built-ins the header costs next to nothing.
#if !QX_GNU_COMPILER
#include <atomic>
#include <type_traits>
#endif
#include <cstdint>

//     QX_VISIBLE        seen by other libraries, where those of ELF hide what is not
//     QX_NOINLINE       a function that is called, so that its callers stay short and save no registers
//     QX_INITIAL_EXEC   a variable of each thread that is found without a call; the loader has little room for
//                       such in a library that a running program opens, so these are few and small
//
// Each is empty where the compiler has nothing of the kind: then the program is as correct
// and a little slower.
#if QX_GNU_COMPILER && !defined(_WIN32)
// All is compiled with hidden visibility; on Windows the export attributes of qxExport.h do
// this.
#define QX_VISIBLE __attribute__((visibility("default")))
#else
#define QX_VISIBLE
#endif
#if QX_GNU_COMPILER
// Written between the template head or `static` and the type of the result.
#define QX_NOINLINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define QX_NOINLINE __declspec(noinline)
#else
#define QX_NOINLINE
#endif
// A thread's variable of an ordinary library is found through a call into the loader; with
// this, at a fixed distance from the thread's own block. The room for such is what the
// loader keeps for libraries that are opened late, about two kilobytes for all of a
// process.
#if QX_GNU_COMPILER && defined(__linux__) && defined(__x86_64__)
// Elsewhere the loader keeps no room, or the attribute means nothing: an ordinary variable
// then.
#define QX_INITIAL_EXEC __attribute__((tls_model("initial-exec"), visibility("hidden")))
#else
#define QX_INITIAL_EXEC
#endif

namespace qx
{

// An address within the frame of the caller, to be compared with the bounds of the thread's
// stack. Always inlined or a frame further in, which makes no difference against a reserve
// of many kilobytes.
inline std::uintptr_t frameAddress() noexcept
{
#if QX_GNU_COMPILER
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
#else
    // Assigned and not initialised: compilers refuse the plain address of a local that is
    // returned, or make it null.
    const char here = 0;
    const volatile char* volatile place = nullptr;
    place = &here;
    return reinterpret_cast<std::uintptr_t>(place);
#endif
}

// Plain integers, accessed by several threads:
//
//     mutable std::uint64_t mState = 0;
//     ...
//     if (atomics::loadAcquire(mState) == ready) ...
//
// For members whose size and place others rely on, where a std::atomic would change the
// layout or drag <atomic> into each source that includes a header. T is an integer or a
// bool of at most 8 bytes, naturally aligned; every access of such a place goes through
// here while other threads can reach it. Lock-free on every platform that the library runs
// on.
namespace atomics
{

#if QX_GNU_COMPILER

// The value at `place`. Orders nothing: what is read through it needs another way to be
// published.
template <class T>
T loadRelaxed(const T& place) noexcept
{
    return __atomic_load_n(&place, __ATOMIC_RELAXED);
}
// The value at `place`; what its writer did before a release is seen by the caller from
// here on.
template <class T>
T loadAcquire(const T& place) noexcept
{
    return __atomic_load_n(&place, __ATOMIC_ACQUIRE);
}
// Puts `value` in place. Orders nothing.
template <class T>
void storeRelaxed(T& place, T value) noexcept
{
    __atomic_store_n(&place, value, __ATOMIC_RELAXED);
}
// Both give the new value, and order what comes before and after. They wrap at the width of
// T, for signed types too.
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
// Compare and exchange: true where `place` was `expected` and is `value` now; false, with
// nothing changed, where it was anything else. Never fails without that reason. A success
// releases what came before; a failure orders nothing.
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
// By the standard's means, with the contracts above. std::atomic_ref takes no const and no
// volatile, though it changes neither.
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
    // Unsigned, since the sum of the old value must wrap here as it does in memory.
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
