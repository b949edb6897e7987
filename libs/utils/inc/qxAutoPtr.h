// autoPtr: a pointer with a single owner, deleted with it.
//
//     qx::autoPtr<qx::conditions::condition> parsed(qx::conditions::condition::parse(text));
//     other = std::move(parsed); // parsed is null now
//     return other.release();    // the caller owns it
//
// It moves and does not copy. Not locked: one autoPtr is for one thread at a time. Deleting
// runs the object's destructor and nothing else.
#pragma once

#include "qxAssert.h"

#include <utility>

namespace qx
{

// Owns at most one T, which came from `new` and is deleted as the type that the pointer
// names: a base needs a virtual destructor.
template <class T>
class autoPtr
{
public:
    // Owns nothing.
    constexpr autoPtr() noexcept = default;
    // Takes over `object`, which may be null.
    explicit autoPtr(T* object) noexcept : m_p(object) {}
    // Leaves `other` null. What this one owned before an assignment is deleted.
    autoPtr(autoPtr&& other) noexcept : m_p(other.release()) {}
    autoPtr& operator=(autoPtr&& other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~autoPtr() { delete m_p; }

    // Takes over `object`, which may be null, and then deletes what it owned before. Giving
    // it the object that it owns already is not allowed.
    void reset(T* object = nullptr) noexcept { delete std::exchange(m_p, object); }
    // Hands the object over to the caller, who deletes it. This pointer is null afterwards.
    T* release() noexcept { return std::exchange(m_p, nullptr); }

    // The object. Dereference of a null pointer fails the check "m_p != NULL": a report,
    // then the bool value false thrown.
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    // Borrowed; null where nothing is owned.
    T* get() const noexcept { return m_p; }
    explicit operator bool() const noexcept { return m_p != nullptr; }

private:
    // Path and line are fixed: a report reads the same in every build, and when this file
    // changes.
    T* checked() const
    {
        if (!m_p)
            assertionFailed(L"m_p != NULL", L"libs/utils/inc/qxAutoPtr", 40);
        return m_p;
    }

    // Owned, unless null.
    T* m_p = nullptr;
};

} // namespace qx
