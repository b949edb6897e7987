// The functors of the typed operators: each holds only what one operation does with two operands, or with
// one.
//
// A functor tells the types as which its operands are read, and gives the result in the type in which it is
// written. Integer arithmetic wraps to the width of its type.
#pragma once

#include "qxScriptReference.h"

#include "qxMath.h"
#include "qxString.h"
#include "qxValueTraits.h"

#include <cmath>

namespace qx
{

namespace detail
{

// How a functor receives a T that it only looks at.
template <class T>
using lent = std::conditional_t<std::is_same_v<T, string>, std::wstring_view, T>;

// The base of functors. `faults` tells operands for which there is no result, only the fault of the
// processor.
template <class First, class Second>
struct operands
{
    using first = First;
    using second = Second;

    static constexpr bool faults(const lent<First>&, const lent<Second>&) { return false; }
};

template <class T>
struct operand
{
    using first = T;
};

// The value in a type in which sums, differences and products do not overflow.
template <heldNumber T>
constexpr typename valueTraits<T>::wide wideOf(const T& value)
{
    return value;
}

} // namespace detail

template <class T, class Second, class Result>
struct addfunc : detail::operands<T, Second>
{
    Result operator()(const T& a, const Second& b) const
    {
        return valueTraits<Result>::wrap(detail::wideOf(a) + detail::wideOf(b));
    }
};

template <>
struct addfunc<string, string, string> : detail::operands<string, string>
{
    string operator()(std::wstring_view a, std::wstring_view b) const
    {
        string joined;
        joined.reserve(a.size() + b.size());
        joined.append(a).append(b);
        return joined;
    }
};

template <class T, class Second, class Result>
struct subtractfunc : detail::operands<T, Second>
{
    Result operator()(const T& a, const Second& b) const
    {
        return valueTraits<Result>::wrap(detail::wideOf(a) - detail::wideOf(b));
    }
};

template <class T, class Second, class Result>
struct multiplyfunc : detail::operands<T, Second>
{
    Result operator()(const T& a, const Second& b) const
    {
        return valueTraits<Result>::wrap(detail::wideOf(a) * detail::wideOf(b));
    }
};

template <class T, class Second, class Result>
struct dividefunc : detail::operands<T, Second>
{
    // A short is divided at 32 bits, where the least one by -1 has a result; it wraps.
    static constexpr bool faults(const T& a, const Second& b)
    {
        using traits = valueTraits<T>;
        if constexpr (!traits::isInteger)
            return false;
        else if constexpr (traits::isSigned && sizeof(T) >= sizeof(int))
            return b == 0 || (a == traits::min && b == -1);
        else
            return b == 0;
    }

    Result operator()(const T& a, const Second& b) const
    {
        return valueTraits<Result>::wrap(detail::wideOf(a) / detail::wideOf(b));
    }
};

template <class T>
struct maxoffunc : detail::operands<T, T>
{
    T operator()(const T& a, const T& b) const { return a > b ? a : b; }
};

template <class T>
struct minoffunc : detail::operands<T, T>
{
    T operator()(const T& a, const T& b) const { return a < b ? a : b; }
};

template <class T>
struct bitandfunc : detail::operands<T, T>
{
    T operator()(const T& a, const T& b) const
    {
        return valueTraits<T>::wrap(detail::wideOf(a) & detail::wideOf(b));
    }
};

template <class T>
struct bitorfunc : detail::operands<T, T>
{
    T operator()(const T& a, const T& b) const
    {
        return valueTraits<T>::wrap(detail::wideOf(a) | detail::wideOf(b));
    }
};

template <class T, class Result>
struct roundfunc : detail::operands<T, int>
{
    Result operator()(const T& a, const int& decimals) const
    {
        return static_cast<Result>(roundImp(a, decimals));
    }
};

template <class T, class Result>
struct cutofffunc : detail::operands<T, int>
{
    Result operator()(const T& a, const int& decimals) const
    {
        return static_cast<Result>(cutOffImp(a, decimals));
    }
};

template <class T, class Second>
struct eqfunc : detail::operands<T, Second>
{
    bool operator()(const detail::lent<T>& a, const detail::lent<Second>& b) const { return a == b; }
};

template <class T, class Second>
struct neqfunc : detail::operands<T, Second>
{
    bool operator()(const detail::lent<T>& a, const detail::lent<Second>& b) const { return !(a == b); }
};

template <class T, class Second>
struct smfunc : detail::operands<T, Second>
{
    bool operator()(const detail::lent<T>& a, const detail::lent<Second>& b) const { return a < b; }
};

template <class T, class Second>
struct smeqfunc : detail::operands<T, Second>
{
    bool operator()(const detail::lent<T>& a, const detail::lent<Second>& b) const { return a <= b; }
};

template <class T, class Second>
struct gtfunc : detail::operands<T, Second>
{
    bool operator()(const detail::lent<T>& a, const detail::lent<Second>& b) const { return a > b; }
};

template <class T, class Second>
struct gteqfunc : detail::operands<T, Second>
{
    bool operator()(const detail::lent<T>& a, const detail::lent<Second>& b) const { return a >= b; }
};

template <class T, class Result>
struct minusfunc : detail::operand<T>
{
    Result operator()(const T& a) const
    {
        if constexpr (heldFloating<T>)
            return -a;
        else
            return valueTraits<Result>::wrap(-detail::wideOf(a));
    }
};

template <class T, class Result>
struct absfunc : detail::operand<T>
{
    Result operator()(const T& a) const
    {
        if constexpr (heldFloating<T>)
            return std::fabs(a);
        else
            return valueTraits<Result>::wrap(detail::wideOf(a) < 0 ? -detail::wideOf(a) : detail::wideOf(a));
    }
};

struct notfunc : detail::operand<bool>
{
    bool operator()(const bool& a) const { return !a; }
};

} // namespace qx

// REQUIRED: host objects compare by being set alone; two different objects are equal. Held by
// operators.objects_compare_by_being_set.
struct eqfuncIfPointer : qx::detail::operands<qx::intrface::objectRef, qx::intrface::objectRef>
{
    bool operator()(const first& a, const second& b) const { return a.isValid() == b.isValid(); }
};

struct neqfuncIfPointer : eqfuncIfPointer
{
    bool operator()(const first& a, const second& b) const { return a.isValid() != b.isValid(); }
};
