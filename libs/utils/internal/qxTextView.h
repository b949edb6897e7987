// Text that is only looked at: views into somebody else's text, which has to outlive them. Nothing here
// allocates or throws.
#pragma once

#include "qxExport.h"

#include <string_view>

namespace qx
{

// A decimal digit. No others occur in numbers, dates and times, whatever the locale says.
constexpr bool isDigit(wchar_t c) noexcept
{
    return c >= L'0' && c <= L'9';
}

// What may stand around a text without counting: blank, tab, carriage return, line feed.
constexpr bool isBlank(wchar_t c) noexcept
{
    return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
}

// Tells whether a character is one of these few. A loop over them: a search costs a call for each character
// of a text.
constexpr auto among(std::wstring_view characters)
{
    return [characters](wchar_t c) {
        for (const wchar_t wanted : characters)
            if (c == wanted)
                return true;
        return false;
    };
}

// The text without the characters at its ends for which `goes` is true; an empty piece of it where nothing
// else is in it.
template <class Goes>
constexpr std::wstring_view trimmedWhere(std::wstring_view text, const Goes& goes)
{
    while (!text.empty() && goes(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && goes(text.back()))
        text.remove_suffix(1);
    return text;
}
constexpr std::wstring_view trimmed(std::wstring_view text)
{
    return trimmedWhere(text, isBlank);
}
constexpr std::wstring_view trimmed(std::wstring_view text, std::wstring_view characters)
{
    return trimmedWhere(text, among(characters));
}

// Equality of texts as short as names are: a call for the comparison would cost as much again.
inline bool isSameShort(std::wstring_view a, std::wstring_view b) noexcept
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return false;
    return true;
}

// Whether the pattern fits the whole text: `*` stands for any characters, `?` for one. Takes at most the
// product of the two lengths.
QXUTILS_API bool fitsPattern(std::wstring_view text, std::wstring_view pattern);

} // namespace qx
