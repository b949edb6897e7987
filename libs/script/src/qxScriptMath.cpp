// Trigonometry, in degrees or radians, and functions on double.
#include "qxScriptBase.h"
#include "qxScriptModules.h"

#include "qxHeldTypes.h"
#include "qxMath.h"

#include <cmath>

namespace qx::script
{

namespace
{

using doubleFunction = double (*)(double);

// What the trigonometric functions have in common: a first type that tells the unit, and one operand.
// REQUIRED: only a missing type is told apart; the other texts name the functions of an angle for both.
bool isInDegrees(const callText& call, const wchar_t* missingType)
{
    if (call.types.empty())
        refuse(missingType);
    if (call.params.empty())
        refuse(L"anglefunc::createFrom: number of parameters < 1");
    return call.types[0].lower() == L"deg"; // any other word stands for radians
}

ownedProvider operandOf(const callText& call)
{
    return requireProvider(call, 0, L"anglefunc::createFrom: error parsing \"%s\"");
}

// sin, cos, tan: from an angle to a number.
class anglefunc final : public scriptbasestatement
{
public:
    template <doubleFunction Function>
    static statement* create(const callText& call)
    {
        const bool inDegrees = isInDegrees(call, L"anglefunc::createFrom: missing datatype");
        return new anglefunc(operandOf(call), inDegrees ? angle::fromDegree : angle::fromRadians, Function);
    }

    statement* clone() const override { return new anglefunc(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        double operand = 0;
        if (!mpOperand.read(context, operand))
            execError(this, L"Angle not given");
        replaceResult(result, mFunction(mMakeAngle(operand).radians()));
    }

private:
    using angleMaker = angle (*)(double);

    anglefunc(ownedProvider operand, angleMaker makeAngle, doubleFunction function)
        : mpOperand(std::move(operand)), mMakeAngle(makeAngle), mFunction(function)
    {}

    ownedProvider mpOperand;
    angleMaker mMakeAngle;
    doubleFunction mFunction;
};

// asin, acos, atan: from a number to an angle.
class angleinvfunc final : public scriptbasestatement
{
public:
    template <doubleFunction Function>
    static statement* create(const callText& call)
    {
        const bool inDegrees = isInDegrees(call, L"angleinvfunc::createFrom: missing datatype");
        return new angleinvfunc(operandOf(call), inDegrees ? &angle::degree : &angle::radians, Function);
    }

    statement* clone() const override { return new angleinvfunc(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        double operand = 0;
        if (!mpOperand.read(context, operand))
            execError(this, L"Value not given");
        replaceResult(result, (angle::fromRadians(mFunction(operand)).*mReadAngle)());
    }

private:
    using angleReader = double (angle::*)() const;

    angleinvfunc(ownedProvider operand, angleReader readAngle, doubleFunction function)
        : mpOperand(std::move(operand)), mReadAngle(readAngle), mFunction(function)
    {}

    ownedProvider mpOperand;
    angleReader mReadAngle;
    doubleFunction mFunction;
};

class dbleq final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"dbleq";
    static constexpr declaredParameter declared[] = {{L"val1", true}, {L"val2", true}, {L"tol", true}};

    statement* clone() const override { return new dbleq(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto first = require<double>(L"val1", context, L"Error retrieving value1");
        const auto second = require<double>(L"val2", context, L"Error retrieving value2");
        const auto tolerance = require<double>(L"tol", context, L"Error retrieving tolerance");
        replaceResult(result, dblEq(first, second, tolerance));
    }
};

class mod final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"mod";
    static constexpr declaredParameter declared[] = {{L"val1", true}, {L"val2", true}};

    statement* clone() const override { return new mod(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        const auto dividend = require<double>(L"val1", context, L"Error retrieving value1");
        const auto divisor = require<double>(L"val2", context, L"Error retrieving value2");
        replaceResult(result, std::fmod(dividend, divisor));
    }
};

class sqrt final : public scriptbasesinglefunction
{
public:
    static constexpr const wchar_t* messageName = L"sqrt";
    static constexpr declaredParameter declared[] = {{L"val", true}};

    statement* clone() const override { return new sqrt(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        replaceResult(result, std::sqrt(require<double>(L"val", context, L"Error retrieving value")));
    }
};

// --- Table ---

constexpr const wchar_t* operandFailures = L"anglefunc::createFrom: number of parameters < 1\n"
                                           L"anglefunc::createFrom: error parsing \"%s\"";
constexpr failureLists ofAngle{operandFailures, L"anglefunc::createFrom: missing datatype\n"
                                                L"Angle not given"};
constexpr failureLists toAngle{operandFailures, L"angleinvfunc::createFrom: missing datatype\n"
                                                L"Value not given"};

constexpr builtin angleRow(const wchar_t* name, statement* (*create)(const callText&), const wchar_t* summary)
{
    return {name, create, L"<unit>(angle)", L"any", summary, ofAngle};
}

constexpr builtin inverseRow(const wchar_t* name, statement* (*create)(const callText&),
                             const wchar_t* summary)
{
    return {name, create, L"<unit>(value)", L"any", summary, toAngle};
}

const builtin rows[] = {
    angleRow(L"sin", anglefunc::create<std::sin>,
             L"Gives the sine of an angle in degrees (`deg`) or radians (any other word)."),
    angleRow(L"cos", anglefunc::create<std::cos>,
             L"Gives the cosine of an angle in degrees (`deg`) or radians (any other word)."),
    angleRow(L"tan", anglefunc::create<std::tan>,
             L"Gives the tangent of an angle in degrees (`deg`) or radians (any other word)."),
    inverseRow(L"asin", angleinvfunc::create<std::asin>,
               L"Gives the angle of this sine, in degrees (`deg`) or radians (any other word)."),
    inverseRow(L"acos", angleinvfunc::create<std::acos>,
               L"Gives the angle of this cosine, in degrees (`deg`) or radians (any other word)."),
    inverseRow(L"atan", angleinvfunc::create<std::atan>,
               L"Gives the angle of this tangent, in degrees (`deg`) or radians (any other word)."),
    {.name = L"dbleq",
     .create = createNamed<dbleq>,
     .parameters = L"(val1, val2, tol)",
     .summary = L"Tells whether two numbers differ by no more than a tolerance.",
     .failures = {L"Error retrieving value1\n"
                  L"Error retrieving value2\n"
                  L"Error retrieving tolerance"}},
    {.name = L"mod",
     .create = createNamed<mod>,
     .parameters = L"(val1, val2)",
     .summary = L"Gives the remainder of a division, with the sign of the first number; NaN for a zero "
                L"divisor.",
     .failures = {L"Error retrieving value1\n"
                  L"Error retrieving value2"}},
    {.name = L"sqrt",
     .create = createNamed<sqrt>,
     .parameters = L"(val)",
     .summary = L"Gives the square root; NaN for a negative number.",
     .failures = {L"Error retrieving value"}},
};

} // namespace

constinit const builtinModule mathModule{L"math", rows};

} // namespace qx::script
