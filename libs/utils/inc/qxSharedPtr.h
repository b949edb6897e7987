// sharedPtr: a pointer with a use counter beside it; const_sharedPtr: its read-only twin.
//
// Two words, the object and its counter; both null or both set. Copies count atomically, but one sharedPtr
// object is not to be written by two threads at once. The last one to let go deletes the object through
// Delete.
#pragma once

#include "qxAssert.h"
#include "qxExport.h"
#include "qxLocks.h"

#include <utility>

namespace qx
{

// Use counters come from free lists of their own.
class QXUTILS_API shptr
{
public:
    static ulong32* allocCounter();
    static void releaseCounter(ulong32* counter) noexcept;
};

template <class T>
struct deleteObj
{
    static void destroy(T* object) noexcept { delete object; }
};

// Where the counter of a T lives, and how both end: by default each in a place of its own. Types that carry
// their counter specialise this.
template <class T>
struct counterPlace
{
    static ulong32* obtain(T*) { return shptr::allocCounter(); }
    template <class Delete>
    static void end(T* object, ulong32* counter) noexcept
    {
        Delete::destroy(object);
        shptr::releaseCounter(counter);
    }
};

template <class T, class Delete = deleteObj<T>>
class QX_SHARED sharedPtr
{
public:
    constexpr sharedPtr() noexcept = default;

    // Takes over `object`, which may be null. When no counter can be had, the object is deleted and
    // std::bad_alloc goes on.
    explicit sharedPtr(T* object) : m_p(object)
    {
        if (!object)
            return;
        try {
            mpCounter = counterPlace<T>::obtain(object);
        } catch (...) {
            Delete::destroy(object);
            throw;
        }
        *mpCounter = ulong32(1u);
    }

    sharedPtr(const sharedPtr& other) noexcept : m_p(other.m_p), mpCounter(other.mpCounter) { take(); }
    sharedPtr(sharedPtr&& other) noexcept
        : m_p(std::exchange(other.m_p, nullptr)), mpCounter(std::exchange(other.mpCounter, nullptr))
    {}
    sharedPtr& operator=(sharedPtr other) noexcept
    {
        swap(other);
        return *this;
    }
    ~sharedPtr() { release(); }

    void swap(sharedPtr& other) noexcept
    {
        std::swap(m_p, other.m_p);
        std::swap(mpCounter, other.mpCounter);
    }

    // Dereference of a null pointer fails the check "m_p != nullptr": a report, then the bool value false
    // thrown.
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    T* get() const noexcept { return m_p; }
    explicit operator bool() const noexcept { return m_p != nullptr; }

    // 0 for a null pointer.
    ulong32 useCount() const noexcept { return mpCounter ? interlockedRead(mpCounter) : ulong32(0u); }

    // Both words, for those who count by hand: attach takes over one count that is already made, detach hands
    // it out.
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

    friend bool operator==(const sharedPtr& a, const sharedPtr& b) noexcept { return a.m_p == b.m_p; }

private:
    T* checked() const
    {
        if (!m_p)
            assertionFailed(L"m_p != nullptr", L"libs/utils/inc/qxSharedPtr", 100);
        return m_p;
    }
    void take() const noexcept
    {
        if (mpCounter)
            interlockedIncrement(mpCounter);
    }
    void release() noexcept
    {
        // The only one left need not count down: nobody can count up any more. Half the cost of a release.
        if (!mpCounter || (interlockedRead(mpCounter) != 1u && interlockedDecrement(mpCounter) != 0u))
            return;
        counterPlace<T>::template end<Delete>(m_p, mpCounter);
    }

    T* m_p = nullptr;
    ulong32* mpCounter = nullptr;
};

// Reads what a sharedPtr owns, and shares the ownership. Used as a value and never deleted through a base, so
// its one virtual operation stays its only one.
template <class T>
class QX_SHARED const_sharedPtr
{
public:
    const_sharedPtr() noexcept = default;
    const_sharedPtr(const sharedPtr<T>& other) noexcept : mShared(other) {}
    const_sharedPtr(sharedPtr<T>&& other) noexcept : mShared(std::move(other)) {}
    const_sharedPtr(const const_sharedPtr&) noexcept = default;
    const_sharedPtr& operator=(const const_sharedPtr&) noexcept = default;

    // The current use count, 0 for a null pointer.
    virtual ulong32 useCount() const noexcept { return mShared.useCount(); }

    const T& operator*() const { return *mShared; }
    const T* operator->() const { return &*mShared; }
    const T* get() const noexcept { return mShared.get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(mShared); }

private:
    sharedPtr<T> mShared;
};

} // namespace qx
