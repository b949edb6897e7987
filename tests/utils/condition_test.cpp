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

// A value as the second opinion sees it: null, or a number that is held as an int, or a text.
struct plainValue
{
    bool isNull = false;
    bool isNumber = false;
    int number = 0;
    string written;

    genericValue held() const
    {
        if (isNull)
            return {};
        return isNumber ? genericValue(number) : genericValue(written);
    }
};

// Makes conditions at random, and finds out by plain recursion over what it makes what they say of a value.
class generator
{
public:
    generator(unsigned seed, const plainValue& tested) : mRandom(seed), mTested(tested) {}

    // Appends a condition to `out` and gives its outcome.
    bool any(int depth) { return chain(L"or", depth, true); }

    string out;

private:
    int pick(int count) { return static_cast<int>(mRandom() % static_cast<unsigned>(count)); }
    void word(const wchar_t* lower)
    {
        const string text(lower);
        out += pick(4) ? text : string(text).toUpper();
        out += pick(4) ? L" " : L"\n\t";
    }

    bool chain(const wchar_t* joint, int depth, bool decides)
    {
        bool outcome = !decides;
        for (int left = 1 + pick(3); left > 0; --left) {
            const bool part = decides ? chain(L"and", depth, false) : negated(depth);
            outcome = decides ? outcome || part : outcome && part;
            if (left > 1)
                word(joint);
        }
        return outcome;
    }
    bool negated(int depth)
    {
        if (depth > 0 && pick(3) == 0) {
            word(L"not");
            return !negated(depth - 1);
        }
        if (depth == 0 || pick(2) == 0)
            return test();
        out += L"( ";
        const bool outcome = any(depth - 1);
        out += L")";
        return outcome;
    }

    // Less, equal, greater as -1, 0, 1 and 2 for a null value.
    int compareToNewOperand()
    {
        const int number = pick(5);
        const string digits = std::to_wstring(number);
        const bool quoted = pick(2) == 0;
        out += quoted ? L"\"" + digits + L"\" " : digits + (pick(2) ? L".0 " : L" ");
        if (mTested.isNull)
            return 2;
        if (!quoted && mTested.isNumber)
            return (mTested.number > number) - (mTested.number < number);
        if (!quoted)
            return 1; // the texts here begin with letters
        const int order = mTested.written.compare(digits);
        return (order > 0) - (order < 0);
    }
    bool test()
    {
        const int kind = pick(9);
        if (kind == 8) {
            word(L"empty");
            return mTested.isNull;
        }
        if (kind == 7) {
            word(L"between");
            const int low = compareToNewOperand();
            word(L"and");
            const int high = compareToNewOperand();
            return !mTested.isNull && low >= 0 && high <= 0;
        }
        if (kind == 6) {
            bool found = false;
            word(L"in");
            out += L"(";
            for (int left = 1 + pick(3); left > 0; --left) {
                found = compareToNewOperand() == 0 || found;
                out += left > 1 ? L"," : L")";
            }
            return found;
        }
        const wchar_t* const symbols[] = {L"=", L"!=", L"<", L"<=", L">", L">="};
        out += symbols[kind];
        out += pick(2) ? L" " : L"";
        const int order = compareToNewOperand();
        const bool outcomes[] = {order == 0,  order != 0,
                                 order == -1, order == -1 || order == 0,
                                 order == 1,  order == 1 || order == 0};
        return outcomes[kind];
    }

    std::mt19937 mRandom;
    plainValue mTested;
};

} // namespace

TEST(conditions, valid_texts)
{
    for (const wchar_t* valid :
         {L" \r\n\tEMPTY\t", L"=1", L"= -1.5e3", L"=+.5", L"= 5.", L"=\"\"", L"=\"a\"\"b\"",
          L"between 1 and 2 and between 3 and 4", L"in(1)", L"IN (\"a\" , true,2)", L"like\"\"",
          L"not not(empty)", L"not empty or empty and empty", L"(((=1)))", L"=\"2024-03-09\"", L"!=false"})
        EXPECT_TRUE(parsed(valid)) << string(valid).utf8();
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
    // What is long but not deep.
    const condition flat = parsed(L"=0" + repeated(L" or =1", 9000));
    ASSERT_TRUE(flat);
    EXPECT_TRUE(flat->isTrue(genericValue(1)));
    EXPECT_FALSE(flat->isTrue(genericValue(2)));
}

TEST(conditions, meaning)
{
    const genericValue null;
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
        {L"= 5.0", genericValue(5), true},
        {L"= 5.0", text(L" 5 "), true},
        {L"< 10", genericValue(9), true},
        {L"< 10", text(L"9"), true},
        {L"= 1", genericValue(true), true},
        {L"> -1e300", genericValue(qx::ulong32(4294967295u)), true},
        {L"= 1", genericValue(std::numeric_limits<double>::quiet_NaN()), false},
        {L"!= 1", genericValue(std::numeric_limits<double>::quiet_NaN()), true},
        // else as text, exactly.
        {L"< \"10\"", genericValue(9), false},
        {L"= \"5\"", genericValue(5), true},
        {L"= \"5.0\"", genericValue(5), false},
        {L"= \"a\"", text(L"A"), false},
        {L"= \"a\"\"b\"", text(L"a\"b"), true},
        {L"> 5", text(L"abc"), true},
        {L"= 5", text(L""), false},
        {L"= TRUE", genericValue(true), true},
        {L"= true", text(L"true"), true},
        {L"= true", text(L"yes"), false},
        {L"= true", genericValue(1), false},
        {L"= \"shown\"", genericValue(qx::locString(L"id", L"shown")), true},
        {L"between 2 and 3", genericValue(2), true},
        {L"between 2 and 3", genericValue(3), true},
        {L"between 3 and 2", genericValue(3), false},
        {L"between 2 and 3", genericValue(3.5), false},
        {L"in (1, \"two\")", text(L"two"), true},
        {L"in (1, \"two\")", genericValue(2), false},
        // Dates and times compare as what the value holds.
        {L"= \"9.3.2024\"", day, true},
        {L"= \"9.3.2024\"", text(L"2024-03-09"), false},
        {L"> \"10.1.2024\"", day, true},
        {L"< \"2024-03-09 00:00\"", day, true}, // no date, so as text
        {L"= \"12:00\"", noon, true},
        {L"between \"11:59:59.999\" and \"12:00\"", noon, true},
        {L"> \"9.3.2024\"", moment, true},
        {L"= \"2024-03-09T12:00\"", moment, true},
        {L"= 5", day, false},
        {L"like \"2024-*\"", day, true},
        // Null and what has no text.
        {L"empty", null, true},
        {L"= \"\"", null, false},
        {L"!= \"\"", null, true},
        {L"like \"*\"", null, false},
        {L"<= 0", null, false},
        {L"between 0 and 1", null, false},
        {L"in (0)", null, false},
        {L"not = 0", null, true},
        {L"empty", text(L""), true},
        {L"empty", text(L" "), false},
        {L"empty", genericValue(0), false},
        {L"empty", none, false},
        {L"!= 1", none, true},
        {L"= 1 or > 1 or < 1 or like \"*\"", none, false},
        // References are followed.
        {L"= 9", toNine, true},
        {L"= \"9.3.2024\"", toDay, true},
        {L"empty", toNull, true},
        // Patterns.
        {L"like \"\"", text(L""), true},
        {L"like \"\"", text(L"a"), false},
        {L"like \"*\"", text(L""), true},
        {L"like \"a*?\"", text(L"a"), false},
        {L"like \"a*?\"", text(L"ab"), true},
        {L"like \"a*?\"", text(L"Ab"), false},
        {L"like \"a?c\"", text(L"abc"), true},
        {L"like \"a?c\"", text(L"ac"), false},
        {L"like \"*ab*ab\"", text(L"abxabab"), true},
        {L"like \"*ab*ab\"", text(L"xab"), false},
        {L"like \"*ab*ba*\"", text(L"aabba"), true},
        {L"like \"**a**\"", text(L"bab"), true},
        {L"like \"1?\"", genericValue(12), true},
        // Precedence.
        {L"= 1 or = 2 and = 3", genericValue(1), true},
        {L"(= 1 or = 2) and = 3", genericValue(1), false},
        {L"not = 1 and = 2", genericValue(2), true},
        {L"not (= 1 and = 2)", genericValue(1), true},
        {L"not not = 1", genericValue(1), true},
    };
    for (const auto& row : rows) {
        const condition tested = parsed(row.text);
        ASSERT_TRUE(tested) << string(row.text).utf8();
        EXPECT_EQ(tested->isTrue(row.value), row.outcome) << string(row.text).utf8();
    }
}

TEST(conditions, agree_with_a_second_opinion)
{
    std::vector<plainValue> values = {{true, false, 0, L""}, {false, false, 0, L"word"}};
    for (int number = 0; number < 5; ++number)
        values.push_back({false, true, number, std::to_wstring(number)});
    int outcomes[2] = {0, 0};
    for (unsigned seed = 0; seed < 5000; ++seed) {
        const plainValue& value = values[seed % values.size()];
        generator made(seed, value);
        const bool expected = made.any(static_cast<int>(seed % 4));
        const condition tested = parsed(made.out);
        ASSERT_TRUE(tested) << made.out.utf8();
        ASSERT_EQ(tested->isTrue(value.held()), expected) << made.out.utf8() << value.written.utf8();
        ++outcomes[expected];
    }
    EXPECT_GT(std::min(outcomes[0], outcomes[1]), 1000);
}
