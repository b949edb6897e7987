// Ground types: numbers of fixed width, the same on every platform.
//
// `long` and `ulong`, as held types, have 32 bits everywhere. Where the platform's own
// `long` has 32 bits they are that type; elsewhere they are small value classes of their
// own, so that `long` and `int` stay two types to a value:
//
//     qx::long32 count = 3;          // made of an int, and of nothing else without a cast
//     int sum = count + 1;           // computes as an int
//     value.setValue(count);         // holds a `long`, not an `int`
//
// All are trivially copyable. Text formats and conversions know them (qxFormat.h,
// qxTypeConversion.h); the standard's traits do not.
#pragma once

#include "qxCompiler.h"

#include <concepts>
#include <type_traits>

namespace qx
{

// Short names for what the standard spells out.
using ushort = unsigned short;
using uint = unsigned int;
using uint64 = unsigned long long;

namespace detail
{

// A 32-bit integer with an identity of its own: made from, and read as, exactly its plain
// integer.
template <class Int>
struct distinctInteger
{
    constexpr distinctInteger() = default;

    template <std::same_as<Int> I>
    constexpr distinctInteger(I value) noexcept : mValue(value)
    {}

    // Back to the plain integer, in which everything is computed.
    constexpr operator Int() const noexcept { return mValue; }

    Int mValue = 0;
};

} // namespace detail

using long32 = std::conditional_t<sizeof(long) == 4, long, detail::distinctInteger<int>>;
using ulong32 = std::conditional_t<sizeof(long) == 4, unsigned long, detail::distinctInteger<uint>>;

// What the layout of values, holders and files relies on.
static_assert(sizeof(long32) == 4 && sizeof(ulong32) == 4);
static_assert(std::is_trivially_copyable_v<long32> && std::is_trivially_copyable_v<ulong32>);

} // namespace qx
