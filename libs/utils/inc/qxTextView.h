// Text that is only looked at: views into somebody else's text.
#pragma once

#include "qxExport.h"

#include <string_view>

namespace qx
{

// The text without any of these characters at its ends; an empty piece of it where nothing else is in it.
inline std::wstring_view trimmed(std::wstring_view text, std::wstring_view characters = L" \t\r\n")
{
    const std::size_t first = text.find_first_not_of(characters);
    return first == text.npos ? text.substr(0, 0)
                              : text.substr(first, text.find_last_not_of(characters) + 1 - first);
}

// Whether the pattern fits the whole text: `*` stands for any characters, `?` for one.
QXUTILS_API bool fitsPattern(std::wstring_view text, std::wstring_view pattern);

} // namespace qx
