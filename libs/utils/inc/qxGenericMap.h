// The maps that a value can hold: std::map from one of mapKeyTypes (short,
// int, long32, string) to genericValue.
//
//     std::map<qx::string, qx::genericValue> prices;
//     prices[L"tea"] = qx::genericValue(2.5);
//     qx::genericValue value(prices); // a deep copy
//
// A map is held in a value and nothing more: it converts to no other type, and neither
// getValue nor setValue takes one. Who wants it in place asks the holder (qxHolder.h). Keys
// are ordered as std::map orders them, texts by their code units.
//
// They stand apart from qxGenericValue.h because few sources need them and <map> costs each
// source that includes it.
#pragma once

#include "qxGenericValue.h"

#include <map>

namespace qx
{

template <oneOf<mapKeyTypes> Key>
inline constexpr unsigned heldAs<std::map<Key, genericValue>> = heldInValue;

} // namespace qx
