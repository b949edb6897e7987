// The typed operators: which keyword takes which type, and what each gives at the edges of its types.
#include "host.h"
#include "programs.h"
#include "valueText.h"

#include <qxHeldTypes.h>
#include <qxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <compare>
#include <limits>
#include <span>

namespace
{

// Runs a parsed text again and again, with what its variables `a` and `b` hold.
class runner
{
public:
    explicit runner(const qx::string& text) : mStatement(parsed(text)) {}

    // The value, or the innermost reason of the failure.
    std::string operator()(const qx::genericValue& a, const qx::genericValue& b,
                           qx::genericValue result = {}) const
    {
        scriptcontext context;
        context.createVariable(nameOf(L"a"), a);
        context.createVariable(nameOf(L"b"), b);
        return outcomeOf(*mStatement, context, std::move(result));
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

const qx::string longText(5000, L'a');

// The number of type P that is equal modulo two to the power of its width.
template <class P>
P wrapped(exact number)
{
    const exact least = std::numeric_limits<P>::min();
    const exact range = exact(std::numeric_limits<P>::max()) - least + 1;
    const exact above = (number - least) % range;
    return static_cast<P>(least + (above < 0 ? above + range : above));
}

// In order, as the type compares them; but a floating type has two zeros and a NaN behind.
template <class T>
std::vector<T> edges()
{
    using P = plain<T>;
    using limits = std::numeric_limits<P>;
    if constexpr (std::is_same_v<T, bool>)
        return {false, true};
    else if constexpr (std::is_same_v<T, qx::string>)
        return {L"", L"A", L"AA", L"B", L"a", longText, longText + L'b', L"b", {0xD83D, 0xDE00}, {0xFFFF}};
    else if constexpr (std::is_same_v<T, qx::date>)
        return {{1, 1, 1}, {1899, 12, 31}, {1900, 1, 1}, {2024, 2, 29}, {9999, 12, 31}};
    else if constexpr (std::is_same_v<T, qx::time>)
        return {{0, 0, 0}, {0, 0, 0, 1}, {12, 0, 0}, {23, 59, 59, 999}};
    else if constexpr (std::is_same_v<T, qx::timestamp>)
        return {qx::timestamp(qx::date(1, 1, 1)),
                {qx::date(2024, 2, 29), qx::time(23, 59, 59, 999)},
                qx::timestamp(qx::date(2024, 3, 1)),
                {qx::date(9999, 12, 31), qx::time(23, 59, 59, 999)}};
    else if constexpr (std::is_floating_point_v<P>)
        return {-limits::infinity(),
                limits::lowest(),
                -1,
                -limits::denorm_min(),
                -P(0),
                0,
                limits::denorm_min(),
                P(1) / 3,
                std::nextafter(P(1) / 3, P(1)),
                1,
                limits::max(),
                limits::infinity(),
                limits::quiet_NaN()};
    else {
        std::vector<T> all;
        for (const exact number : {exact(limits::min()), exact(limits::min()) + 1, exact(-7), exact(-1),
                                   exact(0), exact(1), exact(2), exact(7), exact(limits::max()) / 2 + 1,
                                   exact(limits::max()) - 1, exact(limits::max())})
            if (number >= limits::min() && (all.empty() || number > static_cast<P>(all.back())))
                all.push_back(T(static_cast<P>(number)));
        return all;
    }
}

// How two edges compare, by their places or, in a floating type, by themselves.
template <class T>
std::partial_ordering compared(const std::vector<T>& all, std::size_t a, std::size_t b)
{
    if constexpr (std::is_floating_point_v<T>)
        return all[a] <=> all[b];
    return a <=> b;
}

// Every pair of edges through `keyword<type>` against the text that is expected for two of them; also that
// the result is written into what is there.
template <class T, class Expected>
void checkPairs(const wchar_t* keyword, const wchar_t* type, Expected expected)
{
    SCOPED_TRACE(call(keyword, type).utf8());
    const runner run(call(keyword, type));
    const std::vector<T> all = edges<T>();
    for (std::size_t a = 0; a < all.size(); ++a)
        for (std::size_t b = 0; b < all.size(); ++b) {
            const qx::genericValue first(all[a]);
            const qx::genericValue second(all[b]);
            ASSERT_EQ(run(first, second), expected(all, a, b))
                << valueText(first) << ", " << valueText(second);
        }
    const qx::genericValue last(all.back());
    EXPECT_TRUE(run(last, last, textValue(L"old")).starts_with("string "));
    EXPECT_TRUE(run(last, last, evaluated(L"createmap<short>()")).starts_with("Error executing script"));
}

template <class T>
void checkComparisons(const wchar_t* type)
{
    const struct
    {
        std::initializer_list<const wchar_t*> keywords;
        bool (*holds)(std::partial_ordering order);
    } rows[] = {
        {{L"isequal", L"=="}, std::is_eq}, {{L"isnotequal", L"!="}, std::is_neq},
        {{L"issmaller"}, std::is_lt},      {{L"issmallerorequal"}, std::is_lteq},
        {{L"isbigger", L">"}, std::is_gt}, {{L"isbiggerorequal", L">="}, std::is_gteq},
    };
    // Truth values have no order.
    for (const auto& row : std::span(rows).first(std::is_same_v<T, bool> ? 2 : std::size(rows)))
        for (const wchar_t* keyword : row.keywords)
            checkPairs<T>(keyword, type, [&row](const std::vector<T>& all, std::size_t a, std::size_t b) {
                return valueText(qx::genericValue(row.holds(compared(all, a, b))));
            });
}

template <class T, class Expected>
void checkEach(const wchar_t* keyword, const wchar_t* type, Expected expected,
               const wchar_t* operands = L"(a)")
{
    SCOPED_TRACE(call(keyword, type).utf8());
    const runner run(call(keyword, type, operands));
    for (const T& a : edges<T>())
        ASSERT_EQ(run(qx::genericValue(a), {}),
                  valueText(qx::genericValue(expected(static_cast<plain<T>>(a)))));
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
    for (const auto& row : rows)
        for (const wchar_t* keyword : row.keywords)
            checkPairs<T>(keyword, type, [&](const auto& all, std::size_t a, std::size_t b) -> std::string {
                const exact first = static_cast<P>(all[a]);
                const exact second = static_cast<P>(all[b]);
                if (!row.compute && isFault(first, second))
                    return "fault of the host";
                const exact result = row.compute ? row.compute(first, second) : first / second;
                return valueText(qx::genericValue(T(wrapped<P>(result))));
            });
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
    for (const auto& row : rows)
        checkPairs<T>(row.keyword, type, [&row](const std::vector<T>& all, std::size_t a, std::size_t b) {
            return valueText(qx::genericValue(row.compute(all[a], all[b])));
        });
    checkEach<T>(L"abs", type, [](T a) { return std::copysign(a, T(1)); });
    checkEach<T>(L"minus", type, [](T a) { return std::copysign(a, std::signbit(a) ? T(1) : T(-1)); });
    for (const auto& row : {std::pair(L"round", &qx::roundImp), std::pair(L"cutoff", &qx::cutOffImp)})
        checkEach<T>(
            row.first, type, [&row](T a) { return static_cast<T>(row.second(a, 2)); }, L"(a, \"2\")");
}

} // namespace

TEST(operators, compute_at_the_edges_of_their_types)
{
    const quietMachine machine;
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
