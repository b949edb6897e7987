// UTF-8 at the edges of the system.
//
// Any byte sequence survives the way in and out: a byte that is not part of valid UTF-8 becomes the unit
// 0xDC00 + byte. Unpaired units of other values travel as three bytes, except where reading them back would
// join them into a pair.
#include "qxUtf8.h"

#include <algorithm>

namespace qx
{

namespace
{

constexpr bool isHigh(unsigned long unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLow(unsigned long unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool isEscapedByte(unsigned long unit)
{
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

struct decoded
{
    unsigned long code;
    std::size_t length; // 0: the byte is not part of valid UTF-8
};

decoded decodeAt(std::string_view bytes, std::size_t at)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byteAt(at);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || at + length > bytes.size())
        return {0, 0};
    unsigned long code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(at + i) & 0xC0) != 0x80)
            return {0, 0};
        code = code << 6 | (byteAt(at + i) & 0x3Fu);
    }
    const unsigned long least = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    if (code < least || code > 0x10FFFF || isEscapedByte(code))
        return {0, 0};
    return {code, length};
}

// The end of a run of high halves of three bytes each, which begins at `at`.
std::size_t endOfHighHalves(std::string_view bytes, std::size_t at)
{
    while (at < bytes.size()) {
        const decoded next = decodeAt(bytes, at);
        if (next.length != 3 || !isHigh(next.code))
            break;
        at += next.length;
    }
    return at;
}

// True when the next unit will be a low surrogate, decoded or escaped. No run of high surrogates begins at
// `at`.
bool beginsWithLowHalf(std::string_view bytes, std::size_t at)
{
    if (at == bytes.size())
        return false;
    const decoded next = decodeAt(bytes, at);
    return next.length == 0 || isLow(next.code);
}

void appendEncoded(std::string& bytes, unsigned long code)
{
    const auto put = [&](unsigned long byte) { bytes.push_back(static_cast<char>(byte)); };
    if (code < 0x80)
        return put(code);
    if (code < 0x800)
        put(0xC0 | code >> 6);
    else {
        if (code < 0x10000)
            put(0xE0 | code >> 12);
        else {
            put(0xF0 | code >> 18);
            put(0x80 | (code >> 12 & 0x3F));
        }
        put(0x80 | (code >> 6 & 0x3F));
    }
    put(0x80 | (code & 0x3F));
}

// The number of ASCII characters that a text begins with: mostly all, names of files above all.
template <class Char>
std::size_t plainPrefix(std::basic_string_view<Char> text)
{
    const auto end = std::find_if(text.begin(), text.end(), [](Char c) { return c < 0 || c >= 0x80; });
    return static_cast<std::size_t>(end - text.begin());
}

} // namespace

std::string encodedUtf8(std::wstring_view text)
{
    const std::size_t plain = plainPrefix(text);
    std::string bytes(plain, '\0');
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(plain), bytes.begin(),
                   [](wchar_t c) { return static_cast<char>(c); });
    if (plain == text.size())
        return bytes;
    bytes.reserve(text.size());
    for (std::size_t i = plain; i < text.size(); ++i) {
        const auto unit = static_cast<unsigned long>(text[i]);
        const unsigned long next = i + 1 < text.size() ? static_cast<unsigned long>(text[i + 1]) : 0;
        if (isHigh(unit) && isLow(next)) {
            appendEncoded(bytes, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else if (isEscapedByte(unit))
            bytes.push_back(static_cast<char>(unit - 0xDC00));
        else
            appendEncoded(bytes, unit & 0xFFFF);
    }
    return bytes;
}

string decodedUtf8(std::string_view bytes)
{
    const std::size_t plain = plainPrefix(bytes);
    string text{std::wstring(bytes.begin(), bytes.begin() + plain)};
    if (plain == bytes.size())
        return text;
    text.reserve(bytes.size());
    const auto escapeUpTo = [&](std::size_t& at, std::size_t end) {
        for (; at < end; ++at)
            text.push_back(static_cast<wchar_t>(0xDC00u + static_cast<unsigned char>(bytes[at])));
    };
    for (std::size_t at = plain; at < bytes.size();) {
        const std::size_t end = endOfHighHalves(bytes, at);
        // The last half would pair up with a low one that follows; escaped it begins with a low one itself,
        // and so on.
        if (beginsWithLowHalf(bytes, end))
            escapeUpTo(at, end);
        for (; at < end; at += 3)
            text.push_back(static_cast<wchar_t>(decodeAt(bytes, at).code));
        if (at == bytes.size())
            break;
        const decoded next = decodeAt(bytes, at);
        if (next.length == 0)
            escapeUpTo(at, at + 1);
        else if (next.code >= 0x10000) {
            text.push_back(static_cast<wchar_t>(0xD800 + ((next.code - 0x10000) >> 10)));
            text.push_back(static_cast<wchar_t>(0xDC00 + ((next.code - 0x10000) & 0x3FF)));
        } else
            text.push_back(static_cast<wchar_t>(next.code));
        at += next.length;
    }
    return text;
}

} // namespace qx
