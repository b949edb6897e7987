// Wide text: case mapping, trimming, replacing, cutting.
#include "qxString.h"
#include "support/expectations.h"

using qx::string;

TEST(string, maps_case_as_expected)
{
    expectOutcomes("utils/cases", [](const string& text) {
        EXPECT_EQ(string(text).toLower(), string(text).lower());
        return std::vector<string>{string(text).lower(), string(text).toUpper()};
    });
}

TEST(string, deletes_and_replaces)
{
    EXPECT_EQ(string(L" a ").deleteLeading(L"").deleteTrailing(L"").deleteAll(L""), L" a ");
    EXPECT_EQ(string(L"\0a\0", 3).deleteAll(std::wstring_view(L"\0", 1)), L"a");
    EXPECT_EQ(string(L"aaa").replace(L"aa", L"a"), L"aa"); // what was filled in is not looked at again
    string self(L"ab");
    EXPECT_EQ(self.replace(std::wstring_view(self).substr(0, 1), self), L"abb");
}

TEST(string, splits)
{
    std::vector<string> parts{L"before"};
    EXPECT_TRUE(string(L",a,,").splitAt(L",", parts, false));
    EXPECT_TRUE(string(L":::").splitAt(L"::", parts, true));
    EXPECT_EQ(parts, (std::vector<string>{L"", L"a", L"", L"", L"", L":"}));
    EXPECT_FALSE(string(L"abc").splitAt(L"", parts, false));
    EXPECT_EQ(parts, std::vector<string>{L"abc"});
}
