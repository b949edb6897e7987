// The maps that a value can hold: std::map from short, int, long32 or string to genericValue. They stand
// apart from qxGenericValue.h because few sources need them and <map> costs each source that includes it.
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
