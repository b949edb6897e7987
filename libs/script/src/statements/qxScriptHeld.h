// A value in place, behind its holder.
#pragma once

#include "qxHolder.h"

namespace qx::script
{

// What a value holds if that is exactly a T; nothing is converted. It lives as long as this, whatever becomes
// of the value.
template <class T>
class heldIn
{
public:
    // `value` may be null.
    explicit heldIn(const genericValue* value)
        : mShared(value ? value->holderCopy() : sharedPtr<genericValue::holderbase>())
    {
        if (auto* const holder = dynamic_cast<genericValue::holder<T>*>(mShared.get()))
            mpHeld = &holder->value();
    }

    explicit operator bool() const { return mpHeld != nullptr; }
    T* get() const { return mpHeld; }
    T* operator->() const { return mpHeld; }
    T& operator*() const { return *mpHeld; }

private:
    sharedPtr<genericValue::holderbase> mShared;
    T* mpHeld = nullptr;
};

} // namespace qx::script
