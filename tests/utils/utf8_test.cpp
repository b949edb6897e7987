// UTF-8 at the edges.
#include "qxString.h"

#include <gtest/gtest.h>

#include <random>

using qx::string;

namespace
{

void expectSurvives(const std::string& bytes)
{
    ASSERT_EQ(string::fromUtf8(bytes).utf8(), bytes) << testing::PrintToString(bytes);
}

} // namespace

TEST(utf8, decodes)
{
    const struct
    {
        const char* bytes;
        std::wstring units;
    } rows[] = {
        {"\xF4\x8F\xBF\xBF", L"\xDBFF\xDFFF"},
        {"\xC3(", L"\xDCC3("},
        {"\xE2\x82", L"\xDCE2\xDC82"},
        {"\xC0\x80", L"\xDCC0\xDC80"},                             // overlong
        {"\xE0\x80\x80", L"\xDCE0\xDC80\xDC80"},                   // overlong
        {"\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"},         // beyond the last character
        {"\xED\xA0\x81", L"\xD801"},                               // an unpaired unit
        {"\xED\xB2\x80", L"\xDCED\xDCB2\xDC80"},                   // would be read back as the byte 0x80
        {"\xED\xA0\x81\xED\xB0\x80", L"\xDCED\xDCA0\xDC81\xDC00"}, // would be read back as a pair
    };
    for (const auto& row : rows) {
        EXPECT_EQ(string::fromUtf8(row.bytes), row.units) << testing::PrintToString(row.bytes);
        expectSurvives(row.bytes);
    }
}

TEST(utf8, every_text_of_whole_characters_survives)
{
    string text;
    for (int unit = 0; unit < 0xD800; ++unit)
        text.push_back(static_cast<wchar_t>(unit));
    for (int high = 0xD800; high < 0xDC00; ++high) {
        text.push_back(static_cast<wchar_t>(high));
        text.push_back(static_cast<wchar_t>(0xDC00 + (high * 7) % 0x400));
    }
    EXPECT_EQ(string::fromUtf8(text.utf8()), text);
}

// Every sequence of up to four bytes out of those that matter; long random ones.
TEST(utf8, every_byte_sequence_survives)
{
    const std::string telling = "a\x80\x90\x9F\xA0\xB2\xBF\xC1\xC2\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (std::size_t n = 0; n < 65536; ++n) {
        const std::string four{telling[n & 15], telling[n >> 4 & 15], telling[n >> 8 & 15], telling[n >> 12]};
        for (std::size_t length = 1; length <= 4; ++length)
            expectSurvives(four.substr(0, length));
    }

    std::mt19937 random(1);
    for (int n = 0; n < 50000; ++n) {
        std::string bytes;
        while (bytes.size() < 24) { // mostly surrogates
            if (random() % 4 != 0)
                bytes += {'\xED', "\xA0\xAF\xB0\xB2"[random() % 4], '\x80'};
            else
                bytes += telling[random() % telling.size()];
        }
        expectSurvives(bytes);
    }
}
