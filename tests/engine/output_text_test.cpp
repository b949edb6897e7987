// How the command line shows values.
#include "../../tools/qxscript/outputText.h"
#include "host.h"
#include "hostObject.h"

#include <qxHeldTypes.h>
#include <qxScript>

#include <gtest/gtest.h>

#include <limits>

namespace
{

using qx::genericValue;
using qx::string;
using qx::valueArray;
using reference = qx::sharedPtr<genericValue>;

valueArray& elementsOf(const genericValue& array)
{
    return dynamic_cast<genericValue::holder<valueArray>&>(*array.holderCopy()).value();
}

TEST(outputText, shows_every_kind_of_value)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    hostObject<unknown> object;
    genericValue variable(7);
    const genericValue null;
    const struct
    {
        genericValue value;
        const wchar_t* alone;
        const wchar_t* inArray;
    } cases[] = {
        {genericValue(true), L"true", L"[true]"},
        {genericValue(-3), L"-3", L"[-3]"},
        {genericValue(qx::ulong32(4000000000u)), L"4000000000", L"[4000000000]"},
        {genericValue(0.5), L"0.5", L"[0.5]"},
        {genericValue(infinity), L"inf", L"[\"inf\"]"},
        {textValue(L""), L"", L"[\"\"]"},
        {textValue(L"a\"\\\n\x01\xE4"), L"a\"\\\n\x01\xE4", L"[\"a\\\"\\\\\\u000a\\u0001\xE4\"]"},
        {textValue(L"\xD834\xDD1E\xD834x\xDD1E"), L"\xD834\xDD1E\xD834x\xDD1E",
         L"[\"\xD834\xDD1E\\ud834x\\udd1e\"]"},
        {object.value(), L"<object>", L"[\"<object>\"]"},
        {genericValue(objectRef()), L"<null object>", L"[\"<null object>\"]"},
        {genericValue(qx::sharedPtr<qx::conditions::condition>()), L"<condition>", L"[\"<condition>\"]"},
        {genericValue(qx::calcCrc32()), L"<checksum>", L"[\"<checksum>\"]"},
        {genericValue(static_cast<void*>(nullptr)), L"<handle>", L"[\"<handle>\"]"},
        {genericValue(valueArray()), L"[]", L"[[]]"},
        {genericValue(std::map<string, genericValue>{{L"b\"", genericValue(1)}, {L"a", null}}),
         L"{\"a\":null,\"b\\\"\":1}", L"[{\"a\":null,\"b\\\"\":1}]"},
        {genericValue(std::map<short, genericValue>{{short(-1), textValue(L"x")}}), L"{\"-1\":\"x\"}",
         L"[{\"-1\":\"x\"}]"},
        {genericValue(std::map<int, genericValue>()), L"{}", L"[{}]"},
        {genericValue(reference(new genericValue(reference(new genericValue(7))))), L"7", L"[7]"},
        {genericValue(reference()), nullptr, L"[null]"},
        {null, nullptr, L"[null]"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.inArray);
        string shown = L"unchanged";
        EXPECT_EQ(outputText(row.value, shown), row.alone != nullptr);
        EXPECT_EQ(shown, row.alone ? row.alone : L"unchanged");
        EXPECT_TRUE(outputText(genericValue(valueArray{row.value}), shown));
        EXPECT_EQ(shown, row.inArray);
    }
    string shown;
    EXPECT_TRUE(outputText(genericValue(valueArray{genericValue(1), null, textValue(L"x")}), shown));
    EXPECT_EQ(shown, L"[1,null,\"x\"]");
}

TEST(outputText, ends_at_references_that_lead_back)
{
    const reference array(new genericValue(valueArray{genericValue(1)}));
    elementsOf(*array).push_back(genericValue(array));
    elementsOf(*array).push_back(genericValue(2));
    string shown;
    EXPECT_TRUE(outputText(genericValue(array), shown));
    EXPECT_EQ(shown, L"[1,\"<reference>\",2]");
    EXPECT_TRUE(outputText(*array, shown));
    EXPECT_EQ(shown, L"[1,[1,\"<reference>\",2],2]");
    // The same variable twice is no circle.
    const reference seven(new genericValue(7));
    EXPECT_TRUE(outputText(genericValue(valueArray{genericValue(seven), genericValue(seven)}), shown));
    EXPECT_EQ(shown, L"[7,7]");
    const reference itself(new genericValue);
    *itself = genericValue(itself);
    EXPECT_TRUE(outputText(genericValue(itself), shown));
    EXPECT_EQ(shown, L"<reference>");
    elementsOf(*array).clear();
    itself->clear();
}

TEST(outputText, bears_any_depth)
{
    constexpr std::size_t depth = 100000;
    const genericValue outermost{valueArray()};
    const genericValue* innermost = &outermost;
    for (std::size_t i = 1; i < depth; ++i) {
        valueArray& elements = elementsOf(*innermost);
        elements.emplace_back(valueArray());
        innermost = &elements.front();
    }
    string shown;
    EXPECT_TRUE(outputText(outermost, shown));
    EXPECT_EQ(shown, string(depth, L'[') + string(depth, L']'));
}

} // namespace
