// Wide text: case mapping by generated tables (qxCaseTable.py), trimming, cutting.
#include "qxString.h"

#include "qxCaseTable.h"
#include "qxFormatter.h"
#include "qxTextView.h"
#include "qxUtf8.h"

#include <algorithm>
#include <cstdint>

namespace qx
{

namespace
{

using unicode::caseRange;

wchar_t mapped(wchar_t character, const caseRange* ranges, std::size_t count)
{
    const auto code = static_cast<unsigned long>(character);
    const caseRange* end = ranges + count;
    const caseRange* range =
        std::lower_bound(ranges, end, code, [](const caseRange& r, unsigned long c) { return r.last < c; });
    if (range == end || code < range->first || (code - range->first) % range->step != 0)
        return character;
    return static_cast<wchar_t>(static_cast<long>(code) + range->delta);
}

// `first` is the first of the ASCII letters that change. A text of ASCII, as nearly all are, is mapped by two
// loops without branches, which the compiler makes work on several characters at a time.
void mapCase(std::wstring& text, wchar_t first, const caseRange* ranges, std::size_t count)
{
    const auto letters = static_cast<std::uint32_t>(first);
    std::uint32_t allBits = 0;
    for (const wchar_t c : text)
        allBits |= static_cast<std::uint32_t>(c);
    if (allBits < 0x80) {
        for (wchar_t& c : text)
            c ^= static_cast<std::uint32_t>(c) - letters < 26 ? 0x20 : 0;
        return;
    }
    for (wchar_t& c : text)
        c = mapped(c, ranges, count);
}

} // namespace

string string::lower() const
{
    string copy(*this);
    copy.toLower();
    return copy;
}

string& string::toLower()
{
    mapCase(*this, L'A', unicode::toLowerRanges, unicode::toLowerRangesCount);
    return *this;
}

string& string::toUpper()
{
    mapCase(*this, L'a', unicode::toUpperRanges, unicode::toUpperRangesCount);
    return *this;
}

string& string::deleteLeading(std::wstring_view characters)
{
    erase(0, static_cast<size_type>(std::find_if_not(begin(), end(), among(characters)) - begin()));
    return *this;
}

string& string::deleteTrailing(std::wstring_view characters)
{
    erase(static_cast<size_type>(std::find_if_not(rbegin(), rend(), among(characters)).base() - begin()));
    return *this;
}

string& string::deleteAll(std::wstring_view characters)
{
    std::erase_if(*this, among(characters));
    return *this;
}

string& string::replace(std::wstring_view what, std::wstring_view with)
{
    size_type hit = what.empty() ? npos : find(what);
    if (hit == npos)
        return *this;
    std::wstring replaced;
    replaced.reserve(std::max(size(), size() - what.size() + with.size()));
    size_type done = 0;
    for (; hit != npos; hit = find(what, done)) {
        replaced.append(*this, done, hit - done).append(with);
        done = hit + what.size();
    }
    replaced.append(*this, done);
    swap(replaced);
    return *this;
}

bool string::splitAt(std::wstring_view separator, std::vector<string>& parts, bool append) const
{
    std::vector<string> cut;
    size_type start = 0;
    if (!separator.empty())
        for (size_type hit; (hit = find(separator, start)) != npos; start = hit + separator.size())
            cut.emplace_back(substr(start, hit - start));
    const bool found = !cut.empty();
    cut.emplace_back(substr(start));
    if (append)
        parts.insert(parts.end(), std::make_move_iterator(cut.begin()), std::make_move_iterator(cut.end()));
    else
        parts.swap(cut);
    return found;
}

std::string string::utf8() const
{
    return encodedUtf8(*this);
}

string string::fromUtf8(std::string_view bytes)
{
    return decodedUtf8(bytes);
}

void string::assignFormatted(const wchar_t* format, const formatArgument* arguments, std::size_t count)
{
    string text;
    if (format)
        appendFormatted(text, format, {arguments, count});
    swap(text);
}

} // namespace qx
