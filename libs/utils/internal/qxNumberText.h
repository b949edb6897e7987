// Numbers as text and back: one set of rules for the whole system, without locale and without allocation.
//
//     int count = 0;
//     if (qx::readNumber(L" 12 ", count))
//         out.append(qx::numberText(count).view());
//
// Text is trimmed of blanks, tabs and line ends and must be used up whole. Integers are an optional sign and
// decimal digits; floating numbers may have a fraction and an exponent, or are `inf` or `nan` in any case;
// bools are `true`, `1`, `yes`, `false`, `0`, `no` in any case.
#pragma once

#include "qxExport.h"
#include "qxValueTraits.h"

#include <string_view>

namespace qx
{

namespace detail
{

QXUTILS_API bool readSigned(std::wstring_view text, long long min, long long max, long long& out) noexcept;
QXUTILS_API bool readUnsigned(std::wstring_view text, unsigned long long max,
                              unsigned long long& out) noexcept;
QXUTILS_API bool readFloating(std::wstring_view text, float& out) noexcept;
QXUTILS_API bool readFloating(std::wstring_view text, double& out) noexcept;
QXUTILS_API bool readBool(std::wstring_view text, bool& out) noexcept;

} // namespace detail

// False, and `out` untouched, when the text is no such number or out of range: too large, an unsigned one
// with a minus, or a floating one other than zero that is too small for anything but zero.
template <heldNumber T>
bool readNumber(std::wstring_view text, T& out) noexcept
{
    using traits = valueTraits<T>;
    if constexpr (traits::isFloating)
        return detail::readFloating(text, out);
    else if constexpr (!traits::isInteger)
        return detail::readBool(text, out);
    else {
        typename traits::wide number = 0;
        if constexpr (traits::isSigned) {
            if (!detail::readSigned(text, traits::min, traits::max, number))
                return false;
        } else if (!detail::readUnsigned(text, traits::max, number))
            return false;
        out = traits::wrap(number);
        return true;
    }
}

// The text of a number. Floating numbers get the shortest digits that read back as the same value, written
// plainly for magnitudes from 1e-7 to below 1e21 and with an exponent beyond: `1`, `0.1`, `1e+30`, `1e-8`,
// `-0`, `inf`, `-inf`, `nan`.
class QXUTILS_API numberText
{
public:
    template <heldNumber T>
    explicit numberText(T value) noexcept
    {
        using traits = valueTraits<T>;
        if constexpr (traits::isFloating)
            writeFloating(value);
        else if constexpr (traits::isInteger)
            write(static_cast<typename traits::wide>(static_cast<typename traits::plain>(value)));
        else
            write(value ? "true" : "false");
    }

    // Borrowed from this object.
    std::wstring_view view() const noexcept { return {mCharacters + mFirst, mSize}; }

private:
    void write(long long value) noexcept;
    void write(unsigned long long value) noexcept;
    void write(std::string_view characters) noexcept;
    void writeDigits(unsigned long long magnitude, bool negative) noexcept;
    void writeFloating(float value) noexcept;
    void writeFloating(double value) noexcept;

    static constexpr unsigned longest = 32; // a sign, "0.000000" and 17 digits

    wchar_t mCharacters[longest];
    unsigned mFirst = 0;
    unsigned mSize = 0;
};

} // namespace qx
