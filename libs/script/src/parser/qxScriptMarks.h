// The characters that mean something to the parser, by what they mean.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace qx::script::marks
{

// What a walk stops at. A table: a comparison with each of these characters costs three times as much.
enum mark : unsigned char
{
    bracket = 1,       // (
    statementMark = 2, // ; { }
    parameterMark = 4, // ) < > , "
    blank = 8,         // space and tab
    lineEnd = 16,      // CR and LF
    otherUnplain = 32, // capitals, other control characters, and all beyond ASCII
};

// What a name is not written plainly with: blanks, line ends, and what has a lower case.
constexpr unsigned char unplain = blank | lineEnd | otherUnplain;

constexpr auto table = [] {
    std::array<unsigned char, 128> made{};
    for (std::size_t c = 0; c <= ' '; ++c)
        made[c] = otherUnplain;
    for (std::size_t c = 'A'; c <= 'Z'; ++c)
        made[c] = otherUnplain;
    made[' '] = made['\t'] = blank;
    made['\r'] = made['\n'] = lineEnd;
    made['('] = bracket;
    for (const char c : {';', '{', '}'})
        made[static_cast<std::size_t>(c)] = statementMark;
    for (const char c : {')', '<', '>', ',', '"'})
        made[static_cast<std::size_t>(c)] = parameterMark;
    return made;
}();

constexpr unsigned char of(wchar_t c) noexcept
{
    const auto code = static_cast<std::size_t>(c);
    return code < table.size() ? table[code] : static_cast<unsigned char>(otherUnplain);
}

// True for a text with a character of these marks.
constexpr bool holdAny(std::wstring_view text, unsigned char wanted) noexcept
{
    for (const wchar_t c : text)
        if (of(c) & wanted)
            return true;
    return false;
}

// What stands in a text before its first opening bracket.
struct head
{
    constexpr explicit head(std::wstring_view text) noexcept
    {
        for (; size < text.size(); ++size) {
            const wchar_t c = text[size];
            if (c >= L'a' && c <= L'z') // most are
                continue;
            const unsigned char found = of(c);
            if (found == bracket)
                break;
            if (c == L'<' && angle > size)
                angle = size;
            marks |= found;
        }
    }

    std::size_t size = 0;                        // the text's own where there is no bracket
    std::size_t angle = std::wstring_view::npos; // the place of the first <
    unsigned char marks = 0;
};

} // namespace qx::script::marks
