// Lines of files with settings and with texts: what their two readers (qxConfigReader.cpp,
// qxMessageCatalogue.cpp) have in common.
#pragma once

#include "qxTextView.h"

#include <algorithm>
#include <string_view>

namespace qx
{

// Takes the byte order mark of UTF-8 off the start of a file; false where there is none.
inline bool takeByteOrderMark(std::string_view& bytes) noexcept
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (!bytes.starts_with(mark))
        return false;
    bytes.remove_prefix(mark.size());
    return true;
}

// Takes the next line off `rest`, with the one of the characters `ends` that ends it. The line comes trimmed.
inline std::wstring_view takeLine(std::wstring_view& rest, std::wstring_view ends)
{
    const std::size_t end = std::min(rest.find_first_of(ends), rest.size());
    const std::wstring_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return trimmed(line);
}

// Takes a line apart at the first `separator`; both pieces come trimmed. False without a separator or a key.
inline bool splitPair(std::wstring_view line, std::wstring_view separator, std::wstring_view& key,
                      std::wstring_view& value)
{
    const std::size_t place = line.find(separator);
    key = trimmed(line.substr(0, place));
    if (place == line.npos || key.empty())
        return false;
    value = trimmed(line.substr(place + separator.size()));
    return true;
}

} // namespace qx
