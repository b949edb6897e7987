// refPtr: a pointer to an object that counts its own references.
#pragma once

#include "qxAssert.h"

#include <utility>

namespace qx
{

// How references are counted; by default by the object's own operations.
template <class T>
struct addRef
{
    static void call(T* object) { object->addRef(); }
};
template <class T>
struct release
{
    static void call(T* object) { object->release(); }
};

template <class T, class AddRef = addRef<T>, class Release = release<T>>
class refPtr
{
public:
    constexpr refPtr() noexcept = default;
    // Takes a reference of its own. `object` may be null.
    explicit refPtr(T* object) : m_p(object)
    {
        if (m_p)
            AddRef::call(m_p);
    }
    refPtr(const refPtr& other) : refPtr(other.m_p) {}
    refPtr(refPtr&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
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

    // Dereference of a null pointer fails the check "m_p != NULL": a report, then the bool value false
    // thrown.
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    T* get() const noexcept { return m_p; }
    explicit operator bool() const noexcept { return m_p != nullptr; }

private:
    T* checked() const
    {
        if (!m_p)
            assertionFailed(L"m_p != NULL", L"libs/utils/inc/qxRefPtr", 50);
        return m_p;
    }

    T* m_p = nullptr;
};

} // namespace qx
