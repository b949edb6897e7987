// The data types of the language as C++ types: keyword and number of each, and what is made for one of a
// list.
#pragma once

#include "qxScriptReference.h"
#include "qxScriptStatement.h"
#include "qxScriptTypes.h"

#include "qxTypeLists.h"

namespace qx::script
{

struct dataType
{
    const wchar_t* word = nullptr; // null for what is no data type
    ePrimitiveScriptType number = scriptTypeVoid;
};

template <class T>
inline constexpr dataType dataTypeOf{};
template <>
inline constexpr dataType dataTypeOf<bool>{L"bool", scriptTypeBool};
template <>
inline constexpr dataType dataTypeOf<short>{L"short", scriptTypeShort};
template <>
inline constexpr dataType dataTypeOf<int>{L"int", scriptTypeInt};
template <>
inline constexpr dataType dataTypeOf<long32>{L"long", scriptTypeLong};
template <>
inline constexpr dataType dataTypeOf<ushort>{L"ushort", scriptTypeUshort};
template <>
inline constexpr dataType dataTypeOf<uint>{L"uint", scriptTypeUint};
template <>
inline constexpr dataType dataTypeOf<ulong32>{L"ulong", scriptTypeUlong};
template <>
inline constexpr dataType dataTypeOf<float>{L"float", scriptTypeFloat};
template <>
inline constexpr dataType dataTypeOf<double>{L"double", scriptTypeDouble};
template <>
inline constexpr dataType dataTypeOf<string>{L"string", scriptTypeString};
template <>
inline constexpr dataType dataTypeOf<date>{L"date", scriptTypeDate};
template <>
inline constexpr dataType dataTypeOf<time>{L"time", scriptTypeTime};
template <>
inline constexpr dataType dataTypeOf<timestamp>{L"timestamp", scriptTypeTimestamp};
template <>
inline constexpr dataType dataTypeOf<intrface::objectRef>{L"unknownptr", scriptTypeUnknownptr};
template <>
inline constexpr dataType dataTypeOf<valueArray>{L"array", scriptTypeArray};

// The keywords that stand for values. Beside them there are `void` and `binary`.
using keywordTypes = join<fieldTypes, typeList<intrface::objectRef, valueArray>>;

// What `make` makes for the type of this number, as make.operator()<T>(); null where the list has none.
template <class... T, class Make>
statement* makeFor(ePrimitiveScriptType type, typeList<T...>, const Make& make)
{
    statement* made = nullptr;
    (void)((type == dataTypeOf<T>.number && (made = make.template operator()<T>())) || ...);
    return made;
}

} // namespace qx::script
