// The conversions between two plain types, each rule written once.
//
// plainConversion<To, From>::run(to, from, format) is true when `to` has been written; a pair without a rule
// has no such specialisation. `format` is the width of an integer that is written as text.
#pragma once

#include "qxDirectory.h"
#include "qxLocString.h"
#include "qxNumberText.h"
#include "qxString.h"
#include "qxTimestamp.h"

#include <cmath>

namespace qx::typeconvert
{

template <class To, class From>
struct plainConversion;

template <class To, class From>
concept plainPair = requires(To& to, const From& from)
{
    plainConversion<To, From>::run(to, from, 0);
};

template <heldNumber T>
constexpr typename valueTraits<T>::plain plainOf(const T& value)
{
    return value;
}

template <heldNumber To, heldNumber From>
struct plainConversion<To, From>
{
    static bool run(To& to, const From& from, int)
    {
        const auto value = plainOf(from);
        if constexpr (std::is_same_v<To, bool>)
            to = value != 0;
        else if constexpr (heldFloating<To>)
            to = static_cast<To>(value);
        else if constexpr (heldFloating<From>)
            return truncate(to, static_cast<double>(value));
        else
            to = valueTraits<To>::wrap(static_cast<unsigned long long>(value));
        return true;
    }

private:
    static bool truncate(To& to, double value)
    {
        // Both bounds are exact in a double: the least value less a fraction, and the power of two past the
        // greatest.
        constexpr double least = static_cast<double>(valueTraits<To>::min);
        constexpr auto halfPast = valueTraits<To>::max / 2 + 1;
        constexpr double past = 2.0 * static_cast<double>(halfPast);
        const double whole = std::trunc(value);
        if (!(whole >= least && whole < past))
            return false;
        to = To(static_cast<typename valueTraits<To>::plain>(whole));
        return true;
    }
};

template <heldNumber To>
struct plainConversion<To, string>
{
    static bool run(To& to, const string& from, int) { return readNumber(from, to); }
};

template <heldNumber From>
struct plainConversion<string, From>
{
    static bool run(string& to, const From& from, int width)
    {
        const numberText text(from);
        to.assign(text.view());
        if constexpr (heldInteger<From>) {
            const auto wanted = static_cast<std::size_t>(width > 0 ? width : 0);
            if (to.size() < wanted)
                to.insert(to[0] == L'-' ? 1 : 0, wanted - to.size(), L'0');
        }
        return true;
    }
};

template <>
struct plainConversion<string, std::wstring>
{
    static bool run(string& to, const std::wstring& from, int)
    {
        to.assign(from);
        return true;
    }
};

template <class T>
concept calendarType = std::is_same_v<T, date> || std::is_same_v<T, time> || std::is_same_v<T, timestamp>;

template <calendarType To>
struct plainConversion<To, string>
{
    static bool run(To& to, const string& from, int) { return To::parse(from, to); }
};

template <calendarType From>
struct plainConversion<string, From>
{
    static bool run(string& to, const From& from, int)
    {
        to = from.toText();
        return true;
    }
};

template <>
struct plainConversion<date, timestamp>
{
    static bool run(date& to, const timestamp& from, int)
    {
        to = from.datePart();
        return true;
    }
};

template <>
struct plainConversion<time, timestamp>
{
    static bool run(time& to, const timestamp& from, int)
    {
        to = from.timePart();
        return true;
    }
};

template <>
struct plainConversion<timestamp, date>
{
    static bool run(timestamp& to, const date& from, int)
    {
        to = timestamp(from);
        return true;
    }
};

template <>
struct plainConversion<string, locString>
{
    static bool run(string& to, const locString& from, int)
    {
        to = from.text();
        return true;
    }
};

template <>
struct plainConversion<directory, string>
{
    static bool run(directory& to, const string& from, int)
    {
        to = directory(from);
        return true;
    }
};

} // namespace qx::typeconvert
