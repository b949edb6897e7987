// Wide text: case mapping, trimming, replacing, cutting.
#include "qxString.h"

#include <gtest/gtest.h>

using qx::string;

TEST(string, mapsCase)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* lower;
        const wchar_t* upper;
    } rows[] = {
        {L"Az[`{@09", L"az[`{@09", L"AZ[`{@09"},
        {L"\u00C4\u00E4", L"\u00E4\u00E4", L"\u00C4\u00C4"},
        {L"\u00DF", L"\u00DF", L"\u00DF"},                   // no single upper-case unit
        {L"\u00FF\u0178", L"\u00FF\u00FF", L"\u0178\u0178"}, // across a block
        {L"\u0130\u0131", L"i\u0131", L"\u0130I"},           // dotted and dotless i, in no locale
        {L"\u03A3\u03C3\u03C2", L"\u03C3\u03C3\u03C2", L"\u03A3\u03A3\u03A3"},
        {L"\u01C4\u01C5\u01C6", L"\u01C6\u01C6\u01C6", L"\u01C4\u01C4\u01C4"}, // title case in between
        {L"\xD801\xDC28", L"\xD801\xDC28", L"\xD801\xDC28"},                   // beyond 16 bits
    };
    for (const auto& row : rows) {
        EXPECT_EQ(string(row.text).lower(), row.lower);
        EXPECT_EQ(string(row.text).toLower(), row.lower);
        EXPECT_EQ(string(row.text).toUpper(), row.upper);
    }
}

TEST(string, deletesAndReplaces)
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
