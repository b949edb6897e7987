// Conditions: which texts are one, what they mean, and generated ones against a second opinion.
#include <qxHeldTypes.h>

#include <gtest/gtest.h>

#include <random>

using qx::genericValue;
using qx::string;
using condition = qx::sharedPtr<qx::conditions::condition>;

namespace
{

condition parsed(const string& text)
{
    return condition(qx::conditions::condition::parse(text));
}

string repeated(const wchar_t* part, int count)
{
    string all;
    for (int i = 0; i < count; ++i)
        all += part;
    return all;
}

genericValue text(const wchar_t* content)
{
    return genericValue(string(content));
}

// --- A second opinion ---

// A condition, and the values for which it is true as bits: the numbers 0 to 4, the text "word", and null.
struct knownCondition
{
    string text;
    unsigned values;
};

constexpr unsigned null = 1u << 6;

genericValue valueOfBit(int bit)
{
    if (bit < 5)
        return genericValue(bit);
    return bit == 5 ? text(L"word") : genericValue();
}

// Makes conditions at random together with the values for which they are true.
class generator
{
public:
    explicit generator(unsigned seed) : mRandom(seed) {}

    // What "or" joins out of what "and" joins.
    knownCondition joined(bool byOr, int depth)
    {
        knownCondition all = part(byOr, depth);
        for (int more = pick(3); more > 0; --more) {
            const knownCondition next = part(byOr, depth);
            all.text += (byOr ? L" OR " : L"\tand\r\n") + next.text;
            all.values = byOr ? all.values | next.values : all.values & next.values;
        }
        return all;
    }

private:
    // The values below a number, and the number itself.
    struct operand
    {
        string text;
        unsigned below;
        unsigned equal;
    };

    int pick(int count) { return static_cast<int>(mRandom() % static_cast<unsigned>(count)); }
    knownCondition part(bool ofOr, int depth) { return ofOr ? joined(false, depth) : single(depth); }
    knownCondition single(int depth)
    {
        if (depth > 0 && pick(2) == 0) {
            const bool isNegated = pick(2) == 0;
            const knownCondition inner = isNegated ? single(depth - 1) : joined(true, depth - 1);
            if (isNegated)
                return {L"not " + inner.text, ~inner.values};
            return {L"( " + inner.text + L")", inner.values};
        }
        const operand a = number();
        const operand b = number();
        const knownCondition all[] = {
            {L"Empty", null},
            {L"=" + a.text, a.equal},
            {L"!=" + a.text, ~a.equal},
            {L"<" + a.text, a.below},
            {L"<=" + a.text, a.below | a.equal},
            {L">" + a.text, ~(a.below | a.equal | null)},
            {L">=" + a.text, ~(a.below | null)},
            {L"between " + a.text + L" and " + b.text, ~a.below & (b.below | b.equal)},
            {L"in(" + a.text + L" , " + b.text + L")", a.equal | b.equal},
        };
        return all[pick(9)];
    }
    operand number()
    {
        const int number = pick(5);
        const string digits = std::to_wstring(number);
        const string texts[] = {digits, digits + L".0", L"\"" + digits + L"\""};
        return {texts[pick(3)], (1u << number) - 1, 1u << number};
    }

    std::mt19937 mRandom;
};

} // namespace

TEST(conditions, valid_texts)
{
    std::vector<string> valid;
    string(L" \r\n\tEMPTY\t|= -1.5e3|=+.5|= 5.|=\"\"|between 1 and 2 and between 3 and 4|in(1)|"
           L"IN (\"a\" , true,2)|like\"\"|not not(empty)|not empty or empty and empty|(((=1)))|!=false")
        .splitAt(L"|", valid, false);
    for (const string& text : valid)
        EXPECT_TRUE(parsed(text)) << text.utf8();
    std::vector<string> invalid;
    string(L"| |1|<>1|=|==1|= 1 2|=1or =2|= 1e|= 0x1|= 1e999|= inf|= -inf|= nan|= word|= (1)|"
           L"=\"a|=\"a\"\"|between 1|between 1 or 2|between (1, 2)|in 1|in ()|in (1,)|in (1|"
           L"in (empty)|like 1|like true|empty empty|empty 1|not|and empty|empty and|"
           L"empty or or empty|()|(empty|empty)|notempty|! empty|= 1;|= '1'|emptY\x00e9")
        .splitAt(L"|", invalid, false);
    for (const string& text : invalid)
        EXPECT_FALSE(parsed(text)) << text.utf8();
    EXPECT_FALSE(parsed(string(L"empty\0", 6)));
}

TEST(conditions, limits)
{
    const struct
    {
        const wchar_t* open;
        const wchar_t* close;
        int most;
    } nestings[] = {{L"(", L")", 200}, {L"not ", L"", 200}, {L"not(", L")", 100}};
    for (const auto& row : nestings) {
        const auto nested = [&](int count) {
            return parsed(repeated(row.open, count) + L"empty" + repeated(row.close, count));
        };
        EXPECT_TRUE(nested(row.most));
        EXPECT_FALSE(nested(row.most + 1));
        EXPECT_FALSE(nested(10000));
    }
    const string longest = L"empty" + string(65531, L' ');
    EXPECT_TRUE(parsed(longest));
    EXPECT_FALSE(parsed(longest + L" "));
    EXPECT_TRUE(parsed(L"=0" + repeated(L" or =1", 9000))) << "long but not deep";
}

TEST(conditions, meaning)
{
    const genericValue none(qx::valueArray{});
    const genericValue day(qx::date(2024, 3, 9));
    const genericValue noon(qx::time(12, 0, 0));
    const genericValue moment(qx::timestamp(qx::date(2024, 3, 9), qx::time(12, 0, 0)));
    const genericValue toNine(qx::sharedPtr<genericValue>(new genericValue(9)));
    const genericValue toDay(qx::sharedPtr<genericValue>(new genericValue(day)));
    const genericValue toNull(qx::sharedPtr<genericValue>(new genericValue));
    const struct
    {
        const wchar_t* text;
        const genericValue& value;
        bool outcome;
    } rows[] = {
        // Numbers compare as numbers where the value reads as one,
        {L"= 5.0", text(L" 5 "), true},
        {L"< 10", genericValue(9), true},
        {L"= 1", genericValue(true), true},
        {L"!= 1", genericValue(std::numeric_limits<double>::quiet_NaN()), true},
        // else as text, exactly.
        {L"< \"10\"", genericValue(9), false},
        {L"= \"5.0\"", genericValue(5), false},
        {L"= \"a\"", text(L"A"), false},
        {L"= \"a\"\"b\"", text(L"a\"b"), true},
        {L"> 5", text(L"abc"), true},
        {L"= TRUE", genericValue(true), true},
        {L"= true", genericValue(1), false},
        {L"= \"shown\"", genericValue(qx::locString(L"id", L"shown")), true},
        // Dates and times compare as what the value holds.
        {L"> \"10.1.2024\"", day, true},
        {L"= \"9.3.2024\"", text(L"2024-03-09"), false},
        {L"< \"2024-03-09 00:00\"", day, true}, // no date, so as text
        {L"between \"11:59:59.999\" and \"12:00\"", noon, true},
        {L"> \"9.3.2024\"", moment, true},
        {L"= \"2024-03-09T12:00\"", moment, true},
        {L"= 5", day, false},
        {L"like \"2024-*\"", day, true},
        // Null and what has no text.
        {L"like \"*\"", genericValue(), false},
        {L"empty", text(L""), true},
        {L"empty", text(L" "), false},
        {L"empty", none, false},
        {L"!= 1", none, true},
        {L"= 1 or > 1 or < 1 or like \"*\"", none, false},
        // References are followed.
        {L"= 9", toNine, true},
        {L"= \"9.3.2024\"", toDay, true},
        {L"empty", toNull, true},
        // Patterns.
        {L"like \"\"", text(L"a"), false},
        {L"like \"a*?\"", text(L"ab"), true},
        {L"like \"a*?\"", text(L"Ab"), false},
        {L"like \"a?c\"", text(L"ac"), false},
        {L"like \"*ab*ab\"", text(L"abxabab"), true},
        {L"like \"*ab*ba*\"", text(L"aabba"), true},
    };
    for (const auto& row : rows) {
        const condition tested = parsed(row.text);
        ASSERT_TRUE(tested) << string(row.text).utf8();
        EXPECT_EQ(tested->isTrue(row.value), row.outcome) << string(row.text).utf8();
    }
}

TEST(conditions, agree_with_a_second_opinion)
{
    for (unsigned seed = 0; seed < 2000; ++seed) {
        const knownCondition made = generator(seed).joined(true, static_cast<int>(seed % 4));
        const condition tested = parsed(made.text);
        ASSERT_TRUE(tested) << made.text.utf8();
        for (int bit = 0; bit < 7; ++bit)
            ASSERT_EQ(tested->isTrue(valueOfBit(bit)), (made.values >> bit & 1) != 0)
                << made.text.utf8() << " for value " << bit;
    }
}
