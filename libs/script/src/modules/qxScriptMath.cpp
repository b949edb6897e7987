// Trigonometry, in degrees or radians, and functions on double.
#include "modules/qxScriptModules.h"
#include "modules/qxScriptNamed.h"
#include "modules/qxScriptRows.h"
#include "modules/refusals.h"

#include "qxHeldTypes.h"
#include "qxMath.h"

#include <cmath>

namespace qx::script
{

namespace
{

using doubleFunction = double (*)(double);

// REQUIRED: only a missing type is told apart; these texts name the functions of an angle for both.
constexpr refusals texts{1, L"anglefunc::createFrom: number of parameters < 1",
                         L"anglefunc::createFrom: error parsing \"%s\""};

// sin, cos, tan: from an angle to a number.
struct fromAngle
{
    static constexpr const wchar_t* noUnit = L"anglefunc::createFrom: missing datatype";
    static constexpr const wchar_t* unreadable = L"Angle not given";
    static constexpr const wchar_t* parameters = L"<unit>(angle)";

    static double of(double operand, bool inDegrees, doubleFunction function)
    {
        return function((inDegrees ? angle::fromDegree(operand) : angle::fromRadians(operand)).radians());
    }
};

// asin, acos, atan: from a number to an angle.
struct toAngle
{
    static constexpr const wchar_t* noUnit = L"angleinvfunc::createFrom: missing datatype";
    static constexpr const wchar_t* unreadable = L"Value not given";
    static constexpr const wchar_t* parameters = L"<unit>(value)";

    static double of(double operand, bool inDegrees, doubleFunction function)
    {
        const angle found = angle::fromRadians(function(operand));
        return inDegrees ? found.degree() : found.radians();
    }
};

// A trigonometric function: the first type tells the unit of the angle, and there is one operand.
template <class Way>
class trigonometric final : public scriptbasestatement
{
public:
    static constexpr const wchar_t* failures[] = {texts.tooFew, texts.unusable, Way::noUnit, Way::unreadable};

    template <doubleFunction Function>
    static constexpr builtin row(const wchar_t* name, const wchar_t* summary)
    {
        return {.name = name,
                .create = create<Function>,
                .parameters = Way::parameters,
                .types = L"any",
                .summary = summary,
                .failures = failures};
    }

    statement* clone() const override { return new trigonometric(*this); }
    void execute(codecontext& context, genericValue& result) const override
    {
        double operand = 0;
        if (!mpOperand.read(context, operand))
            execError(this, Way::unreadable);
        replaceResult(result, Way::of(operand, mInDegrees, mFunction));
    }
    std::uint64_t smallValue(codecontext& context) const
    {
        double operand = 0;
        return mpOperand.shortCut().read(context, operand)
                   ? cell::make(Way::of(operand, mInDegrees, mFunction))
                   : cell::refused;
    }
    bool resolve(compiler& names) const { return mpOperand.resolve(names); }

private:
    template <doubleFunction Function>
    static statement* create(const callText& call)
    {
        if (call.types.empty())
            refuse(Way::noUnit);
        operand angle = requireOperand(call, 0, texts);
        const bool inDegrees = call.types[0].lower() == L"deg"; // any other word stands for radians
        return new trigonometric(std::move(angle), inDegrees, Function);
    }

    trigonometric(operand value, bool inDegrees, doubleFunction function)
        : mpOperand(std::move(value)), mFunction(function), mInDegrees(inDegrees)
    {
        mpOperand.fold<double>();
        offerShortCuts(this, depthOf(mpOperand), writing::replaces);
    }

    operand mpOperand;
    doubleFunction mFunction;
    bool mInDegrees;
};

using anglefunc = trigonometric<fromAngle>;
using angleinvfunc = trigonometric<toAngle>;

constexpr declaredParameter firstParam{L"val1", true, L"Error retrieving value1"};
constexpr declaredParameter secondParam{L"val2", true, L"Error retrieving value2"};

struct dbleq
{
    static constexpr const wchar_t* messageName = L"dbleq";
    static constexpr declaredParameter declared[] = {
        firstParam, secondParam, {L"tol", true, L"Error retrieving tolerance"}};
    using operands = operandTypes<double, double, double>;

    static bool of(double first, double second, double tolerance) { return dblEq(first, second, tolerance); }
};

struct mod
{
    static constexpr const wchar_t* messageName = L"mod";
    static constexpr declaredParameter declared[] = {firstParam, secondParam};
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

struct sqrt
{
    static constexpr const wchar_t* messageName = L"sqrt";
    static constexpr declaredParameter declared[] = {{L"val", true, L"Error retrieving value"}};
    using operands = operandTypes<double>;

    static double of(double value) { return std::sqrt(value); }
};

// --- Table ---

constexpr builtin rows[] = {
    anglefunc::row<std::sin>(L"sin",
                             L"Gives the sine of an angle in degrees (`deg`) or radians (any other word)."),
    anglefunc::row<std::cos>(L"cos",
                             L"Gives the cosine of an angle in degrees (`deg`) or radians (any other word)."),
    anglefunc::row<std::tan>(
        L"tan", L"Gives the tangent of an angle in degrees (`deg`) or radians (any other word)."),
    angleinvfunc::row<std::asin>(
        L"asin", L"Gives the angle of this sine, in degrees (`deg`) or radians (any other word)."),
    angleinvfunc::row<std::acos>(
        L"acos", L"Gives the angle of this cosine, in degrees (`deg`) or radians (any other word)."),
    angleinvfunc::row<std::atan>(
        L"atan", L"Gives the angle of this tangent, in degrees (`deg`) or radians (any other word)."),
    namedRow<namedoperation<dbleq>>(L"Tells whether two numbers differ by no more than a tolerance."),
    namedRow<namedoperation<mod>>(
        L"Gives the remainder of a division, with the sign of the first number; NaN for a zero divisor."),
    namedRow<namedoperation<sqrt>>(L"Gives the square root; NaN for a negative number."),
};

} // namespace

constinit const builtinTable mathRows = rows;

} // namespace qx::script
