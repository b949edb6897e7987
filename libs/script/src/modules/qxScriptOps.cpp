// Operators on typed values: one table of keywords, symbols, types and what another type means.
//
// Each pair of operator and type is a class of its own, a shell over a functor. The script states the type;
// nothing is inferred from the operands. `and` and `or` are in qxScriptLogic.cpp.
#include "modules/qxScriptOps.h"

#include "modules/qxScriptCalculation.h"
#include "modules/qxScriptFunctors.h"
#include "modules/qxScriptModules.h"
#include "modules/qxScriptRows.h"
#include "qxScriptTypes.h"

#include <array>

namespace qx::script
{

// --- Operands ---

binaryoperands::binaryoperands(const callText& call)
{
    if (call.params.empty())
        return;
    mpFirst = requireOperand(call, 0, unusable);
    // REQUIRED: a second operand that cannot be made is found missing when the statement runs.
    mpSecond = operandAt(call, 1);
}

void binaryoperands::evaluate(codecontext& context, genericValue& first, genericValue& second) const
{
    if (!mpFirst)
        execError(this, noFirst);
    if (!mpSecond)
        execError(this, noSecond);
    if (!mpFirst.evaluate(context, first))
        execError(this, firstWithoutValue);
    if (!mpSecond.evaluate(context, second))
        execError(this, secondWithoutValue);
}

unaryoperand::unaryoperand(const callText& call)
{
    if (call.params.empty())
        return;
    mpOperand = requireOperand(call, 0, unusable);
}

void unaryoperand::evaluate(codecontext& context, genericValue& operand) const
{
    if (!mpOperand)
        execError(this, missing);
    if (!mpOperand.evaluate(context, operand))
        execError(this, withoutValue);
}

namespace
{

// --- Types ---

using intrface::objectRef;
using signedNumbers = join<typeList<short, int, long32>, floatingTypes>;
using subtractable = join<numberTypes, typeList<date>>;
using summable = join<numberTypes, typeList<string, date>>;
using ordered = join<numberTypes, typeList<string>, calendarTypes>;
using comparable = join<fieldTypes, typeList<objectRef>>;

// --- Operations: the class for a type ---

// A date moves by so many of the unit that the second type tells.
template <calculationMode Mode>
struct dateMove
{
    static statement* createFrom(const callText& call) { return dateCalculation::createFrom(call, Mode); }
};

template <class T>
using addition = std::conditional_t<std::is_same_v<T, date>, dateMove<calculationMode::add>,
                                    binaryoperation<addfunc<T, T, T>>>;
template <class T>
using subtraction = std::conditional_t<std::is_same_v<T, date>, dateMove<calculationMode::subtract>,
                                       binaryoperation<subtractfunc<T, T, T>>>;
template <class T>
using multiplication = binaryoperation<multiplyfunc<T, T, T>>;
template <class T>
using division = binaryoperation<dividefunc<T, T, T>>;
template <class T>
using greater = binaryoperation<maxoffunc<T>>;
template <class T>
using smaller = binaryoperation<minoffunc<T>>;
template <class T>
using bitsInBoth = binaryoperation<bitandfunc<T>>;
template <class T>
using bitsInEither = binaryoperation<bitorfunc<T>>;
template <class T>
using rounding = binaryoperation<roundfunc<T, T>>;
template <class T>
using cutting = binaryoperation<cutofffunc<T, T>>;
template <class T>
using isEqual =
    binaryoperation<std::conditional_t<std::is_same_v<T, objectRef>, eqfuncIfPointer, eqfunc<T, T>>>;
template <class T>
using isNotEqual =
    binaryoperation<std::conditional_t<std::is_same_v<T, objectRef>, neqfuncIfPointer, neqfunc<T, T>>>;
template <class T>
using isSmaller = binaryoperation<smfunc<T, T>>;
template <class T>
using isSmallerOrEqual = binaryoperation<smeqfunc<T, T>>;
template <class T>
using isBigger = binaryoperation<gtfunc<T, T>>;
template <class T>
using isBiggerOrEqual = binaryoperation<gteqfunc<T, T>>;
template <class T>
using negation = unaryoperation<minusfunc<T, T>>;
// Signed integers of every width are read and written as long.
template <class T>
using absOperand = std::conditional_t<heldInteger<T>, long32, T>;
template <class T>
using magnitude = unaryoperation<absfunc<absOperand<T>, absOperand<T>>>;

// --- Factories ---

constexpr const wchar_t* noType = L"createScriptOperation: missing datatype for %s";
constexpr const wchar_t* wrongType = L"createScriptOperation: invalid datatype %s for %s";

enum class otherType
{
    declined, // the next module is asked
    error
};

template <template <class> class Operation, class Types, otherType Other = otherType::declined>
statement* createScriptOperation(const callText& call)
{
    if (call.types.empty())
        refuse(noType, call.name);
    statement* const made = makeFor(parseScriptType(call.types[0]), Types(),
                                    [&call]<class T>() { return Operation<T>::createFrom(call); });
    if (!made && Other == otherType::error)
        refuse(wrongType, call.types[0], call.name);
    return made;
}

statement* createSubtract(const callText& call)
{
    return createScriptOperation<subtraction, subtractable>(call);
}

statement* createMinus(const callText& call)
{
    return createScriptOperation<negation, signedNumbers>(call);
}

statement* createMinusSign(const callText& call)
{
    switch (call.params.size()) {
    case 1:
        return createMinus(call);
    case 2:
        return createSubtract(call);
    default:
        return nullptr;
    }
}

// --- Table ---

struct operatorRow
{
    const wchar_t* keyword;
    const wchar_t* symbol; // null for none
    statement* (*create)(const callText& call);
    const wchar_t* parameters;
    const wchar_t* types;
    failureList failures;
    const wchar_t* summary;
    resultRule result = resultRule::keepsType;
};

constexpr const wchar_t* two = L"<type>(first, second)";
constexpr const wchar_t* one = L"<type>(value)";
constexpr const wchar_t* decimals = L"<type>(value, decimals)";

constexpr auto typedTwo = joined(std::array{noType}, binaryoperands::failures);
constexpr auto typedTwoOrDate = joined(typedTwo, dateCalculation::failures);
constexpr auto typedOne = joined(std::array{noType}, unaryoperand::failures);
constexpr auto strictTwo = joined(std::array{noType, wrongType}, binaryoperands::failures);
constexpr auto oneOrTwo = joined(typedOne, binaryoperands::failures, dateCalculation::failures);

// A text cannot reach `<` and `<=` with a type: the first `<` of a call opens its types.
constexpr operatorRow operators[] = {
    {L"add", L"+", createScriptOperation<addition, summable>, two, wordsOf<summable>, typedTwoOrDate,
     L"Gives the sum; texts are joined. `<date, unit>` gives the date so many `years`, `months`, `weeks` or "
     L"`days` later.",
     resultRule::keepsTypeButOfDate},
    {L"subtract", nullptr, createSubtract, two, wordsOf<subtractable>, typedTwoOrDate,
     L"Gives the difference. `<date, unit>` gives the date so many `years`, `months`, `weeks` or `days` "
     L"earlier.",
     resultRule::keepsTypeButOfDate},
    {L"multiply", L"*", createScriptOperation<multiplication, numberTypes>, two, wordsOf<numberTypes>,
     typedTwo, L"Gives the product."},
    {L"divide", L"/", createScriptOperation<division, numberTypes>, two, wordsOf<numberTypes>, typedTwo,
     L"Gives the quotient; one of integers is cut to an integer."},
    {L"maxof", nullptr, createScriptOperation<greater, numberTypes>, two, wordsOf<numberTypes>, typedTwo,
     L"Gives the greater number."},
    {L"minof", nullptr, createScriptOperation<smaller, numberTypes>, two, wordsOf<numberTypes>, typedTwo,
     L"Gives the smaller number."},
    {L"bitand", nullptr, createScriptOperation<bitsInBoth, integerTypes, otherType::error>, two,
     wordsOf<integerTypes>, strictTwo, L"Gives the bits that are set in both."},
    {L"bitor", nullptr, createScriptOperation<bitsInEither, integerTypes, otherType::error>, two,
     wordsOf<integerTypes>, strictTwo, L"Gives the bits that are set in either."},
    {L"round", nullptr, createScriptOperation<rounding, floatingTypes, otherType::error>, decimals,
     wordsOf<floatingTypes>, strictTwo, L"Gives the number rounded to so many decimals."},
    {L"cutoff", nullptr, createScriptOperation<cutting, floatingTypes, otherType::error>, decimals,
     wordsOf<floatingTypes>, strictTwo, L"Gives the number cut off behind so many decimals."},
    {L"isequal", L"==", createScriptOperation<isEqual, comparable>, two, wordsOf<comparable>, typedTwo,
     L"Tells whether both are equal."},
    {L"isnotequal", L"!=", createScriptOperation<isNotEqual, comparable>, two, wordsOf<comparable>, typedTwo,
     L"Tells whether both differ."},
    {L"issmaller", L"<", createScriptOperation<isSmaller, ordered>, two, wordsOf<ordered>, typedTwo,
     L"Tells whether the first is smaller."},
    {L"issmallerorequal", L"<=", createScriptOperation<isSmallerOrEqual, ordered>, two, wordsOf<ordered>,
     typedTwo, L"Tells whether the first is smaller or equal."},
    {L"isbigger", L">", createScriptOperation<isBigger, ordered>, two, wordsOf<ordered>, typedTwo,
     L"Tells whether the first is greater."},
    {L"isbiggerorequal", L">=", createScriptOperation<isBiggerOrEqual, ordered>, two, wordsOf<ordered>,
     typedTwo, L"Tells whether the first is greater or equal."},
    {L"minus", nullptr, createMinus, one, wordsOf<signedNumbers>, typedOne,
     L"Gives the number with the other sign."},
    {L"-", nullptr, createMinusSign, L"<type>(first, [second])", wordsOf<subtractable>, oneOrTwo,
     L"Stands for subtract with two parameters, and for minus with one.", resultRule::keepsTypeButOfDate},
    {L"abs", nullptr, createScriptOperation<magnitude, signedNumbers>, one, wordsOf<signedNumbers>, typedOne,
     L"Gives the number without its sign."},
    {L"not", L"!", unaryoperation<notfunc>::createFrom, L"(value)", nullptr, unaryoperand::failures,
     L"Gives the opposite of a truth value."},
};

constexpr std::size_t rowCount()
{
    std::size_t count = 0;
    for (const operatorRow& row : operators)
        count += row.symbol ? 2u : 1u;
    return count;
}

// A row for each keyword and for each symbol.
constexpr std::array<builtin, rowCount()> allRows()
{
    std::array<builtin, rowCount()> rows{};
    std::size_t at = 0;
    for (const operatorRow& row : operators) {
        for (const wchar_t* name : {row.keyword, row.symbol})
            if (name)
                rows[at++] = {name,       row.create,  row.parameters, row.types,
                              row.result, row.summary, row.failures};
    }
    return rows;
}

constexpr std::array<builtin, rowCount()> rows = allRows();

} // namespace

constinit const builtinTable operatorRows = rows;

} // namespace qx::script
