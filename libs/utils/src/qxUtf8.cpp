// UTF-8 at the edges of the system.
//
// Any byte sequence survives the way in and out: a byte that is not part of valid UTF-8 becomes the unit
// 0xDC00 + byte. Unpaired units of other values travel as three bytes, except where reading them back would
// join them into a pair.
#include "qxString.h"

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

// The unit that the bytes at `at` begin with, in whatever way they are read.
unsigned long firstUnit(std::string_view bytes, std::size_t at)
{
    const decoded next = decodeAt(bytes, at);
    if (next.length == 0)
        return 0xDC00u + static_cast<unsigned char>(bytes[at]);
    return next.code;
}

bool isHighAt(std::string_view bytes, std::size_t at)
{
    return at < bytes.size() && isHigh(decodeAt(bytes, at).code);
}

// Where the run of three-byte high units from `at` on ends.
std::size_t endOfHighs(std::string_view bytes, std::size_t at)
{
    while (isHighAt(bytes, at))
        at += 3;
    return at;
}

void appendEscaped(string& text, std::string_view bytes)
{
    for (const char byte : bytes)
        text.push_back(static_cast<wchar_t>(0xDC00u + static_cast<unsigned char>(byte)));
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

} // namespace

std::string string::utf8() const
{
    std::string bytes;
    bytes.reserve(size());
    for (std::size_t i = 0; i < size(); ++i) {
        const auto unit = static_cast<unsigned long>((*this)[i]);
        const unsigned long next = i + 1 < size() ? static_cast<unsigned long>((*this)[i + 1]) : 0;
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

string string::fromUtf8(std::string_view bytes)
{
    string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        // A high unit would pair up with a low one behind it. Its bytes, escaped, are low units themselves,
        // so the same holds for a high one in front of it: a run of them is escaped as a whole or not at all.
        if (const std::size_t end = endOfHighs(bytes, at); end != at) {
            if (end < bytes.size() && isLow(firstUnit(bytes, end)))
                appendEscaped(text, bytes.substr(at, end - at));
            else {
                for (std::size_t high = at; high != end; high += 3)
                    text.push_back(static_cast<wchar_t>(decodeAt(bytes, high).code));
            }
            at = end;
            continue;
        }
        const decoded next = decodeAt(bytes, at);
        if (next.length == 0) {
            appendEscaped(text, bytes.substr(at, 1));
            ++at;
            continue;
        }
        if (next.code >= 0x10000) {
            text.push_back(static_cast<wchar_t>(0xD800 + ((next.code - 0x10000) >> 10)));
            text.push_back(static_cast<wchar_t>(0xDC00 + ((next.code - 0x10000) & 0x3FF)));
        } else
            text.push_back(static_cast<wchar_t>(next.code));
        at += next.length;
    }
    return text;
}

} // namespace qx
