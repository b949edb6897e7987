// The bodies of genericValue's templates, for the source that instantiates the holders of a library's own
// types.
//
// Nobody else includes this: a second instantiation beside the exported one does not link everywhere.
#pragma once

#include "qxCell.h"
#include "qxCompiler.h"
#include "qxHolder.h"

namespace qx
{

// The word of a small value; `refused` for everything that needs a holder.
template <class T>
cell::word smallWord(const T& value) noexcept
{
    if constexpr (cell::small<T>)
        return cell::make(value);
    else if constexpr (std::is_same_v<T, string>)
        return cell::makeText(value);
    else
        return cell::refused;
}

// Reads a small word as a T. Converters of a host are asked first, as for values in holders.
template <class T>
bool readSmall(cell::word w, T& out)
{
    if constexpr (cell::small<T> || std::is_same_v<T, string> || std::is_same_v<T, timestamp>)
        return cell::onlyOwnConversions() ? cell::read(w, out) : cell::convert(w, out);
    else
        return cell::visit(w, [&out]<class From>(const From& from) {
            return typeconvert::typeConversionManager::instance().convert(typeid(T), &out, typeid(From),
                                                                          &from, 0, nullptr);
        });
}

template <holdable T>
genericValue::genericValue(const T& value) : mWord(smallWord(value))
{
    if (mWord != cell::refused)
        return;
    mWord = 0;
    adopt(sharedPtr<holderbase>(valueholder<T>::make(value)));
}

// Reads what a value without a small word holds. Not inline, for the sake of those that have one.
template <class T>
QX_NOINLINE bool readHeld(const genericValue& value, T& out)
{
    genericValue::ptrholder<T> target(&out);
    return cell::copyHeld(value, target);
}

template <readable T>
bool genericValue::getValue(T& out) const
{
    const cell::word w = cell::access::load(*this);
    return cell::isSmall(w) ? readSmall(w, out) : readHeld(*this, out);
}

// A value of the type that the small word `held` holds, made of `value`. False where that does not convert.
template <class T>
bool convertLike(cell::word held, const T& value, genericValue& made)
{
    // A converter of a host is asked once: what it refuses is not tried a second time below.
    if (const cell::word source = smallWord(value); source != cell::refused && cell::onlyOwnConversions())
        if (const cell::word converted = cell::convertedLike(held, source); converted != cell::refused) {
            made = cell::access::made(converted);
            return true;
        }
    return cell::visit(held, [&](auto target) {
        using held_t = decltype(target);
        if constexpr (std::is_same_v<held_t, T>)
            target = value;
        else if (!typeconvert::typeConversionManager::instance().convert(typeid(held_t), &target, typeid(T),
                                                                         &value, 0, nullptr))
            return false;
        made = genericValue(target);
        return true;
    });
}

template <writable T>
bool genericValue::setValue(const T& value, bool replace)
{
    for (cell::word held = 0; !replace && (held = cell::access::load(*this)) != cell::null;) {
        if (cell::isHolder(held)) {
            if (const sharedPtr<holderbase> shared = holderCopy())
                return shared->copyFrom(constptrholder<T>(&value));
            continue; // null by now
        }
        genericValue written;
        if (!convertLike(held, value, written))
            return false;
        if (cell::access::moveIf(*this, held, written))
            return true;
    }
    *this = genericValue(value);
    return true;
}

} // namespace qx
