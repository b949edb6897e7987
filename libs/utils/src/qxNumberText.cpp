// Numbers as text and back.
//
// Both directions have a fast path for what is common (few digits; whole numbers), exact by
// construction, and fall back on the standard's shortest-digits conversion in narrow
// characters. No locale, no allocation.
#include "qxNumberText.h"

#include "qxTextView.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>

namespace qx
{

namespace
{

// `word` is lower case ASCII.
bool equalsWord(std::wstring_view text, std::string_view word)
{
    return std::equal(text.begin(), text.end(), word.begin(), word.end(), [](wchar_t a, char b) {
        return (a >= L'A' && a <= L'Z' ? a + 32 : a) == static_cast<wchar_t>(b);
    });
}

// Takes a leading sign off; true for a minus.
bool takeSign(std::wstring_view& text)
{
    if (text.empty() || (text[0] != L'+' && text[0] != L'-'))
        return false;
    const bool negative = text[0] == L'-';
    text.remove_prefix(1);
    return negative;
}

// `max` has two digits at least.
bool readDigits(std::wstring_view text, unsigned long long max, unsigned long long& out)
{
    if (text.empty())
        return false;
    const bool fits = text.size() <= std::numeric_limits<unsigned long long>::digits10;
    unsigned long long number = 0;
    for (const wchar_t c : text) {
        if (!isDigit(c))
            return false;
        const auto digit = static_cast<unsigned long long>(c - L'0');
        if (!fits && number > (max - digit) / 10)
            return false;
        number = number * 10 + digit;
    }
    if (number > max)
        return false;
    out = number;
    return true;
}

// The fast path for most numbers: as few digits as T holds exactly, with a power of ten that it holds
// exactly too, so that one division rounds as it should. False for every other text. Five times as fast as
// the general way.
template <class T>
bool readShort(std::wstring_view text, T& out)
{
    constexpr std::size_t longest = std::numeric_limits<T>::digits10;
    static constexpr auto powers = [] {
        std::array<T, longest> made{1};
        for (std::size_t i = 1; i < longest; ++i)
            made[i] = made[i - 1] * 10;
        return made;
    }();
    if (FLT_EVAL_METHOD != 0 || text.empty() || text.size() > longest)
        return false;
    long long digits = 0;
    std::size_t decimals = text.size(); // behind a point that is yet to come: none
    for (std::size_t i = 0; i < text.size(); ++i)
        if (isDigit(text[i]))
            digits = digits * 10 + (text[i] - L'0');
        else if (text[i] == L'.' && decimals == text.size() && text.size() > 1)
            decimals = text.size() - 1 - i;
        else
            return false;
    out = static_cast<T>(digits);
    if (decimals != text.size())
        out /= powers[decimals];
    return true;
}

// A decimal number in narrow characters, 0.DIGITS times a power of ten, whatever the length of the text:
// digits that can no longer decide how the value is rounded are replaced by one that says whether they were
// all zero.
class decimal
{
public:
    // False for text that is no number. The sign is off already.
    bool read(std::wstring_view text)
    {
        std::size_t at = 0;
        bool anyDigit = false;
        for (bool fraction = false; at < text.size(); ++at)
            if (text[at] == L'.' && !fraction)
                fraction = true;
            else if (isDigit(text[at])) {
                anyDigit = true;
                put(static_cast<char>(text[at]), fraction);
            } else
                break;
        return anyDigit && readExponent(text.substr(at));
    }

    bool isZero() const { return mCount == 0; }

    // False when the value is out of the range of T.
    template <class T>
    bool value(T& out)
    {
        char* end = mText + mCount;
        if (mDropped)
            *end++ = '1';
        const long long exponent = mExponent - (end - mText);
        *end++ = 'e';
        end = std::to_chars(end, mText + sizeof mText, exponent).ptr;
        T number = 0;
        const auto result = std::from_chars(mText, end, number);
        if (result.ec != std::errc() || number == 0 || std::isinf(number))
            return false;
        out = number;
        return true;
    }

private:
    static constexpr int mostDigits = 800;           // more than 767 never decide about a double
    static constexpr long long farAway = 1000000000; // an exponent that no length of a text brings back

    void put(char digit, bool fraction)
    {
        const bool leadingZero = mCount == 0 && digit == '0';
        if (!fraction && !leadingZero)
            ++mExponent;
        else if (fraction && leadingZero)
            --mExponent;
        if (leadingZero)
            return;
        if (mCount < mostDigits)
            mText[mCount++] = digit;
        else if (digit != '0')
            mDropped = true;
    }

    bool readExponent(std::wstring_view text)
    {
        if (text.empty())
            return true;
        if (text[0] != L'e' && text[0] != L'E')
            return false;
        text.remove_prefix(1);
        const bool negative = takeSign(text);
        if (text.empty())
            return false;
        long long exponent = 0;
        for (const wchar_t c : text) {
            if (!isDigit(c))
                return false;
            exponent = std::min(exponent * 10 + (c - L'0'), farAway * 1000);
        }
        mExponent = std::clamp(mExponent + (negative ? -exponent : exponent), -farAway, farAway);
        return true;
    }

    char mText[mostDigits + 32];
    int mCount = 0;
    long long mExponent = 0;
    bool mDropped = false;
};

template <class T>
bool readAnyFloating(std::wstring_view text, T& out)
{
    text = trimmed(text);
    const bool negative = takeSign(text);
    T number = 0;
    if (readShort(text, number)) {
        out = negative ? -number : number;
        return true;
    }
    if (equalsWord(text, "inf"))
        number = std::numeric_limits<T>::infinity();
    else if (equalsWord(text, "nan"))
        number = std::numeric_limits<T>::quiet_NaN();
    else {
        decimal digits;
        if (!digits.read(text) || (!digits.isZero() && !digits.value(number)))
            return false;
    }
    out = negative ? -number : number;
    return true;
}

// The shortest digits of a finite number, and the three ways to write them.
class shortestDigits
{
public:
    template <class T>
    explicit shortestDigits(T value)
    {
        char text[32];
        const char* const end =
            std::to_chars(text, text + sizeof text, value, std::chars_format::scientific).ptr;
        const char* const mark = std::find(static_cast<const char*>(text), end, 'e');
        mEnd = std::remove_copy(static_cast<const char*>(text), mark, mText, '.');
        mFirst += mText[0] == '-';
        std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, mExponent);
    }

    // Gives the end of what was written.
    char* write(char* to) const
    {
        constexpr int leastPlain = -7;
        constexpr int beyondPlain = 21;
        if (mFirst != mText)
            *to++ = '-';
        if (mExponent < leastPlain || mExponent >= beyondPlain)
            return writeWithExponent(to);
        return mExponent < 0 ? writeFraction(to) : writePlain(to);
    }

private:
    char* writeWithExponent(char* to) const // 1.5e+30
    {
        *to++ = *mFirst;
        if (mEnd - mFirst > 1)
            *to++ = '.';
        to = std::copy(mFirst + 1, mEnd, to);
        *to++ = 'e';
        if (mExponent > 0)
            *to++ = '+';
        return std::to_chars(to, to + 8, mExponent).ptr;
    }
    char* writeFraction(char* to) const // 0.0015
    {
        *to++ = '0';
        *to++ = '.';
        to = std::fill_n(to, -mExponent - 1, '0');
        return std::copy(mFirst, mEnd, to);
    }
    char* writePlain(char* to) const // 1.5, 1500
    {
        const std::ptrdiff_t count = mEnd - mFirst;
        const std::ptrdiff_t beforePoint = mExponent + 1;
        to = std::copy_n(mFirst, std::min(count, beforePoint), to);
        if (count <= beforePoint)
            return std::fill_n(to, beforePoint - count, '0');
        *to++ = '.';
        return std::copy(mFirst + beforePoint, mEnd, to);
    }

    char mText[24]; // a minus, if any, and the digits
    const char* mFirst = mText;
    const char* mEnd = mText;
    int mExponent = 0; // of ten, for a point behind the first digit
};

// The digits of an integer below this are the shortest that read back: there is no other value between it and
// its neighbours.
template <class T>
constexpr T integersBelow = T(1ull << std::numeric_limits<T>::digits);

template <class T>
bool isPlainInteger(T value)
{
    return std::fabs(value) < integersBelow<T> && value == static_cast<T>(static_cast<long long>(value)) &&
           !(value == 0 && std::signbit(value));
}

// All numbers below a hundred, two digits each.
constexpr auto pairs = [] {
    std::array<wchar_t, 200> made{};
    for (unsigned i = 0; i < 100; ++i) {
        made[2 * i] = static_cast<wchar_t>(L'0' + i / 10);
        made[2 * i + 1] = static_cast<wchar_t>(L'0' + i % 10);
    }
    return made;
}();

template <class T>
std::string_view floatingText(char (&buffer)[48], T value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    return {buffer, static_cast<std::size_t>(shortestDigits(value).write(buffer) - buffer)};
}

} // namespace

bool detail::readSigned(std::wstring_view text, long long min, long long max, long long& out) noexcept
{
    text = trimmed(text);
    const bool negative = takeSign(text);
    // The magnitude of the least number is one more than that of the greatest.
    const auto limit =
        negative ? 0 - static_cast<unsigned long long>(min) : static_cast<unsigned long long>(max);
    unsigned long long magnitude = 0;
    if (!readDigits(text, limit, magnitude))
        return false;
    out = static_cast<long long>(negative ? 0 - magnitude : magnitude);
    return true;
}

bool detail::readUnsigned(std::wstring_view text, unsigned long long max, unsigned long long& out) noexcept
{
    text = trimmed(text);
    return !takeSign(text) && readDigits(text, max, out);
}

bool detail::readFloating(std::wstring_view text, float& out) noexcept
{
    return readAnyFloating(text, out);
}

bool detail::readFloating(std::wstring_view text, double& out) noexcept
{
    return readAnyFloating(text, out);
}

bool detail::readBool(std::wstring_view text, bool& out) noexcept
{
    text = trimmed(text);
    const auto isAnyOf = [text](auto... words) { return (equalsWord(text, words) || ...); };
    const bool yes = isAnyOf("true", "1", "yes");
    if (!yes && !isAnyOf("false", "0", "no"))
        return false;
    out = yes;
    return true;
}

// From the end, two digits at a time.
void numberText::writeDigits(unsigned long long magnitude, bool negative) noexcept
{
    unsigned first = longest;
    for (; magnitude >= 10; magnitude /= 100) {
        const std::size_t pair = 2 * (magnitude % 100);
        mCharacters[--first] = pairs[pair + 1];
        mCharacters[--first] = pairs[pair];
    }
    if (magnitude != 0 || first == longest)
        mCharacters[--first] = static_cast<wchar_t>(L'0' + magnitude);
    if (negative)
        mCharacters[--first] = L'-';
    mFirst = first;
    mSize = longest - first;
}

void numberText::write(long long value) noexcept
{
    const auto bits = static_cast<unsigned long long>(value);
    writeDigits(value < 0 ? 0 - bits : bits, value < 0);
}

void numberText::write(unsigned long long value) noexcept
{
    writeDigits(value, false);
}

void numberText::write(std::string_view characters) noexcept
{
    mSize = static_cast<unsigned>(characters.size());
    std::copy(characters.begin(), characters.end(), mCharacters);
}

void numberText::writeFloating(float value) noexcept
{
    if (isPlainInteger(value))
        return write(static_cast<long long>(value));
    char buffer[48];
    write(floatingText(buffer, value));
}

void numberText::writeFloating(double value) noexcept
{
    if (isPlainInteger(value))
        return write(static_cast<long long>(value));
    char buffer[48];
    write(floatingText(buffer, value));
}

} // namespace qx
