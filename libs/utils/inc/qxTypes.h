// Ground types: numbers of fixed width, the same on every platform.
//
// The language's `long` and `ulong` have 32 bits everywhere. Where the platform's own `long` has 32 bits they
// are that type; elsewhere they are small value classes of their own, so that `long` and `int` stay two types
// to a value.
#pragma once

#include "qxCompiler.h"

#include <concepts>
#include <type_traits>

namespace qx
{

using ushort = unsigned short;
using uint = unsigned int;
using uint64 = unsigned long long;

namespace detail
{

// A 32-bit integer with an identity of its own: made from, and read as, exactly its plain integer.
template <class Int>
struct distinctInteger
{
    constexpr distinctInteger() = default;

    template <std::same_as<Int> I>
    constexpr distinctInteger(I value) noexcept : mValue(value)
    {}

    constexpr operator Int() const noexcept { return mValue; }

    Int mValue = 0;
};

} // namespace detail

using long32 = std::conditional_t<sizeof(long) == 4, long, detail::distinctInteger<int>>;
using ulong32 = std::conditional_t<sizeof(long) == 4, unsigned long, detail::distinctInteger<uint>>;

static_assert(sizeof(long32) == 4 && sizeof(ulong32) == 4);
static_assert(std::is_trivially_copyable_v<long32> && std::is_trivially_copyable_v<ulong32>);

} // namespace qx
