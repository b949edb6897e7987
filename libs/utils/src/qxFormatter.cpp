// Interprets printf-style formats over typed arguments: reads a directive, takes the next
// argument, and shows it as the directive says or, where the two do not fit, in the
// argument's own way. Nothing is handed to the C library's printf.
#include "qxFormatter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace qx
{

namespace
{

constexpr int maxFieldSize =
    4096; // widths and precisions beyond it are cut, so that no format takes all memory

struct directive
{
    bool left = false;
    bool sign = false;
    bool blank = false;
    bool alternate = false;
    bool zeros = false;
    int width = 0;
    int precision = -1; // -1: none given
    wchar_t letter = 0;
};

class formatter
{
public:
    formatter(string& text, std::wstring_view format, std::span<const formatArgument> arguments)
        : mText(text), mFormat(format), mArguments(arguments)
    {}

    void run()
    {
        while (mAt < mFormat.size()) {
            const std::size_t percent = std::min(mFormat.find(L'%', mAt), mFormat.size());
            mText.append(mFormat.substr(mAt, percent - mAt));
            mAt = percent + 1;
            if (mAt < mFormat.size())
                runDirective();
        }
    }

private:
    void runDirective()
    {
        if (mFormat[mAt] == L'%') {
            mText.push_back(L'%');
            ++mAt;
            return;
        }
        const directive d = readDirective();
        if (mNext < mArguments.size())
            put(d, mArguments[mNext++]);
    }

    directive readDirective()
    {
        directive d;
        for (; mAt < mFormat.size(); ++mAt) {
            const wchar_t c = mFormat[mAt];
            if (c == L'-')
                d.left = true;
            else if (c == L'+')
                d.sign = true;
            else if (c == L' ')
                d.blank = true;
            else if (c == L'#')
                d.alternate = true;
            else if (c == L'0')
                d.zeros = true;
            else
                break;
        }
        d.width = readNumber(0);
        if (d.width < 0) {
            d.left = true;
            d.width = -d.width;
        }
        if (mAt < mFormat.size() && mFormat[mAt] == L'.') {
            ++mAt;
            d.precision = std::max(readNumber(0), -1);
        }
        while (mAt < mFormat.size() &&
               std::wstring_view(L"hlLqjzt").find(mFormat[mAt]) != std::wstring_view::npos)
            ++mAt;
        if (mAt < mFormat.size())
            d.letter = mFormat[mAt++];
        return d;
    }

    // A number in the format, or the next argument for a star.
    int readNumber(int missing)
    {
        if (mAt < mFormat.size() && mFormat[mAt] == L'*') {
            ++mAt;
            if (mNext >= mArguments.size())
                return missing;
            const formatArgument& argument = mArguments[mNext++];
            if (argument.type() != formatArgument::kind::signedInteger)
                return missing;
            return static_cast<int>(
                std::clamp<long long>(argument.signedValue(), -maxFieldSize, maxFieldSize));
        }
        int number = missing;
        for (; mAt < mFormat.size() && mFormat[mAt] >= L'0' && mFormat[mAt] <= L'9'; ++mAt)
            number = std::min(number * 10 + (mFormat[mAt] - L'0'), maxFieldSize);
        return number;
    }

    void put(const directive& d, const formatArgument& argument)
    {
        using kind = formatArgument::kind;
        switch (argument.type()) {
        case kind::signedInteger:
            if (d.letter == L'c')
                return putText(d, std::wstring(1, static_cast<wchar_t>(argument.signedValue())), false);
            return putSigned(d, argument.signedValue());
        case kind::unsignedInteger:
            if (d.letter == L'c')
                return putText(d, std::wstring(1, static_cast<wchar_t>(argument.unsignedValue())), false);
            return putInteger(d, argument.unsignedValue(), false);
        case kind::floating:
            return putFloating(d, argument.floatingValue());
        case kind::character:
            return putText(d, std::wstring(1, argument.characterValue()), false);
        case kind::pointer: {
            directive hex = d;
            hex.letter = L'x';
            hex.alternate = true;
            return putInteger(hex, reinterpret_cast<std::uintptr_t>(argument.pointerValue()), false);
        }
        case kind::text:
            return putText(d, argument.textValue(), true);
        case kind::none:
            return;
        }
    }

    void putText(const directive& d, std::wstring_view value, bool cut)
    {
        if (cut && d.precision >= 0)
            value = value.substr(0, static_cast<std::size_t>(d.precision));
        pad(d, value.size(), [&] { mText.append(value); });
    }

    void putSigned(const directive& d, long long value)
    {
        if (d.letter == L'x' || d.letter == L'X' || d.letter == L'o' || d.letter == L'u') {
            // As printf would show an int: 32 bits where they suffice.
            const bool narrow = value >= INT32_MIN && value < 0;
            return putInteger(
                d, narrow ? static_cast<std::uint32_t>(value) : static_cast<std::uint64_t>(value), false);
        }
        const auto bits = static_cast<std::uint64_t>(value);
        putInteger(d, value < 0 ? 0 - bits : bits, value < 0);
    }

    void putInteger(const directive& d, std::uint64_t magnitude, bool negative)
    {
        const int base = d.letter == L'x' || d.letter == L'X' ? 16 : d.letter == L'o' ? 8 : 10;
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, magnitude, base).ptr;
        if (d.letter == L'X')
            std::transform(digits, end, digits,
                           [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
        std::wstring body(digits, end);
        if (d.precision > static_cast<int>(body.size()))
            body.insert(0, static_cast<std::size_t>(d.precision) - body.size(), L'0');
        std::wstring prefix = signText(d, negative, base == 10 && d.letter != L'u');
        if (d.alternate && magnitude != 0 && base != 10)
            prefix += base == 8 ? L"0" : d.letter == L'X' ? L"0X" : L"0x";
        putNumber(d, prefix, body, d.precision < 0);
    }

    void putFloating(const directive& d, double value)
    {
        const bool negative = std::signbit(value);
        const std::wstring prefix = signText(d, negative, true);
        if (!std::isfinite(value))
            return putNumber(d, std::isnan(value) ? L"" : prefix, std::isnan(value) ? L"nan" : L"inf", false);
        const double magnitude = std::fabs(value);
        char digits[400 + maxFieldSize];
        char* const limit = digits + sizeof digits;
        const int precision = d.precision < 0 ? 6 : d.precision;
        char* end;
        switch (d.letter) {
        case L'e':
        case L'E':
            end = std::to_chars(digits, limit, magnitude, std::chars_format::scientific, precision).ptr;
            break;
        case L'f':
        case L'F':
            end = std::to_chars(digits, limit, magnitude, std::chars_format::fixed, precision).ptr;
            break;
        case L'g':
        case L'G':
            end = std::to_chars(digits, limit, magnitude, std::chars_format::general, precision).ptr;
            break;
        default: // an integer or text directive: the shortest form that reads back
            end = std::to_chars(digits, limit, magnitude).ptr;
            break;
        }
        if (d.letter == L'E' || d.letter == L'G')
            std::transform(digits, end, digits, [](char c) { return c == 'e' ? 'E' : c; });
        putNumber(d, prefix, std::wstring(digits, end), true);
    }

    static std::wstring signText(const directive& d, bool negative, bool isSigned)
    {
        if (negative)
            return L"-";
        if (!isSigned || (!d.sign && !d.blank))
            return L"";
        return d.sign ? L"+" : L" ";
    }

    void putNumber(const directive& d, std::wstring prefix, std::wstring_view body, bool zerosAllowed)
    {
        const std::size_t size = prefix.size() + body.size();
        if (d.zeros && !d.left && zerosAllowed && size < static_cast<std::size_t>(d.width))
            prefix.append(static_cast<std::size_t>(d.width) - size, L'0');
        pad(d, prefix.size() + body.size(), [&] { mText.append(prefix).append(body); });
    }

    template <class Put>
    void pad(const directive& d, std::size_t size, Put put)
    {
        const auto width = static_cast<std::size_t>(d.width);
        const std::size_t fill = width > size ? width - size : 0;
        if (!d.left)
            mText.append(fill, L' ');
        put();
        if (d.left)
            mText.append(fill, L' ');
    }

    string& mText;
    std::wstring_view mFormat;
    std::span<const formatArgument> mArguments;
    std::size_t mAt = 0;
    std::size_t mNext = 0;
};

} // namespace

void appendFormatted(string& text, std::wstring_view format, std::span<const formatArgument> arguments)
{
    formatter(text, format, arguments).run();
}

} // namespace qx
