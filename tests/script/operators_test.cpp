// The typed operators: which keyword takes which type, and what each gives at the edges of its types.
#include "assertRecorder.h"
#include "host.h"
#include "hostObject.h"
#include "utils/fakeSystem.h"
#include "valueText.h"

#include <qxHeldTypes.h>
#include <qxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <span>

namespace
{

// Runs one parsed text again and again, with what its variables `a` and `b` hold.
class runner
{
public:
    explicit runner(const qx::string& text) : mStatement(parsed(text)) {}

    qx::genericValue operator()(const qx::genericValue& a, const qx::genericValue& b) const
    {
        scriptcontext context;
        context.createVariable(nameOf(L"a"), a);
        context.createVariable(nameOf(L"b"), b);
        qx::genericValue result;
        mStatement->exec(context, result);
        return result;
    }

private:
    ownedStatement mStatement;
};

qx::string call(const wchar_t* keyword, const wchar_t* type, const wchar_t* operands = L"(a, b)")
{
    return qx::string::sformat(L"%s<%s>%s", keyword, type, operands);
}

// The plain type that a test computes with.
template <class T>
struct plainType
{
    using type = T;
};
template <>
struct plainType<qx::long32>
{
    using type = std::conditional_t<sizeof(long) == 4, long, int>;
};
template <>
struct plainType<qx::ulong32>
{
    using type = std::conditional_t<sizeof(long) == 4, unsigned long, unsigned>;
};
template <class T>
using plain = typename plainType<T>::type;

using exact = __int128;

// The number of type P that is equal modulo two to the power of its width.
template <class P>
P wrapped(exact number)
{
    const exact least = std::numeric_limits<P>::min();
    const exact range = exact(std::numeric_limits<P>::max()) - least + 1;
    const exact above = (number - least) % range;
    return static_cast<P>(least + (above < 0 ? above + range : above));
}

// A value and its place among the others of its type; values of one place are equal, and one without a place
// (a NaN) is neither equal to, smaller nor bigger than any.
template <class T>
struct ranked
{
    T value;
    int rank;
};
constexpr int noRank = -1;

template <class T>
std::vector<ranked<T>> inOrder(const std::vector<T>& ascending)
{
    std::vector<ranked<T>> all;
    all.reserve(ascending.size());
    for (const T& value : ascending)
        all.push_back({value, static_cast<int>(all.size())});
    return all;
}

template <class T>
std::vector<ranked<T>> edges()
{
    using limits = std::numeric_limits<plain<T>>;
    using P = plain<T>;
    if constexpr (std::is_integral_v<P> && std::is_signed_v<P>)
        return inOrder<T>({T(limits::min()), T(static_cast<P>(limits::min() + 1)), T(P(-7)), T(P(-1)),
                           T(P(0)), T(P(1)), T(P(2)), T(static_cast<P>(limits::max() - 1)),
                           T(limits::max())});
    else if constexpr (std::is_integral_v<P>)
        return inOrder<T>({T(P(0)), T(P(1)), T(P(2)), T(P(7)), T(static_cast<P>(limits::max() / 2 + 1)),
                           T(static_cast<P>(limits::max() - 1)), T(limits::max())});
    else {
        const P one = 1;
        const P infinity = limits::infinity();
        const P tiny = limits::denorm_min();
        auto all = inOrder<P>({-infinity, limits::lowest(), -one, -tiny, 0, tiny, one / 3,
                               std::nextafter(one / 3, one), one, limits::max(), infinity});
        all.push_back({-P(0), 4});
        all.push_back({limits::quiet_NaN(), noRank});
        return all;
    }
}

template <>
std::vector<ranked<bool>> edges()
{
    return inOrder<bool>({false, true});
}

template <>
std::vector<ranked<qx::string>> edges()
{
    return inOrder<qx::string>({L"",
                                L"A",
                                L"AA",
                                L"B",
                                L"a",
                                std::wstring(5000, L'a'),
                                std::wstring(5000, L'a') + L'b',
                                L"b",
                                {0xD83D, 0xDE00},
                                {0xFFFF}});
}

template <>
std::vector<ranked<qx::date>> edges()
{
    return inOrder<qx::date>({{1, 1, 1}, {1899, 12, 31}, {1900, 1, 1}, {2024, 2, 29}, {9999, 12, 31}});
}

template <>
std::vector<ranked<qx::time>> edges()
{
    return inOrder<qx::time>({{0, 0, 0}, {0, 0, 0, 1}, {12, 0, 0}, {23, 59, 59, 999}});
}

template <>
std::vector<ranked<qx::timestamp>> edges()
{
    return inOrder<qx::timestamp>({qx::timestamp(qx::date(1, 1, 1)),
                                   {qx::date(2024, 2, 29), qx::time(23, 59, 59, 999)},
                                   qx::timestamp(qx::date(2024, 3, 1)),
                                   {qx::date(9999, 12, 31), qx::time(23, 59, 59, 999)}});
}

// Every pair of edges through `keyword<type>` against `expected`.
template <class T, class Expected>
void checkPairs(const wchar_t* keyword, const wchar_t* type, Expected expected)
{
    SCOPED_TRACE(call(keyword, type).utf8());
    const runner run(call(keyword, type));
    for (const auto& a : edges<T>()) {
        for (const auto& b : edges<T>()) {
            const qx::genericValue first(a.value);
            const qx::genericValue second(b.value);
            ASSERT_EQ(valueText(run(first, second)), valueText(qx::genericValue(expected(a, b))))
                << valueText(first) << ", " << valueText(second);
        }
    }
}

template <class T, class Compute>
void checkComputed(const wchar_t* keyword, const wchar_t* type, Compute compute)
{
    checkPairs<T>(keyword, type, [compute](const ranked<T>& a, const ranked<T>& b) {
        return T(compute(static_cast<plain<T>>(a.value), static_cast<plain<T>>(b.value)));
    });
}

template <class T>
void checkComparisons(const wchar_t* type)
{
    const struct
    {
        std::initializer_list<const wchar_t*> keywords;
        bool (*compare)(int a, int b);
        bool unordered; // the answer for a NaN
    } rows[] = {
        {{L"isequal", L"=="}, [](int a, int b) { return a == b; }, false},
        {{L"isnotequal", L"!="}, [](int a, int b) { return a != b; }, true},
        {{L"issmaller"}, [](int a, int b) { return a < b; }, false},
        {{L"issmallerorequal"}, [](int a, int b) { return a <= b; }, false},
        {{L"isbigger", L">"}, [](int a, int b) { return a > b; }, false},
        {{L"isbiggerorequal", L">="}, [](int a, int b) { return a >= b; }, false},
    };
    // Truth values have no order.
    for (const auto& row : std::span(rows).first(std::is_same_v<T, bool> ? 2 : std::size(rows))) {
        for (const wchar_t* keyword : row.keywords) {
            checkPairs<T>(keyword, type, [&row](const ranked<T>& a, const ranked<T>& b) {
                return a.rank == noRank || b.rank == noRank ? row.unordered : row.compare(a.rank, b.rank);
            });
        }
    }
}

template <class T, class Expected>
void checkEach(const wchar_t* keyword, const wchar_t* type, Expected expected)
{
    SCOPED_TRACE(call(keyword, type).utf8());
    const runner run(call(keyword, type, L"(a)"));
    for (const auto& a : edges<T>()) {
        const qx::genericValue operand(a.value);
        ASSERT_EQ(valueText(run(operand, {})),
                  valueText(qx::genericValue(expected(static_cast<plain<T>>(a.value)))))
            << valueText(operand);
    }
}

template <class T>
void checkIntegers(const wchar_t* type)
{
    using P = plain<T>;
    const struct
    {
        const wchar_t* keyword;
        exact (*compute)(exact a, exact b);
    } rows[] = {
        {L"add", [](exact a, exact b) { return a + b; }},
        {L"+", [](exact a, exact b) { return a + b; }},
        {L"subtract", [](exact a, exact b) { return a - b; }},
        {L"-", [](exact a, exact b) { return a - b; }},
        {L"multiply", [](exact a, exact b) { return a * b; }},
        {L"*", [](exact a, exact b) { return a * b; }},
        {L"maxof", [](exact a, exact b) { return a < b ? b : a; }},
        {L"minof", [](exact a, exact b) { return a < b ? a : b; }},
        {L"bitand", [](exact a, exact b) { return a & b; }},
        {L"bitor", [](exact a, exact b) { return a | b; }},
    };
    for (const auto& row : rows)
        checkComputed<T>(row.keyword, type, [&row](P a, P b) { return wrapped<P>(row.compute(a, b)); });

    for (const wchar_t* keyword : {L"divide", L"/"}) {
        const runner run(call(keyword, type));
        for (const auto& a : edges<T>()) {
            for (const auto& b : edges<T>()) {
                const exact first = static_cast<P>(a.value);
                const exact second = static_cast<P>(b.value);
                const bool overflows = sizeof(P) == 4 && std::is_signed_v<P> && second == -1 && a.rank == 0;
                if (second == 0 || overflows)
                    continue; // a fault, below
                ASSERT_EQ(valueText(run(qx::genericValue(a.value), qx::genericValue(b.value))),
                          valueText(qx::genericValue(T(wrapped<P>(first / second)))));
            }
        }
    }
    if constexpr (std::is_signed_v<P>) {
        const auto negated = [](P a) { return T(wrapped<P>(-exact(a))); };
        checkEach<T>(L"minus", type, negated);
        checkEach<T>(L"-", type, negated);
        checkEach<T>(L"abs", type, [](P a) {
            using wide = plain<qx::long32>;
            return qx::long32(wrapped<wide>(a < 0 ? -exact(a) : exact(a)));
        });
    }
}

template <class T>
void checkFloating(const wchar_t* type)
{
    const struct
    {
        const wchar_t* keyword;
        T (*compute)(T a, T b);
    } rows[] = {
        {L"add", [](T a, T b) { return a + b; }},
        {L"subtract", [](T a, T b) { return a - b; }},
        {L"multiply", [](T a, T b) { return a * b; }},
        {L"divide", [](T a, T b) { return a / b; }},
        {L"maxof", [](T a, T b) { return std::isgreater(a, b) ? a : b; }},
        {L"minof", [](T a, T b) { return std::isless(a, b) ? a : b; }},
    };
    for (const auto& row : rows)
        checkComputed<T>(row.keyword, type, row.compute);
    checkEach<T>(L"abs", type, [](T a) { return std::copysign(a, T(1)); });
    checkEach<T>(L"minus", type, [](T a) { return std::copysign(a, std::signbit(a) ? T(1) : T(-1)); });
    for (const auto& a : edges<T>()) {
        const qx::genericValue value(a.value);
        const qx::genericValue two(2);
        EXPECT_EQ(valueText(runner(call(L"round", type))(value, two)),
                  valueText(qx::genericValue(static_cast<T>(qx::roundImp(a.value, 2)))));
        EXPECT_EQ(valueText(runner(call(L"cutoff", type))(value, two)),
                  valueText(qx::genericValue(static_cast<T>(qx::cutOffImp(a.value, 2)))));
    }
}

constexpr const wchar_t* typeWords[] = {
    L"void",   L"bool",   L"short", L"int",  L"long",      L"ushort", L"uint",       L"ulong", L"float",
    L"double", L"string", L"date",  L"time", L"timestamp", L"binary", L"unknownptr", L"array", L"number"};

constexpr const wchar_t* integerWords = L" short int long ushort uint ulong ";
constexpr const wchar_t* floatWords = L" float double ";
constexpr const wchar_t* numberWords = L" short int long ushort uint ulong float double ";
constexpr const wchar_t* signedWords = L" short int long float double ";
constexpr const wchar_t* subtractableWords = L" short int long ushort uint ulong float double date ";
constexpr const wchar_t* summableWords = L" short int long ushort uint ulong float double string date ";
constexpr const wchar_t* orderedWords =
    L" short int long ushort uint ulong float double string date time timestamp ";
constexpr const wchar_t* comparableWords =
    L" bool short int long ushort uint ulong float double string date time timestamp unknownptr ";

enum class anotherType
{
    declined,
    error
};

constexpr const wchar_t* two = L"(\"1\", \"2\")";
constexpr const wchar_t* one = L"(\"1\")";

// What each keyword takes, written by hand.
const struct
{
    std::initializer_list<const wchar_t*> keywords;
    const wchar_t* operands;
    const wchar_t* types;
    anotherType other;
} taken[] = {
    {{L"add", L"+"}, two, summableWords, anotherType::declined},
    {{L"subtract", L"-"}, two, subtractableWords, anotherType::declined},
    {{L"multiply", L"*", L"divide", L"/", L"maxof", L"minof"}, two, numberWords, anotherType::declined},
    {{L"bitand", L"bitor"}, two, integerWords, anotherType::error},
    {{L"round", L"cutoff"}, two, floatWords, anotherType::error},
    {{L"isequal", L"==", L"isnotequal", L"!="}, two, comparableWords, anotherType::declined},
    {{L"issmaller", L"issmallerorequal"}, two, orderedWords, anotherType::declined},
    {{L"isbigger", L">", L"isbiggerorequal", L">="}, two, orderedWords, anotherType::declined},
    {{L"minus", L"-", L"abs"}, one, signedWords, anotherType::declined},
};

// What comes of parsing: `taken`, `declined`, or what was reported.
qx::string outcomeOf(const qx::string& text)
{
    const assertRecorder recorder;
    const texts chain = failureOf([&] { parsed(text); });
    const texts reports = assertRecorder::take();
    if (!reports.empty())
        return reports[0];
    return chain == texts{L"nothing thrown"} ? L"taken" : L"declined";
}

class faultingSystem final : public fakeSystem
{
public:
    [[noreturn]] void divisionFault() override { throw qx::unexpectedErrorException(L"fault of the host"); }
};

} // namespace

TEST(operators, take_the_types_they_should_and_no_other)
{
    for (const auto& row : taken) {
        for (const wchar_t* keyword : row.keywords) {
            for (const qx::string type : typeWords) {
                const bool allowed = qx::string(row.types).find(L" " + type + L" ") != qx::string::npos;
                // A date that moves wants a unit; others do not look at it.
                const wchar_t* const types = type == L"date" ? L"date, days" : type.c_str();
                const qx::string text = call(keyword, types, row.operands);
                const qx::string otherwise =
                    row.other == anotherType::declined
                        ? qx::string(L"declined")
                        : qx::string::sformat(L"createScriptOperation: invalid datatype %s for %s", type,
                                              keyword);
                EXPECT_EQ(outcomeOf(text), allowed ? L"taken" : otherwise) << text.utf8();
            }
            EXPECT_EQ(outcomeOf(keyword + qx::string(row.operands)),
                      qx::string(L"createScriptOperation: missing datatype for ") + keyword);
        }
    }
    for (const wchar_t* symbol : {L"<", L"<="})
        EXPECT_EQ(outcomeOf(symbol + qx::string(two)),
                  qx::string(L"createScriptOperation: missing datatype for ") + symbol);
    for (const wchar_t* untyped : {L"and", L"&&", L"or", L"||", L"not", L"!"})
        EXPECT_EQ(outcomeOf(untyped + qx::string(two)), L"taken");
    for (const wchar_t* operands : {L"()", L"(a, b, c)"})
        EXPECT_EQ(outcomeOf(call(L"-", L"int", operands)), L"declined");
}

TEST(operators, compute_at_the_edges_of_their_types)
{
    checkIntegers<short>(L"short");
    checkIntegers<int>(L"int");
    checkIntegers<qx::long32>(L"long");
    checkIntegers<qx::ushort>(L"ushort");
    checkIntegers<qx::uint>(L"uint");
    checkIntegers<qx::ulong32>(L"ulong");
    checkFloating<float>(L"float");
    checkFloating<double>(L"double");
}

TEST(operators, compare_at_the_edges_of_their_types)
{
    checkComparisons<bool>(L"bool");
    checkComparisons<short>(L"short");
    checkComparisons<int>(L"int");
    checkComparisons<qx::long32>(L"long");
    checkComparisons<qx::ushort>(L"ushort");
    checkComparisons<qx::uint>(L"uint");
    checkComparisons<qx::ulong32>(L"ulong");
    checkComparisons<float>(L"float");
    checkComparisons<double>(L"double");
    checkComparisons<qx::string>(L"string");
    checkComparisons<qx::date>(L"date");
    checkComparisons<qx::time>(L"time");
    checkComparisons<qx::timestamp>(L"timestamp");
}

TEST(operators, objects_compare_by_being_set)
{
    hostObject<unknown> first;
    hostObject<unknown> second;
    {
        const objectRef values[] = {objectRef(), first.share(), second.share()};
        for (const objectRef& a : values) {
            for (const objectRef& b : values) {
                const auto answer = [&](const wchar_t* keyword) {
                    return valueText(
                        runner(call(keyword, L"unknownptr"))(qx::genericValue(a), qx::genericValue(b)));
                };
                const bool alike = a.isValid() == b.isValid();
                EXPECT_EQ(answer(L"isequal"), alike ? "bool true" : "bool false");
                EXPECT_EQ(answer(L"isnotequal"), alike ? "bool false" : "bool true");
            }
            EXPECT_EQ(valueText(runner(L"and(a, a)")(qx::genericValue(a), {})),
                      a.isValid() ? "bool true" : "bool false");
        }
    }
    EXPECT_EQ(first.references + second.references, 2u);
}

TEST(operators, division_without_result_is_the_system_s_fault)
{
    const faultingSystem system;
    const wchar_t* const rows[] = {
        L"divide<short>(\"1\", \"0\")",          L"divide<int>(\"0\", \"0\")",
        L"divide<uint>(\"1\", \"0\")",           L"/<ulong>(\"1\", \"0\")",
        L"divide<int>(\"-2147483648\", \"-1\")", L"divide<long>(\"-2147483648\", \"-1\")",
    };
    for (const wchar_t* text : rows) {
        const qx::string failure = L"Error executing script \"" + qx::string(text) + L"\" ";
        EXPECT_EQ(failureOf([&] { evaluated(text); }), (texts{failure, L"fault of the host"}));
    }
    // An operand that does not read comes first.
    EXPECT_EQ(failureOf([] { evaluated(L"divide<int>(\"x\", \"0\")"); }),
              texts{L"Error executing script \"divide<int>(\"x\", \"0\")\" ()"});
}
