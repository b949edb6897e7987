// The units of dates and times, by word, and the statement that moves a value by so many of one.
#include "modules/qxScriptCalculation.h"

namespace qx::script
{

// A word of the language, and how a value moves by so many of it; null where it does not.
template <class Value>
struct unitOf
{
    std::wstring_view word;
    void (*move)(Value& value, uint quantity, calculationMode mode);
};

namespace
{

template <class Value, class Duration>
void moveBy(Value& value, uint quantity, calculationMode mode)
{
    if (mode == calculationMode::add)
        value += Duration(quantity);
    else
        value -= Duration(quantity);
}

// The units of a type.
template <class Value>
struct kindOf;

template <>
struct kindOf<date>
{
    // REQUIRED: workdays are accepted, with a parameter of their own, and fail at each run.
    static constexpr unitOf<date> units[] = {{L"years", moveBy<date, years>},
                                             {L"months", moveBy<date, months>},
                                             {L"weeks", moveBy<date, weeks>},
                                             {L"days", moveBy<date, days>},
                                             {L"workdays", nullptr}};
};

template <>
struct kindOf<time>
{
    static constexpr unitOf<time> units[] = {{L"hours", moveBy<time, hours>},
                                             {L"minutes", moveBy<time, minutes>},
                                             {L"seconds", moveBy<time, seconds>},
                                             {L"mseconds", moveBy<time, mseconds>}};
};

template <class Value>
const unitOf<Value>& findUnit(const string& word)
{
    const string lower = word.lower();
    for (const unitOf<Value>& unit : kindOf<Value>::units)
        if (unit.word == lower)
            return unit;
    refuse(calculationTexts<Value>::unreadableText, word);
}

} // namespace

template <class Value>
statement* calculation<Value>::createFrom(const callText& call, calculationMode mode)
{
    if (call.params.size() < 2)
        refuse(texts::tooFewParameters);
    if (call.types.size() < 2)
        refuse(texts::noUnit);
    return new calculation(call, mode, findUnit<Value>(call.types[1]));
}

template <class Value>
calculation<Value>::calculation(const callText& call, calculationMode mode, const unitOf<Value>& unit)
    : mMode(mode), mpUnit(&unit), mpValue(requireOperand(call, 0, texts::unreadableText)),
      mpQuantity(requireOperand(call, 1, texts::unreadableText))
{
    if (!unit.move && call.params.size() > 2)
        mpUnused = requireOperand(call, 2, texts::unreadableText);
    mpValue.fold<Value>();
    mpQuantity.fold<uint>();
    if (unit.move)
        offerShortCuts(this, depthOf(mpValue, mpQuantity), writing::replaces);
}

template <class Value>
void calculation<Value>::execute(codecontext& context, genericValue& result) const
{
    uint quantity = 0;
    if (!mpQuantity.read(context, quantity))
        execError(this, noQuantity);
    if (!mpUnit->move)
        execError(this, unsupported);
    Value value;
    if (!mpValue.read(context, value))
        execError(this, texts::noValue);
    mpUnit->move(value, quantity, mMode);
    replaceResult(result, value);
}

template <class Value>
std::uint64_t calculation<Value>::smallValue(codecontext& context) const
{
    uint quantity = 0;
    Value value;
    if (!mpQuantity.shortCut().read(context, quantity) || !mpValue.shortCut().read(context, value))
        return cell::refused;
    try {
        mpUnit->move(value, quantity, mMode);
        return cell::make(value);
    } catch (bool) { // beyond the calendar
        return cell::refused;
    }
}

template class calculation<date>;
template class calculation<time>;

} // namespace qx::script
