// sharedPtr: a pointer with a use counter beside it; const_sharedPtr: its read-only twin.
//
//     qx::sharedPtr<qx::conditions::condition> first(qx::conditions::condition::parse(text)); // owns, count 1
//     qx::sharedPtr<qx::conditions::condition> second = first;                                // count 2
//     if (second) ...
//
// Two words, the object and its counter; both null or both set. The last one to let go
// deletes the object through Delete. Copies count atomically, so pointers to one object may
// live on several threads; one sharedPtr object is not to be written by two threads at once
// (sharedPtrLocker is for those). The object is as safe as its class makes it.
//
// What differs from the standard's pointer: no casts between types, so whoever owns a T
// owns it as a T; no weak pointers; a deleter that is part of the type; and one layout for
// every compiler and standard library, so that it may cross between libraries.
#pragma once

#include "qxAssert.h"
#include "qxExport.h"
#include "qxLocks.h"

#include <utility>

namespace qx
{

// Use counters, which come from free lists of their own.
class QXUTILS_API shptr
{
public:
    // A counter of no particular value; throws std::bad_alloc. Each is given back once, by
    // whichever thread.
    static ulong32* allocCounter();
    static void releaseCounter(ulong32* counter) noexcept;
};

// How the object ends when the last pointer lets go. Another one can be named as the second
// argument of sharedPtr, or the whole be specialised for a type:
//
//     struct closing
//     {
//         static void destroy(std::FILE* file) noexcept { std::fclose(file); }
//     };
//     qx::sharedPtr<std::FILE, closing> log(std::fopen("run.log", "w")); // null where that fails
//
// It must not throw; the object is never null. The two types of pointer that differ in this
// do not convert into each other.
template <class T>
struct deleteObj
{
    static void destroy(T* object) noexcept { delete object; }
};

// Where the counter of a T lives, and how both end: by default each in a place of its own.
// Types that carry their counter specialise this. `obtain` gives the counter of a new
// object and may throw std::bad_alloc; `end` is called once, when the count has come to 0.
template <class T>
struct counterPlace
{
    static ulong32* obtain(T*) { return shptr::allocCounter(); }
    // Deletes the object first, which may run anything, and gives the counter back then.
    template <class Delete>
    static void end(T* object, ulong32* counter) noexcept
    {
        Delete::destroy(object);
        shptr::releaseCounter(counter);
    }
};

// A share of the ownership of one object, or null.
//
// A T that is only declared will do, but for the constructor that takes an object over and
// for what may end one: the destructor, assignment.
template <class T, class Delete = deleteObj<T>>
class QX_SHARED sharedPtr
{
public:
    // Null.
    constexpr sharedPtr() noexcept = default;

    // Takes over `object`, which may be null and which no other sharedPtr owns. When no
    // counter can be had, the object is deleted and std::bad_alloc goes on.
    explicit sharedPtr(T* object) : m_p(object)
    {
        if (!object)
            return;
        // Ownership begins with the call: a failure in here must not leak the object.
        try {
            mpCounter = counterPlace<T>::obtain(object);
        } catch (...) {
            Delete::destroy(object);
            throw;
        }
        *mpCounter = ulong32(1u);
    }

    // A copy counts up, a move takes over the share of `other`, which becomes null. Neither
    // throws.
    sharedPtr(const sharedPtr& other) noexcept : m_p(other.m_p), mpCounter(other.mpCounter) { take(); }
    sharedPtr(sharedPtr&& other) noexcept
        : m_p(std::exchange(other.m_p, nullptr)), mpCounter(std::exchange(other.mpCounter, nullptr))
    {}
    // What was owned before is let go of last, when this pointer has its new value already.
    sharedPtr& operator=(sharedPtr other) noexcept
    {
        swap(other);
        return *this;
    }
    ~sharedPtr() { release(); }

    // Exchanges both words; counts nothing.
    void swap(sharedPtr& other) noexcept
    {
        std::swap(m_p, other.m_p);
        std::swap(mpCounter, other.mpCounter);
    }

    // The object. Dereference of a null pointer fails the check "m_p != nullptr": a report,
    // then the bool value false thrown.
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    // Borrowed: valid as long as somebody owns the object. Null for a null pointer.
    T* get() const noexcept { return m_p; }
    // True where an object is owned.
    explicit operator bool() const noexcept { return m_p != nullptr; }

    // How many share the object at this moment; 0 for a null pointer. Who reads 1 is alone,
    // and sees what the others did before they let go.
    ulong32 useCount() const noexcept { return mpCounter ? interlockedRead(mpCounter) : ulong32(0u); }

    // Both words, for those who count by hand: attach takes over one count that is already
    // made, detach hands it out and leaves null. Whoever detaches must attach again, or the
    // object never ends.
    static sharedPtr attach(T* object, ulong32* counter) noexcept
    {
        sharedPtr made;
        made.m_p = object;
        made.mpCounter = counter;
        return made;
    }
    T* detach() noexcept
    {
        mpCounter = nullptr;
        return std::exchange(m_p, nullptr);
    }

    // By object: two null pointers are equal.
    friend bool operator==(const sharedPtr& a, const sharedPtr& b) noexcept { return a.m_p == b.m_p; }

private:
    // Path and line are fixed: a report reads the same in every build, and when this file
    // changes.
    T* checked() const
    {
        if (!m_p)
            assertionFailed(L"m_p != nullptr", L"libs/utils/inc/qxSharedPtr", 100);
        return m_p;
    }
    // One more, and one less. Null counts nothing.
    void take() const noexcept
    {
        if (mpCounter)
            interlockedIncrement(mpCounter);
    }
    void release() noexcept
    {
        // The only one left need not count down: nobody can count up any more. Half the
        // cost of a release.
        if (!mpCounter || (interlockedRead(mpCounter) != 1u && interlockedDecrement(mpCounter) != 0u))
            return;
        counterPlace<T>::template end<Delete>(m_p, mpCounter);
    }

    // Both null or both set.
    T* m_p = nullptr;
    ulong32* mpCounter = nullptr;
};

// Reads what a sharedPtr owns, and shares the ownership. Made of a sharedPtr, implicitly;
// there is no way back. Used as a value and never deleted through a base, so its one
// virtual operation stays its only one. What is told of sharedPtr holds here too.
template <class T>
class QX_SHARED const_sharedPtr
{
public:
    // Null.
    const_sharedPtr() noexcept = default;
    // One more share of what `other` owns, or its share.
    const_sharedPtr(const sharedPtr<T>& other) noexcept : mShared(other) {}
    const_sharedPtr(sharedPtr<T>&& other) noexcept : mShared(std::move(other)) {}
    const_sharedPtr(const const_sharedPtr&) noexcept = default;
    const_sharedPtr& operator=(const const_sharedPtr&) noexcept = default;

    // The current use count, 0 for a null pointer.
    virtual ulong32 useCount() const noexcept { return mShared.useCount(); }

    // As those of sharedPtr, with the same failed check for a null pointer.
    const T& operator*() const { return *mShared; }
    const T* operator->() const { return &*mShared; }
    const T* get() const noexcept { return mShared.get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(mShared); }

private:
    sharedPtr<T> mShared;
};

} // namespace qx
