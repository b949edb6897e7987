// References to variables, as conversions follow them.
//
// A value may hold a reference to a variable, which may hold a reference again. Reading such a value as
// another type reads the variable at the end; writing into it writes that variable, which keeps its held
// type.
#pragma once

#include "qxCell.h"
#include "qxHolder.h"

namespace qx::typeconvert
{

// Longer chains, which a cycle makes too, are refused.
inline constexpr int referencesAtMost = 64;

// The variable at the end of a chain of references. Null for a null reference and for a chain of more than
// referencesAtMost.
QXUTILS_API sharedPtr<genericValue> referredVariable(const sharedPtr<genericValue>& reference);

// The conversions from and to `sharedPtr<genericValue>`, to be added for a held type that another library
// owns:
//
//     const typeConverter<sharedPtr<genericValue>, mine> reading(readReference<mine>);
//     const typeConverter<mine, sharedPtr<genericValue>> writing(writeReference<mine>);
template <class To>
bool readReference(void* to, const void* from, int, char*)
{
    const sharedPtr<genericValue> variable =
        referredVariable(*static_cast<const sharedPtr<genericValue>*>(from));
    if (!variable)
        return false;
    genericValue::ptrholder<To> target(static_cast<To*>(to));
    return cell::copyHeld(*variable, target);
}

template <holdable From>
bool writeReference(void* to, const void* from, int, char*)
{
    const sharedPtr<genericValue> variable = referredVariable(*static_cast<sharedPtr<genericValue>*>(to));
    if (!variable)
        return false;
    const auto* const value = static_cast<const From*>(from);
    if constexpr (writable<From>)
        return variable->setValue(*value, false);
    else {
        if (const sharedPtr<genericValue::holderbase> shared = variable->holderCopy())
            return shared->copyFrom(genericValue::constptrholder<From>(value));
        *variable = genericValue(*value);
        return true;
    }
}

} // namespace qx::typeconvert
