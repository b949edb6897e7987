#include <qxCommandLine.h>

#include <gtest/gtest.h>

TEST(commandline, splits_by_the_published_rules)
{
    const struct
    {
        const wchar_t* line;
        std::vector<qx::string> expected;
    } cases[] = {
        {L"", {}},
        {L"  a \tb  ", {L"a", L"b"}},
        {L"a\" \"b", {L"a b"}},
        {L"a \"\" b", {L"a", L"", L"b"}},
        {L"\"a\"\"b\"", {L"ab"}},
        {L"\"open end ", {L"open end "}},
        {L"a\\\\b c:\\", {L"a\\\\b", L"c:\\"}},
        {L"\\\"a b\\\"", {L"\"a", L"b\""}},
        {L"\"a\\\" b\"", {L"a\" b"}},
        {L"a\\\\\"b c\" d", {L"a\\b c", L"d"}},
        {L"a\\\\\\\"b c", {L"a\\\"b", L"c"}},
        {L"\"c:\\dir\\\\\" x", {L"c:\\dir\\", L"x"}},
        {L"a'b 'c d' $(e) *", {L"a'b", L"'c", L"d'", L"$(e)", L"*"}},
        {L"a\nb", {L"a\nb"}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(qx::splitCommandLine(row.line), row.expected) << qx::string(row.line).utf8();
}
