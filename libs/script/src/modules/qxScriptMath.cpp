// Trigonometry, in degrees or radians, and functions on double.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptNamed.h"

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
        replaceResult(result, of(operand));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        double operand = 0;
        return mpOperand.shortCut().read(context, operand) ? cell::make(of(operand)) : cell::refused;
    }

private:
    using angleMaker = angle (*)(double);

    anglefunc(ownedProvider operand, angleMaker makeAngle, doubleFunction function)
        : mpOperand(std::move(operand)), mMakeAngle(makeAngle), mFunction(function)
    {
        mpOperand.fold<double>();
        offerShortCuts(this, depthOf(mpOperand), writing::replaces);
    }

    double of(double operand) const { return mFunction(mMakeAngle(operand).radians()); }

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
        replaceResult(result, of(operand));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        double operand = 0;
        return mpOperand.shortCut().read(context, operand) ? cell::make(of(operand)) : cell::refused;
    }

private:
    using angleReader = double (angle::*)() const;

    angleinvfunc(ownedProvider operand, angleReader readAngle, doubleFunction function)
        : mpOperand(std::move(operand)), mReadAngle(readAngle), mFunction(function)
    {
        mpOperand.fold<double>();
        offerShortCuts(this, depthOf(mpOperand), writing::replaces);
    }

    double of(double operand) const { return (angle::fromRadians(mFunction(operand)).*mReadAngle)(); }

    ownedProvider mpOperand;
    angleReader mReadAngle;
    doubleFunction mFunction;
};

struct nearness
{
    static constexpr const wchar_t* messageName = L"dbleq";
    static constexpr declaredParameter declared[] = {{L"val1", true}, {L"val2", true}, {L"tol", true}};
    static constexpr const wchar_t* unreadable[] = {L"Error retrieving value1", L"Error retrieving value2",
                                                    L"Error retrieving tolerance"};
    using operands = operandTypes<double, double, double>;

    static bool of(double first, double second, double tolerance) { return dblEq(first, second, tolerance); }
};

struct remainder
{
    static constexpr const wchar_t* messageName = L"mod";
    static constexpr declaredParameter declared[] = {{L"val1", true}, {L"val2", true}};
    static constexpr const wchar_t* unreadable[] = {L"Error retrieving value1", L"Error retrieving value2"};
    using operands = operandTypes<double, double>;

    // Two counts are divided as integers, in a tenth of the time.
    static double of(double dividend, double divisor)
    {
        uint64 a = 0;
        uint64 b = 0;
        if (isCount(dividend, a) && isCount(divisor, b) && b != 0)
            return static_cast<double>(a % b);
        return std::fmod(dividend, divisor);
    }

private:
    static bool isCount(double value, uint64& count)
    {
        constexpr double past = 9007199254740992.0; // from here on not every integer is a double
        if (!(value >= 0 && value < past) || std::signbit(value))
            return false;
        count = static_cast<uint64>(static_cast<long long>(value));
        return static_cast<double>(static_cast<long long>(count)) == value;
    }
};

struct squareRoot
{
    static constexpr const wchar_t* messageName = L"sqrt";
    static constexpr declaredParameter declared[] = {{L"val", true}};
    static constexpr const wchar_t* unreadable[] = {L"Error retrieving value"};
    using operands = operandTypes<double>;

    static double of(double value) { return std::sqrt(value); }
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
    return {name, create, L"<unit>(angle)", L"any", resultRule::replaces, summary, ofAngle};
}

constexpr builtin inverseRow(const wchar_t* name, statement* (*create)(const callText&),
                             const wchar_t* summary)
{
    return {name, create, L"<unit>(value)", L"any", resultRule::replaces, summary, toAngle};
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
     .create = createNamed<namedoperation<nearness>>,
     .parameters = L"(val1, val2, tol)",
     .summary = L"Tells whether two numbers differ by no more than a tolerance.",
     .failures = {L"Error retrieving value1\n"
                  L"Error retrieving value2\n"
                  L"Error retrieving tolerance"}},
    {.name = L"mod",
     .create = createNamed<namedoperation<remainder>>,
     .parameters = L"(val1, val2)",
     .summary = L"Gives the remainder of a division, with the sign of the first number; NaN for a zero "
                L"divisor.",
     .failures = {L"Error retrieving value1\n"
                  L"Error retrieving value2"}},
    {.name = L"sqrt",
     .create = createNamed<namedoperation<squareRoot>>,
     .parameters = L"(val)",
     .summary = L"Gives the square root; NaN for a negative number.",
     .failures = {L"Error retrieving value"}},
};

} // namespace

constinit const builtinModule mathModule{L"math", rows};

} // namespace qx::script
