// The maps that a value can hold: std::map from short, int, long32 or string to
// genericValue.
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

template <>
inline constexpr unsigned heldAs<std::map<short, genericValue>> = heldInValue;
template <>
inline constexpr unsigned heldAs<std::map<int, genericValue>> = heldInValue;
template <>
inline constexpr unsigned heldAs<std::map<long32, genericValue>> = heldInValue;
template <>
inline constexpr unsigned heldAs<std::map<string, genericValue>> = heldInValue;

} // namespace qx
