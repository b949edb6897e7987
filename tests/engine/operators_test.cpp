// The typed operators: which keyword takes which type, and what each gives at the edges of its types.
#include "host.h"
#include "utils/fakeSystem.h"
#include "valueText.h"

#include <qxHeldTypes.h>
#include <qxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <span>

namespace
{

// Runs the clone of a parsed text again and again, with what its variables `a` and `b` hold.
class runner
{
public:
    explicit runner(const qx::string& text) : mStatement(parsed(text)->clone()) {}

    // The value, or the innermost reason of the failure.
    std::string operator()(const qx::genericValue& a, const qx::genericValue& b,
                           qx::genericValue result = {}) const
    {
        scriptcontext context;
        context.createVariable(nameOf(L"a"), a);
        context.createVariable(nameOf(L"b"), b);
        const texts chain = failureOf([&] { mStatement->exec(context, result); });
        return chain[0] == L"nothing thrown" ? valueText(result) : chain.back().utf8();
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
using plain = std::conditional_t<std::is_arithmetic_v<T>, T,
                                 std::conditional_t<std::is_same_v<T, qx::long32>, int, unsigned>>;

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
    const std::wstring longText(5000, L'a');
    return inOrder<qx::string>(
        {L"", L"A", L"AA", L"B", L"a", longText, longText + L'b', L"b", {0xD83D, 0xDE00}, {0xFFFF}});
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

// Every pair of edges through `keyword<type>` against the text that is expected; also that the result is
// written into what is there.
template <class T, class Expected>
void checkPairs(const wchar_t* keyword, const wchar_t* type, Expected expected)
{
    SCOPED_TRACE(call(keyword, type).utf8());
    const runner run(call(keyword, type));
    const std::vector<ranked<T>> all = edges<T>();
    for (const ranked<T>& a : all) {
        for (const ranked<T>& b : all) {
            const qx::genericValue first(a.value);
            const qx::genericValue second(b.value);
            ASSERT_EQ(run(first, second), expected(a, b)) << valueText(first) << ", " << valueText(second);
        }
    }
    const qx::genericValue last(all.back().value);
    EXPECT_TRUE(run(last, last, textValue(L"old")).starts_with("string "));
    EXPECT_TRUE(run(last, last, evaluated(L"createmap<short>()")).starts_with("Error executing script"));
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
                const bool ordered = a.rank != noRank && b.rank != noRank;
                return valueText(qx::genericValue(ordered ? row.compare(a.rank, b.rank) : row.unordered));
            });
        }
    }
}

template <class T, class Expected>
void checkEach(const wchar_t* keyword, const wchar_t* type, Expected expected)
{
    SCOPED_TRACE(call(keyword, type).utf8());
    const runner run(call(keyword, type, L"(a)"));
    for (const ranked<T>& a : edges<T>())
        ASSERT_EQ(run(qx::genericValue(a.value), {}),
                  valueText(qx::genericValue(expected(static_cast<plain<T>>(a.value)))));
}

template <class T>
void checkIntegers(const wchar_t* type)
{
    using P = plain<T>;
    const auto isFault = [](exact a, exact b) {
        return b == 0 ||
               (sizeof(P) == 4 && std::is_signed_v<P> && b == -1 && a == std::numeric_limits<P>::min());
    };
    const struct
    {
        std::initializer_list<const wchar_t*> keywords;
        exact (*compute)(exact a, exact b);
    } rows[] = {
        {{L"add", L"+"}, [](exact a, exact b) { return a + b; }},
        {{L"subtract", L"-"}, [](exact a, exact b) { return a - b; }},
        {{L"multiply", L"*"}, [](exact a, exact b) { return a * b; }},
        {{L"divide", L"/"}, nullptr},
        {{L"maxof"}, [](exact a, exact b) { return a < b ? b : a; }},
        {{L"minof"}, [](exact a, exact b) { return a < b ? a : b; }},
        {{L"bitand"}, [](exact a, exact b) { return a & b; }},
        {{L"bitor"}, [](exact a, exact b) { return a | b; }},
    };
    for (const auto& row : rows) {
        for (const wchar_t* keyword : row.keywords) {
            checkPairs<T>(keyword, type, [&](const ranked<T>& a, const ranked<T>& b) -> std::string {
                const exact first = static_cast<P>(a.value);
                const exact second = static_cast<P>(b.value);
                if (!row.compute && isFault(first, second))
                    return "fault of the host";
                const exact result = row.compute ? row.compute(first, second) : first / second;
                return valueText(qx::genericValue(T(wrapped<P>(result))));
            });
        }
    }
    if constexpr (std::is_signed_v<P>) {
        for (const wchar_t* keyword : {L"minus", L"-"})
            checkEach<T>(keyword, type, [](P a) { return T(wrapped<P>(-exact(a))); });
        checkEach<T>(L"abs", type, [](P a) {
            return qx::long32(wrapped<plain<qx::long32>>(a < 0 ? -exact(a) : exact(a)));
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
    for (const auto& row : rows) {
        checkPairs<T>(row.keyword, type, [&row](const ranked<T>& a, const ranked<T>& b) {
            return valueText(qx::genericValue(row.compute(a.value, b.value)));
        });
    }
    checkEach<T>(L"abs", type, [](T a) { return std::copysign(a, T(1)); });
    checkEach<T>(L"minus", type, [](T a) { return std::copysign(a, std::signbit(a) ? T(1) : T(-1)); });
    const qx::genericValue two(2);
    for (const ranked<T>& a : edges<T>()) {
        EXPECT_EQ(runner(call(L"round", type))(qx::genericValue(a.value), two),
                  valueText(qx::genericValue(static_cast<T>(qx::roundImp(a.value, 2)))));
        EXPECT_EQ(runner(call(L"cutoff", type))(qx::genericValue(a.value), two),
                  valueText(qx::genericValue(static_cast<T>(qx::cutOffImp(a.value, 2)))));
    }
}

class faultingSystem final : public fakeSystem
{
public:
    [[noreturn]] void divisionFault() override { throw qx::unexpectedErrorException(L"fault of the host"); }
};

} // namespace

// Written by hand; that they take what they tell is tested with the reference.
TEST(operators, tell_the_types_they_should)
{
    const qx::string integers = L"short, int, long, ushort, uint, ulong";
    const qx::string numbers = integers + L", float, double";
    const qx::string ordered = numbers + L", string, date, time, timestamp";
    const struct
    {
        std::vector<const wchar_t*> keywords;
        qx::string types;
    } rows[] = {
        {{L"add", L"+"}, numbers + L", string, date"},
        {{L"subtract", L"-"}, numbers + L", date"},
        {{L"multiply", L"*", L"divide", L"/", L"maxof", L"minof"}, numbers},
        {{L"bitand", L"bitor"}, integers},
        {{L"round", L"cutoff"}, L"float, double"},
        {{L"isequal", L"==", L"isnotequal", L"!="}, L"bool, " + ordered + L", unknownptr"},
        {{L"issmaller", L"<", L"issmallerorequal", L"<="}, ordered},
        {{L"isbigger", L">", L"isbiggerorequal", L">="}, ordered},
        {{L"minus", L"abs"}, L"short, int, long, float, double"},
        {{L"not", L"!", L"and", L"&&", L"or", L"||"}, L""},
    };
    std::map<qx::string, qx::string> wanted;
    for (const auto& row : rows)
        for (const wchar_t* keyword : row.keywords)
            wanted[keyword] = row.types;
    std::map<qx::string, qx::string> told;
    for (const qx::script::statementInfo& statement : qx::script::listStatements())
        if (statement.module == L"operator")
            told[statement.name] = statement.types;
    EXPECT_EQ(told, wanted);
}

TEST(operators, compute_at_the_edges_of_their_types)
{
    const faultingSystem system;
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
