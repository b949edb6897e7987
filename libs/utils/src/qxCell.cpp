// Small values: their conversions by the rules of qxPlainConversion.h, the decimal texts
// that are kept as ints, and the way of a word into a holder.
#include "qxCell.h"

#include "qxHeldTypes.h"
#include "qxPlainConversion.h"
#include "qxTextView.h"

#include <cmath>

namespace qx::cell
{

constinit std::atomic<bool> hasAddedConversions = false;

namespace
{

using typeconvert::plainConversion;
using typeconvert::plainPair;
using typeconvert::typeConversionManager;

// By the rules of the conversion manager, which is asked where others may have added to them.
template <class To, class From>
bool convertTo(To& to, const From& from)
{
    if constexpr (std::is_same_v<To, From>) {
        to = from;
        return true;
    } else {
        if constexpr (plainPair<To, From>)
            if (onlyOwnConversions())
                return plainConversion<To, From>::run(to, from, 0);
        return typeConversionManager::instance().convert(typeid(To), &to, typeid(From), &from, 0, nullptr);
    }
}

// A text that is an int reads as what its digits say: nothing wraps. False where the text does not read as a
// T.
template <heldNumber T>
bool readDecimal(long long number, T& out)
{
    using traits = valueTraits<T>;
    if constexpr (traits::isFloating)
        out = static_cast<T>(number);
    else if constexpr (!traits::isInteger) {
        if (number != 0 && number != 1)
            return false;
        out = number == 1;
    } else {
        if (number < static_cast<long long>(traits::min) ||
            (number > 0 && static_cast<unsigned long long>(number) > traits::max))
            return false;
        out = traits::wrap(number);
    }
    return true;
}

// The word of a number's text, where that is the decimal form of an int; `refused` for others.
word decimalOf(word w)
{
    if (isDouble(w)) {
        const auto value = get<double>(w);
        if (!(std::fabs(value) <= std::numeric_limits<int>::max()) || value != std::trunc(value) ||
            (value == 0 && std::signbit(value)))
            return refused;
        return pack(decimalKind, static_cast<std::uint32_t>(static_cast<int>(value)));
    }
    switch (kindIn(w)) {
    case intKind:
    case longKind:
    case shortKind:
    case ushortKind:
        return pack(decimalKind, payloadIn(w));
    case uintKind:
    case ulongKind:
    case uint64Kind:
        return payloadIn(w) > std::numeric_limits<int>::max() ? refused : pack(decimalKind, payloadIn(w));
    default:
        return refused;
    }
}

} // namespace

word makeDecimal(std::wstring_view text) noexcept
{
    const bool negative = text[0] == L'-';
    const std::wstring_view digits = text.substr(negative);
    if (digits.empty() || (digits[0] == L'0' && text.size() > 1))
        return refused;
    long long number = 0;
    for (const wchar_t c : digits) {
        if (!isDigit(c))
            return refused;
        number = number * 10 + (c - L'0');
    }
    if (negative)
        number = -number;
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        return refused;
    return pack(decimalKind, static_cast<std::uint32_t>(number));
}

string textIn(word w)
{
    return string(std::wstring(numberText(static_cast<int>(payloadIn(w))).view()));
}

template <class T>
bool convert(word w, T& out)
{
    if (!isSmall(w))
        return false;
    if constexpr (heldNumber<T>)
        if (kindIn(w) == decimalKind && onlyOwnConversions())
            return readDecimal(static_cast<int>(payloadIn(w)), out);
    return visit(w, [&out](const auto& value) { return convertTo(out, value); });
}

#define QX_DEFINE_CONVERT(...) template QXUTILS_API bool convert(word, __VA_ARGS__&);
QX_FIELD_TYPES(QX_DEFINE_CONVERT)

word convertedLike(word like, word w) noexcept
try {
    if (!isSmall(w))
        return refused;
    if (kindIn(like) == decimalKind && onlyOwnConversions())
        if (const word decimal = decimalOf(w); decimal != refused)
            return decimal;
    return visit(like, [w](auto value) {
        using held = decltype(value);
        if (!visit(w, [&value](const auto& source) { return convertTo(value, source); }))
            return refused;
        if constexpr (std::is_same_v<held, string>)
            return makeText(value);
        else
            return make(value);
    });
} catch (...) { // without memory, or from a converter of a host: a caller that converts by the manager meets
                // it again
    return refused;
}

genericValue made(string&& text)
{
    const word w = makeText(text);
    if (w != refused)
        return access::made(w);
    // Null without memory, as every value.
    return access::made(
        sharedPtr<genericValue::holderbase>(new genericValue::valueholder<string>(std::move(text))));
}

bool copyHeld(const genericValue& value, genericValue::holderbase& destination)
{
    const word w = access::load(value);
    if (isSmall(w))
        return visit(w, [&destination]<class T>(const T& held) {
            return genericValue::constptrholder<T>(&held).copyTo(destination);
        });
    const sharedPtr<genericValue::holderbase> shared = value.holderCopy();
    return shared && shared->copyTo(destination);
}

} // namespace qx::cell
