// The bodies of genericValue's templates, for the source that instantiates the holders of a library's own
// types.
//
// Nobody else includes this: a second instantiation beside the exported one does not link everywhere.
#pragma once

#include "qxHolder.h"

namespace qx
{

template <holdable T>
genericValue::genericValue(const T& value)
{
    adopt(sharedPtr<holderbase>(valueholder<T>::make(value)));
}

template <readable T>
bool genericValue::getValue(T& out) const
{
    const sharedPtr<holderbase> shared = holderCopy();
    if (!shared)
        return false;
    ptrholder<T> target(&out);
    return shared->copyTo(target);
}

template <writable T>
bool genericValue::setValue(const T& value, bool replace)
{
    if (!replace) {
        if (const sharedPtr<holderbase> shared = holderCopy())
            return shared->copyFrom(constptrholder<T>(&value));
    }
    sharedPtr<holderbase> made(valueholder<T>::make(value));
    swapHolder(made);
    return true;
}

} // namespace qx
