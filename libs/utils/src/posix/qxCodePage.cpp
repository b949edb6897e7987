// The code page of texts outside: windows-1252, where a byte without a character stands for the control
// character of the same number.
#include "qxPlatformSystem.h"

#include <algorithm>
#include <iterator>

namespace qx
{

namespace
{

// The characters of the bytes 0x80 to 0x9F; all others are their own.
constexpr wchar_t upperControls[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
static_assert(std::size(upperControls) == 32);

wchar_t widened(unsigned char byte)
{
    return byte >= 0x80 && byte < 0xA0 ? upperControls[byte - 0x80] : static_cast<wchar_t>(byte);
}

char narrowed(wchar_t unit)
{
    const auto code = static_cast<unsigned long>(unit);
    if (code < 0x80 || (code >= 0xA0 && code < 0x100))
        return static_cast<char>(unit);
    const auto found = std::find(std::begin(upperControls), std::end(upperControls), unit);
    return found == std::end(upperControls) ? '?'
                                            : static_cast<char>(0x80 + (found - std::begin(upperControls)));
}

} // namespace

bool platformSystem::widenByte(unsigned char byte, wchar_t& unit)
{
    unit = widened(byte);
    return true;
}

string platformSystem::widen(std::string_view bytes)
{
    string text;
    text.reserve(bytes.size());
    for (const char byte : bytes)
        text += widened(static_cast<unsigned char>(byte));
    return text;
}

std::string platformSystem::narrow(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t unit : text)
        bytes += narrowed(unit);
    return bytes;
}

} // namespace qx
