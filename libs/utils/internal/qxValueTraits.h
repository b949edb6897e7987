// What code that computes with held numbers asks of a type.
//
//     using traits = qx::valueTraits<T>;
//     T sum = traits::wrap(traits::wide(a) + traits::wide(b));    // wraps to the width of T
//
// Defined for the number types that a value can hold, the 32-bit `long` and `ulong` of the system among them,
// and for nothing else. The standard's own traits do not know those two.
#pragma once

#include "qxTypes.h"

#include <limits>

namespace qx
{

namespace detail
{

template <class T, class Plain>
struct integerTraits
{
    using plain = Plain; // the arithmetic type of the same width and sign
    // Holds every T, and the sum, difference and (modulo its width) product of two.
    using wide = std::conditional_t<std::is_signed_v<Plain>, long long, unsigned long long>;

    static constexpr bool isInteger = true;
    static constexpr bool isSigned = std::is_signed_v<Plain>;
    static constexpr bool isFloating = false;
    static constexpr plain min = std::numeric_limits<Plain>::min();
    static constexpr plain max = std::numeric_limits<Plain>::max();

    // Cuts an integer to the width of T.
    template <std::integral Int>
    static constexpr T wrap(Int value) noexcept
    {
        return T(static_cast<Plain>(value));
    }
};

template <class T>
struct floatingTraits
{
    using plain = T;
    using wide = double;

    static constexpr bool isInteger = false;
    static constexpr bool isSigned = true;
    static constexpr bool isFloating = true;
    static constexpr plain min = std::numeric_limits<T>::lowest();
    static constexpr plain max = std::numeric_limits<T>::max();

    // The nearest T.
    static constexpr T wrap(double value) noexcept { return static_cast<T>(value); }
};

} // namespace detail

template <class T>
struct valueTraits;

// A truth value is no integer: any number that is not zero is true.
template <>
struct valueTraits<bool>
{
    using plain = bool;
    using wide = long long;

    static constexpr bool isInteger = false;
    static constexpr bool isSigned = false;
    static constexpr bool isFloating = false;
    static constexpr plain min = false;
    static constexpr plain max = true;

    static constexpr bool wrap(wide value) noexcept { return value != 0; }
};

template <>
struct valueTraits<short> : detail::integerTraits<short, short>
{};
template <>
struct valueTraits<ushort> : detail::integerTraits<ushort, ushort>
{};
template <>
struct valueTraits<int> : detail::integerTraits<int, int>
{};
template <>
struct valueTraits<uint> : detail::integerTraits<uint, uint>
{};
template <>
struct valueTraits<long32> : detail::integerTraits<long32, std::conditional_t<sizeof(long) == 4, long, int>>
{};
template <>
struct valueTraits<ulong32>
    : detail::integerTraits<ulong32, std::conditional_t<sizeof(long) == 4, unsigned long, uint>>
{};
template <>
struct valueTraits<uint64> : detail::integerTraits<uint64, uint64>
{};
template <>
struct valueTraits<float> : detail::floatingTraits<float>
{};
template <>
struct valueTraits<double> : detail::floatingTraits<double>
{};

// The number types that a value can hold.
template <class T>
concept heldNumber = requires
{
    typename valueTraits<T>::plain;
};
template <class T>
concept heldInteger = heldNumber<T> && valueTraits<T>::isInteger;
template <class T>
concept heldFloating = heldNumber<T> && valueTraits<T>::isFloating;

} // namespace qx
