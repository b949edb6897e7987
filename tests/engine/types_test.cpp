// The data type keywords.
#include <qxScript.h>

#include <gtest/gtest.h>

TEST(types, keywords_are_whole_and_without_case)
{
    using qx::script::parseScriptType;
    const wchar_t* const keywords[] = {L"void", L"bool",      L"short",  L"int",        L"long",   L"ushort",
                                       L"uint", L"ulong",     L"float",  L"double",     L"string", L"date",
                                       L"time", L"timestamp", L"binary", L"unknownptr", L"array"};
    int number = 0;
    for (const wchar_t* keyword : keywords) {
        EXPECT_EQ(parseScriptType(keyword), number);
        EXPECT_EQ(parseScriptType(qx::string(keyword).toUpper()), number++);
    }
    for (const wchar_t* other : {L"", L" int", L"int ", L"integer", L"in", L"times"})
        EXPECT_EQ(parseScriptType(other), 0);
}
