// Values of every type that a cell holds, at the places where a type or a conversion ends, and what they read
// as.
#pragma once

#include "qxCell.h"
#include "qxHeldTypes.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <vector>

template <class... T>
struct typeList
{};
using integers = typeList<short, qx::ushort, int, qx::uint, qx::long32, qx::ulong32, qx::uint64>;
using held = typeList<bool, short, qx::ushort, int, qx::uint, qx::long32, qx::ulong32, qx::uint64, float,
                      double, qx::string, qx::date, qx::time, qx::timestamp>;
inline const wchar_t* const heldNames[] = {L"bool",   L"short", L"ushort", L"int",      L"uint",
                                           L"long",   L"ulong", L"uint64", L"float",    L"double",
                                           L"string", L"date",  L"time",   L"timestamp"};

// The text of a value, with the bits of a NaN, so that no two values of a type have the same.
template <class T>
qx::string textOf(const T& value)
{
    qx::string text;
    qx::genericValue(value).getValue(text);
    if constexpr (std::is_floating_point_v<T>) {
        using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        if (std::isnan(value))
            text += qx::string::sformat(L" %llx", std::bit_cast<bits>(value));
    }
    return text;
}

// Calls `use(name, type)` for each type.
template <class Use>
void withEachType(const Use& use)
{
    [&]<class... T>(typeList<T...>) {
        const wchar_t* const* name = heldNames;
        (use(*name++, T()), ...);
    }(held());
}

// The held type and the value: `int 7`. To look is to promote, so it looks at a copy.
inline qx::string heldIn(const qx::genericValue& value)
{
    const auto shared = qx::genericValue(value).holderCopy();
    qx::string shown = L"null";
    withEachType([&]<class T>(const wchar_t* name, const T&) {
        if (auto* const holder = dynamic_cast<qx::genericValue::holder<T>*>(shared.get()))
            shown = qx::string(name) + L" " + textOf(holder->value());
    });
    return shown;
}

// What a value reads as in the other types, a line for each result: `7: int long`. Proves that a refusal
// changes nothing.
inline std::vector<qx::string> readings(const qx::genericValue& value)
{
    std::vector<qx::string> lines;
    qx::string last = L"refused";
    const qx::string shown = heldIn(value);
    withEachType([&]<class T>(const wchar_t* name, T out) {
        if (shown.starts_with(name + qx::string(L" ")))
            return;
        if constexpr (std::is_same_v<T, qx::uint64>)
            return; // which values hold, but do not read as
        else if (!value.getValue(out)) {
            EXPECT_EQ(out, T());
            return;
        }
        if (const qx::string text = textOf(out); lines.empty() || text != last)
            lines.emplace_back((last = text) + L":");
        lines.back() += L" " + qx::string(name);
    });
    return lines;
}

// Calls `use` with values of all types.
template <class Use>
void withEachValue(const Use& use)
{
    const auto each = [&](const auto&... values) { (use(values), ...); };
    const auto eachInteger = [&]<class... T>(typeList<T...>, auto number) {
        each(qx::valueTraits<T>::wrap(number)...);
    };
    each(false, true);
    for (const long long bound : {0LL, 1LL << 15, 1LL << 16, 1LL << 31, 1LL << 32, LLONG_MIN, LLONG_MAX}) {
        const auto around = static_cast<unsigned long long>(bound);
        for (const unsigned long long number : {around - 1, around, around + 1, 0 - around, ~around})
            eachInteger(integers(), number);
        for (const double number : {static_cast<double>(bound), -static_cast<double>(bound)})
            for (const double part : {0.0, -0.5, 0.5, -1.0, 1.0})
                each(number + part, static_cast<float>(number + part));
    }
    for (const auto bits :
         std::initializer_list<qx::uint64>{0x7ff0000000000000, 0x7ff0000000000001, 0x7ff8000000000000,
                                           0x7fffffffffffffff, 0x0000000000000001, 0x0010000000000000, 0})
        for (const qx::uint64 sign : {qx::uint64(0), qx::uint64(1) << 63})
            each(std::bit_cast<double>(bits | sign));
    for (const qx::uint bits :
         {0x7f800000u, 0x7f800001u, 0x7fc00000u, 0xffffffffu, 0x80000001u, 0x7f7fffffu, 0x80000000u})
        each(std::bit_cast<float>(bits));
    // Numbers whose texts differ in form.
    each(1.7e308, 1e-310, 5e20, 0.1, 0.1f, 1e20f, 1.0, 100000.0, -1234.5678, -1.25e30, 1.5e-8, 9.9e-8, 1e-7,
         -1.2345678901234567e-5, 999999999999999900000.0, 1e21, 0.25);
    each(qx::date(), qx::date(9999, 12, 31), qx::time(), qx::time(23, 59, 59, 999));
    each(qx::timestamp(), qx::timestamp(qx::date(9999, 12, 31), qx::time(23, 59, 59, 999)));
    std::vector<qx::string> texts;
    qx::string(
        L"|0|-0|+1|01| 1|1.0|-1|32767|32768|-32769|65536|2147483647|2147483648|-2147483648|-2147483649|"
        L"true|1e3|nan|2024-03-09|9:07|2024-03-09 09:07")
        .splitAt(L"|", texts, false);
    for (const qx::string& text : texts)
        each(text);
}
