// printf-style formats over typed arguments.
#include "qxString.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

using qx::string;

TEST(format, directives_and_whatever_the_arguments)
{
    const string text(L"wide");
    const struct
    {
        string actual;
        const wchar_t* expected;
    } rows[] = {
        {string::sformat(L"%5d|%-5d|%05d|%+d|% d", 42, 42, -42, 42, 42), L"   42|42   |-0042|+42| 42"},
        {string::sformat(L"%.3d|%8.3d|%-8.3d|%08.3d", 5, 5, 5, 5), L"005|     005|005     |     005"},
        {string::sformat(L"%*d|%-*d|%*d|%.*f", 4, 1, 4, 1, -4, 1, 2, 0.5), L"   1|1   |1   |0.50"},
        {string::sformat(L"%x|%X|%#x|%#o|%o|%u", -1, 255, 255, 8, 8, -1),
         L"ffffffff|FF|0xff|010|10|4294967295"},
        {string::sformat(L"%d|%u", LLONG_MIN, ULLONG_MAX), L"-9223372036854775808|18446744073709551615"},
        {string::sformat(L"%lld|%hd|%lu|%ls", qx::long32(-3), 2, qx::ulong32(~0u), L"x"),
         L"-3|2|4294967295|x"},
        {string::sformat(L"%s|%s|%s", L"a", text, std::wstring_view(L"view")), L"a|wide|view"},
        {string::sformat(L"%6s|%-6s|%.2s|%5.1s", L"abc", L"abc", L"abc", L"abc"), L"   abc|abc   |ab|    a"},
        {string::sformat(L"%c%c", L'\u00E4', 65), L"\u00E4A"},
        {string::sformat(L"%f|%.0f|%.1f|%8.2f|%-8.2f|%08.2f", 1.5, 2.5, -0.25, 3.14159, 3.14159, -3.14159),
         L"1.500000|2|-0.2|    3.14|3.14    |-0003.14"},
        {string::sformat(L"%e|%.1E|%g|%G", 12345.678, 12345.678, 0.0001, 1e-10),
         L"1.234568e+04|1.2E+04|0.0001|1E-10"},
        {string::sformat(L"%f|%f|%05f", HUGE_VAL, -HUGE_VAL, HUGE_VAL), L"inf|-inf|  inf"},
        {string::sformat(L"100%%|%%%d", 1), L"100%|%1"},
        {string::sformat(L"%p", static_cast<const void*>(nullptr)), L"0"},
        // Arguments that are missing, or of another type.
        {string::sformat(L"%s%d%f%c%p|"), L"|"},
        {string::sformat(L"%*d|"), L"|"},
        {string::sformat(L"%s", static_cast<const wchar_t*>(nullptr)), L""},
        {string::sformat(L"%d", L"text"), L"text"},
        {string::sformat(L"%s|%s", 12, 0.5), L"12|0.5"},
        {string::sformat(L"%n%q", 1, 2), L"12"},
        {string::sformat(L"%", 1), L""},
        {string::sformat(L"a%5", 1), L"a    1"},
        {string::sformat(L"%s", L"%d"), L"%d"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.actual, row.expected);
    EXPECT_LE(string::sformat(L"%999999999d", 1).size(), 5000u);
    EXPECT_LE(string::sformat(L"%.999999999f", 1e308).size(), 5000u);
}
