// Conditions: which texts are one, and what they mean.
#include "support/expectations.h"

#include <qxHeldTypes.h>

#include <limits>

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

} // namespace

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

// Each condition is asked of all the values; the table tells those for which it is true.
TEST(conditions, mean_what_is_expected)
{
    using reference = qx::sharedPtr<genericValue>;
    const genericValue day(qx::date(2024, 3, 9));
    std::vector<std::pair<string, genericValue>> values = {
        {L"null", {}},
        {L"true", genericValue(true)},
        {L"nan", genericValue(std::numeric_limits<double>::quiet_NaN())},
        {L"message", genericValue(qx::locString(L"id", L"shown"))},
        {L"day", day},
        {L"noon", genericValue(qx::time(12, 0, 0))},
        {L"moment", genericValue(qx::timestamp(qx::date(2024, 3, 9), qx::time(12, 0, 0)))},
        {L"array", genericValue(qx::valueArray{})},
        {L"to 9", genericValue(reference(new genericValue(9)))},
        {L"to day", genericValue(reference(new genericValue(day)))},
        {L"to null", genericValue(reference(new genericValue))},
    };
    for (const int number : {0, 1, 2, 3, 4, 5, 9})
        values.emplace_back(std::to_wstring(number), genericValue(number));
    for (const wchar_t* text :
         {L"", L" ", L" 5 ", L"a", L"A", L"a\"b", L"ab", L"Ab", L"abc", L"abxabab", L"aabba", L"2024-03-09"})
        values.emplace_back(L"\"" + string(text) + L"\"", genericValue(string(text)));
    expectOutcomes("utils/conditions", [&](const string& text) -> std::vector<string> {
        const condition tested = parsed(text);
        if (!tested)
            return {L"no condition"};
        string isTrue = L"true:";
        for (const auto& [name, value] : values)
            if (tested->isTrue(value))
                isTrue += L" " + name;
        return {isTrue};
    });
    EXPECT_FALSE(parsed(string(L"empty\0", 6)));
}
