// Dates and times moved by so many of a unit: `add<date, days>(when, "1")`.
#pragma once

#include "statements/qxScriptBase.h"

#include "qxHeldTypes.h"

#include <array>

namespace qx::script
{

enum class calculationMode
{
    add = 1,
    subtract = 2
};

template <class Value>
struct unitOf;

template <class Value>
struct calculationTexts;

template <>
struct calculationTexts<date>
{
    static constexpr const wchar_t* tooFewParameters =
        L"dateCalculation::createFrom: number of parameters < 2";
    static constexpr const wchar_t* noUnit = L"dateCalculation::createFrom: missing second datatype";
    static constexpr const wchar_t* unreadableText = L"dateCalculation::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noValue = L"unable to retrieve date";
};

template <>
struct calculationTexts<time>
{
    static constexpr const wchar_t* tooFewParameters =
        L"timeCalculation::createFrom: number of parameters < 2";
    static constexpr const wchar_t* noUnit = L"timeCalculation::createFrom: missing second datatype";
    static constexpr const wchar_t* unreadableText = L"timeCalculation::createFrom: error parsing \"%s\"";
    static constexpr const wchar_t* noValue = L"unable to retrieve time";
};

// Made for date and time, see qxScriptCalculation.cpp.
template <class Value>
class calculation final : public scriptbasestatement
{
public:
    using texts = calculationTexts<Value>;
    static constexpr const wchar_t* noQuantity = L"unable to retrieve quantity";
    static constexpr const wchar_t* unsupported = L"unsupported calctype";
    static constexpr std::array failures = {
        texts::tooFewParameters, texts::noUnit, texts::unreadableText, noQuantity, unsupported,
        texts::noValue};

    // The types are that of the value and the unit, the parameters the value and the quantity. The caller
    // owns the statement. A text that does not fit is reported, and the bool value false thrown.
    static statement* createFrom(const callText& call, calculationMode mode);

    statement* clone() const override { return new calculation(*this); }
    void execute(codecontext& context, genericValue& result) const override;
    std::uint64_t smallValue(codecontext& context) const;
    bool resolve(compiler& names) const { return mpValue.resolve(names) && mpQuantity.resolve(names); }

private:
    calculation(const callText& call, calculationMode mode, const unitOf<Value>& unit);

    calculationMode mMode;
    const unitOf<Value>* mpUnit; // never null, in static memory
    operand mpValue;
    operand mpQuantity;
    operand mpUnused;
};

using dateCalculation = calculation<date>;
// No keyword leads to it.
using timeCalculation = calculation<time>;

} // namespace qx::script
