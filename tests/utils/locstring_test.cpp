// Messages with parameters.
#include "qxLocString.h"

#include <gtest/gtest.h>

using qx::locString;
using qx::string;

TEST(locString, fills_parameters_in)
{
    locString inner(nullptr, L"[File] of [Total]");
    inner.params().set(L"a.txt", L"File");
    locString m(nullptr, L"[Double]");
    m.params().set(0.5, L"Double");
    m.params().set(L"[Number]", L"Text");
    m.params().set(qx::long32(-7), L"Number");
    m.params().set(L'\u00E4', L"Character");
    m.params().set(string(L"old"), L"Wide");
    m.params().set(string(L"new"), L"Wide");
    m.params().set(static_cast<const wchar_t*>(nullptr), L"Null");
    m.params().set(&inner, L"Nested");
    m.params().set(static_cast<const qx::iLocString*>(nullptr), L"NoMessage");
    inner.params().set(L"changed", L"File"); // what was set is a copy
    locString copy(m);
    copy.params().set(1.0, L"Double");
    EXPECT_EQ(m.text() + copy.text(), L"0.51");
    copy = m;
    EXPECT_EQ(copy.text(), L"0.5");

    const struct
    {
        const wchar_t* text;
        const wchar_t* expected;
    } rows[] = {
        {L"", L""},
        {L"[Double][Number] [Character]", L"0.5-7 \u00E4"},
        {L"[Text]", L"[Number]"}, // what was filled in is not filled again
        {L"[Wide]|[Null]|[NoMessage]|", L"new|||"},
        {L"[Nested]", L"a.txt of [Total]"},
        {L"[Unknown] [wide] [ Wide]", L"[Unknown] [wide] [ Wide]"},
        {L"[[Wide]] [Wide", L"[new] [Wide"},
        {L"]Wide[ []", L"]Wide[ []"},
    };
    for (const auto& row : rows) {
        string filled;
        m.params().fillIn(filled, row.text, nullptr, qx::searchPath());
        EXPECT_EQ(filled, row.expected);
    }
    EXPECT_EQ(locString().string(nullptr, qx::searchPath()), nullptr);
    EXPECT_STREQ(locString(nullptr, L"").string(nullptr, qx::searchPath()), L"");
}
