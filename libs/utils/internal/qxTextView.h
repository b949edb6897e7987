// Text that is only looked at: views into somebody else's text.
#pragma once

#include "qxExport.h"

#include <string_view>

namespace qx
{

// The text without any of these characters at its ends; an empty piece of it where nothing else is in it.
inline std::wstring_view trimmed(std::wstring_view text, std::wstring_view characters = L" \t\r\n")
{
    // A loop over these few characters: a search in them costs a call for each character of the text.
    const auto goes = [characters](wchar_t c) {
        for (const wchar_t deleted : characters)
            if (c == deleted)
                return true;
        return false;
    };
    while (!text.empty() && goes(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && goes(text.back()))
        text.remove_suffix(1);
    return text;
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

// Whether the pattern fits the whole text: `*` stands for any characters, `?` for one.
QXUTILS_API bool fitsPattern(std::wstring_view text, std::wstring_view pattern);

} // namespace qx
