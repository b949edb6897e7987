// Rounding to decimals, comparison with a tolerance, and angles.
#include "qxMath.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <string_view>

namespace qx
{

namespace
{

// The shortest decimal form of a finite number's magnitude: D.DDD times ten to the power of `exponent`.
struct decimalForm
{
    explicit decimalForm(double magnitude)
    {
        char text[32];
        const char* const end =
            std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific).ptr;
        const std::string_view all(text, static_cast<std::size_t>(end - text));
        const std::size_t mark = all.find('e');
        digits.assign(all.substr(0, mark));
        if (digits.size() > 1)
            digits.erase(1, 1);
        const std::size_t number = mark + (all[mark + 1] == '+' ? 2 : 1); // no plus for from_chars
        std::from_chars(text + number, end, exponent);
    }

    double value() const
    {
        std::string text = digits;
        text.insert(1, ".").append("e").append(std::to_string(exponent));
        double read = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
        return result.ec == std::errc() ? read : std::numeric_limits<double>::infinity();
    }

    std::string digits;
    int exponent = 0;
};

// One more in the last of the digits, which may carry to a digit in front of the first.
void increment(decimalForm& form)
{
    std::size_t at = form.digits.size();
    while (at > 0 && form.digits[at - 1] == '9')
        form.digits[--at] = '0';
    if (at > 0)
        ++form.digits[at - 1];
    else {
        form.digits.insert(0, 1, '1');
        ++form.exponent;
    }
}

double cutAt(double value, int decimals, bool roundUp)
{
    if (!std::isfinite(value) || value == 0)
        return value;
    decimalForm form(std::fabs(value));
    const long long kept = static_cast<long long>(form.exponent) + decimals + 1;
    if (kept >= static_cast<long long>(form.digits.size()))
        return value;
    if (kept < 0)
        return std::copysign(0.0, value);
    const bool up = roundUp && form.digits[static_cast<std::size_t>(kept)] >= '5';
    if (kept == 0 && !up)
        return std::copysign(0.0, value);
    form.digits.resize(static_cast<std::size_t>(kept));
    if (up)
        increment(form);
    return std::copysign(form.value(), value);
}

} // namespace

double roundImp(double value, int decimals)
{
    return cutAt(value, decimals, true);
}

double cutOffImp(double value, int decimals)
{
    return cutAt(value, decimals, false);
}

bool dblEq(double a, double b, double tolerance)
{
    return std::fabs(a - b) <= tolerance;
}

angle angle::fromDegree(double degree)
{
    return fromRadians(degree * std::numbers::pi / 180);
}

angle angle::fromRadians(double radians)
{
    angle made;
    made.mRadians = radians;
    return made;
}

double angle::degree() const
{
    return mRadians * 180 / std::numbers::pi;
}

} // namespace qx
