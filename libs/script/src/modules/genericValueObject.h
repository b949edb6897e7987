// The object that carries a value where a host keeps objects: what scripts hang on an object as transient
// data.
#pragma once

#include "qxScriptInterfaces.h"

#include "qxLocks.h"

#include <cwchar>
#include <new>

namespace qx::ifimpl
{

// The part through which an object of the engine counts and ends.
class unknownImpl
{
public:
    unknownImpl() = default;
    unknownImpl(const unknownImpl&) = delete;
    unknownImpl& operator=(const unknownImpl&) = delete;
    virtual ~unknownImpl() = default;

protected:
    uint mRefCount = 0; // changed by interlocked operations alone
};

// Closes an implementation T of an interface: counting, and the query on a const object.
template <class T>
class intrfaceImpl final : public T
{
public:
    using T::queryInterface;
    using T::T;

    uint addRef() override { return interlockedIncrement(&this->mRefCount); }
    uint release() override
    {
        const uint left = interlockedDecrement(&this->mRefCount);
        if (left == 0)
            delete this;
        return left;
    }
    bool queryInterface(const wchar_t* name, const void** out) const override
    {
        void* found = nullptr;
        const bool isOffered = const_cast<intrfaceImpl*>(this)->queryInterface(name, &found);
        *out = found;
        return isOffered;
    }
};

// Holds one value, which never changes, and offers no interface but `unknown`.
class gvObjectImpl : public intrface::unknown, public unknownImpl
{
public:
    // A new object with a copy of `value`. Its count is zero: it belongs to the caller until the first query.
    // Null without memory.
    static gvObjectImpl* make(const genericValue& value);

    using intrface::unknown::queryInterface;
    bool queryInterface(const wchar_t* name, void** out) override
    {
        *out = nullptr;
        if (std::wcscmp(name, intrface::interfaceName<intrface::unknown>) != 0)
            return false;
        *out = static_cast<intrface::unknown*>(this);
        return addRef() != 0;
    }

    const genericValue& value() const { return mValue; }

protected:
    explicit gvObjectImpl(const genericValue& value) : mValue(value) {}

private:
    const genericValue mValue;
};

inline gvObjectImpl* gvObjectImpl::make(const genericValue& value)
{
    return new (std::nothrow) intrfaceImpl<gvObjectImpl>(value);
}

} // namespace qx::ifimpl
