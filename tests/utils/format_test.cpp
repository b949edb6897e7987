// printf-style formats over typed arguments.
#include "qxString.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

using qx::string;

namespace
{

template <class... Args>
string formatted(const wchar_t* format, const Args&... arguments)
{
    return string::sformat(format, arguments...);
}

} // namespace

TEST(format, directives)
{
    const string text(L"wide");
    const struct
    {
        string actual;
        const wchar_t* expected;
    } rows[] = {
        {formatted(L"%d|%i|%u", -5, 7, 9u), L"-5|7|9"},
        {formatted(L"%5d|%-5d|%05d|%+d|% d", 42, 42, -42, 42, 42), L"   42|42   |-0042|+42| 42"},
        {formatted(L"%.3d|%8.3d|%-8.3d|%08.3d", 5, 5, 5, 5), L"005|     005|005     |     005"},
        {formatted(L"%*d|%-*d|%*d|%.*f", 4, 1, 4, 1, -4, 1, 2, 0.5), L"   1|1   |1   |0.50"},
        {formatted(L"%x|%X|%#x|%#o|%o", 255, 255, 255, 8, 8), L"ff|FF|0xff|010|10"},
        {formatted(L"%x|%u", -1, -1), L"ffffffff|4294967295"},
        {formatted(L"%d|%u", LLONG_MIN, ULLONG_MAX), L"-9223372036854775808|18446744073709551615"},
        {formatted(L"%d %d", qx::long32(-3), qx::ulong32(4000000000u)), L"-3 4000000000"},
        {formatted(L"%lld|%hd|%lu|%ls", 1, 2, 3u, L"x"), L"1|2|3|x"},
        {formatted(L"%s|%s|%s", L"a", text, std::wstring_view(L"view")), L"a|wide|view"},
        {formatted(L"%6s|%-6s|%.2s|%5.1s", L"abc", L"abc", L"abc", L"abc"), L"   abc|abc   |ab|    a"},
        {formatted(L"%c%c", L'\u00E4', 65), L"\u00E4A"},
        {formatted(L"%f|%.0f|%.1f|%8.2f|%-8.2f|%08.2f", 1.5, 2.5, -0.25, 3.14159, 3.14159, -3.14159),
         L"1.500000|2|-0.2|    3.14|3.14    |-0003.14"},
        {formatted(L"%e|%.1E|%g|%G", 12345.678, 12345.678, 0.0001, 1e-10),
         L"1.234568e+04|1.2E+04|0.0001|1E-10"},
        {formatted(L"%f|%f|%05f", HUGE_VAL, -HUGE_VAL, HUGE_VAL), L"inf|-inf|  inf"},
        {formatted(L"100%%|%%%d", 1), L"100%|%1"},
        {formatted(L"%p", static_cast<const void*>(nullptr)), L"0"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.actual, row.expected);
}

TEST(format, isSafeWhateverTheArguments)
{
    const struct
    {
        string actual;
        const wchar_t* expected;
    } rows[] = {
        {formatted(nullptr), L""},
        {formatted(L""), L""},
        {formatted(L"%s%d%f%c%p|"), L"|"},
        {formatted(L"%d %d", 1), L"1 "},
        {formatted(L"%*d|"), L"|"},
        {formatted(L"%s", static_cast<const wchar_t*>(nullptr)), L""},
        {formatted(L"%d", L"text"), L"text"},
        {formatted(L"%s|%s", 12, 0.5), L"12|0.5"},
        {formatted(L"%f", 3), L"3"},
        {formatted(L"%n%q", 1, 2), L"12"},
        {formatted(L"%", 1), L""},
        {formatted(L"a%5", 1), L"a    1"},
        {formatted(L"%s", L"%d"), L"%d"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.actual, row.expected);
    EXPECT_LE(formatted(L"%999999999d", 1).size(), 5000u);
    EXPECT_LE(formatted(L"%.999999999f", 1e308).size(), 5000u);
}
