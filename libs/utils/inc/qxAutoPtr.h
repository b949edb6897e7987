// autoPtr: a pointer with a single owner, deleted with it.
#pragma once

#include "qxAssert.h"

#include <utility>

namespace qx
{

template <class T>
class autoPtr
{
public:
    constexpr autoPtr() noexcept = default;
    // Takes over `object`, which may be null.
    explicit autoPtr(T* object) noexcept : m_p(object) {}
    autoPtr(autoPtr&& other) noexcept : m_p(other.release()) {}
    autoPtr& operator=(autoPtr&& other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~autoPtr() { delete m_p; }

    void reset(T* object = nullptr) noexcept { delete std::exchange(m_p, object); }
    // Hands the object over to the caller.
    T* release() noexcept { return std::exchange(m_p, nullptr); }

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
            assertionFailed(L"m_p != NULL", L"libs/utils/inc/qxAutoPtr", 40);
        return m_p;
    }

    T* m_p = nullptr;
};

} // namespace qx
