// refPtr: a pointer to an object that counts its own references.
//
//     qx::refPtr<order> first(new order);   // one reference
//     qx::refPtr<order> second = first;     // two
//     first = qx::refPtr<order>();          // one again
//
// The object ends itself when its last reference is released. Whether counting is safe from
// several threads is the object's affair; one refPtr object is for one thread at a time in
// any case.
#pragma once

#include "qxAssert.h"

#include <utility>

namespace qx
{

// How references are counted; by default by the object's own operations addRef and release.
// A type that has others specialises both, or names its own as arguments of refPtr:
//
//     struct retain { static void call(handle* h) { retainHandle(h); } };
//     struct dismiss { static void call(handle* h) { releaseHandle(h); } };
//     using handlePtr = qx::refPtr<handle, retain, dismiss>;
//
// They must not throw where a destructor may call them.
template <class T>
struct addRef
{
    // Called with an object, never with null.
    static void call(T* object) { object->addRef(); }
};
// May end the object.
template <class T>
struct release
{
    static void call(T* object) { object->release(); }
};

// One word. Owns exactly one reference where it is not null.
template <class T, class AddRef = addRef<T>, class Release = release<T>>
class refPtr
{
public:
    // Null: owns nothing and counts nothing.
    constexpr refPtr() noexcept = default;
    // Takes a reference of its own, so an object that was just made counts from 0. `object`
    // may be null.
    explicit refPtr(T* object) : m_p(object)
    {
        if (m_p)
            AddRef::call(m_p);
    }
    // A copy takes one more reference, a move takes over that of `other`, which becomes
    // null. Assignment releases what was held before, last of all.
    refPtr(const refPtr& other) : refPtr(other.m_p) {}
    refPtr(refPtr&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    // By value: assigning a pointer to itself, or one that only the old object holds, is
    // safe.
    refPtr& operator=(refPtr other) noexcept
    {
        std::swap(m_p, other.m_p);
        return *this;
    }
    ~refPtr()
    {
        if (m_p)
            Release::call(m_p);
    }

    // The object. Dereference of a null pointer fails the check "m_p != NULL": a report,
    // then the bool value false thrown.
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    // Borrowed; null for a null pointer.
    T* get() const noexcept { return m_p; }
    // True where an object is held.
    explicit operator bool() const noexcept { return m_p != nullptr; }

private:
    // Path and line are fixed: a report reads the same in every build, and when this file
    // changes.
    T* checked() const
    {
        if (!m_p)
            assertionFailed(L"m_p != NULL", L"libs/utils/inc/qxRefPtr", 50);
        return m_p;
    }

    // With one reference of ours, unless null.
    T* m_p = nullptr;
};

} // namespace qx
