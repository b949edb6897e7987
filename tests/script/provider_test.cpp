// Parameters: what their texts become, and what they give on each run.
#include "assertRecorder.h"
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

using qx::script::valueProvider;

namespace
{

using ownedProvider = qx::autoPtr<valueProvider>;

ownedProvider providerOf(const qx::string& text)
{
    return ownedProvider(valueProvider::createFrom(text, 0));
}

// The value that a parameter of this text gives into a value that is prepared as `prepared`.
std::string given(const qx::string& text, qx::genericValue prepared)
{
    scriptcontext context;
    context.createVariable(nameOf(L"abc"), textValue(L"7"));
    EXPECT_TRUE(providerOf(text)->getValue(context, prepared));
    return valueText(prepared);
}

} // namespace

TEST(provider, forms_and_the_type_they_leave)
{
    const struct
    {
        const wchar_t* text;
        const char* intoNull;
        const char* intoInt;
    } rows[] = {
        {L"\"12\"", "string \"12\"", "int 12"},    {L"\" 12\t\"", "string \" 12\t\"", "int 12"},
        {L"abc", "string \"7\"", "string \"7\""}, // the variable's own type
        {L"A bC", "string \"7\"", "string \"7\""}, {L"getvar(abc)", "string \"7\"", "string \"7\""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(given(row.text, qx::genericValue()), row.intoNull) << quotedText(row.text);
        EXPECT_EQ(given(row.text, qx::genericValue(1)), row.intoInt) << quotedText(row.text);
    }
}

TEST(provider, literal_reaches_from_the_first_to_the_last_quotation_mark)
{
    for (const wchar_t* inner : {L"", L"f(x)", L"a\" + \"b", L"\\n", L"\\\"", L" "})
        EXPECT_EQ(given(L"\"" + qx::string(inner) + L"\"", qx::genericValue()),
                  "string " + quotedText(inner));
    EXPECT_EQ(given(L"\"", qx::genericValue()), "string \"\"");
}

TEST(provider, literal_that_does_not_convert_throws_false_and_leaves_the_value)
{
    scriptcontext context;
    qx::genericValue number(5);
    EXPECT_EQ(failureOf([&] { providerOf(L"\"five\"")->getValue(context, number); }), texts{L"false"});
    EXPECT_EQ(valueText(number), "int 5");
}

TEST(provider, failures)
{
    const assertRecorder recorder;
    const struct
    {
        const wchar_t* text;
        texts chain;
        texts reports;
    } rows[] = {
        {L"", {L"Error parsing "}, {}},
        {L" ", {L"Error parsing getvar( )"}, {L"getVariable::createFrom: number of parameters < 1"}},
        {L";;(", {L"Error parsing ;;("}, {L"statement::createFrom: error parsing \"\""}},
        // The text as it was before it became a call of getvar.
        {L"a;;b", {L"Error parsing a;;b"}, {L"statement::createFrom: error parsing \"\""}},
        {L"nobody(x)", {L"Error parsing nobody(x)"}, {}},
        {L"\"a(b", {L"Error parsing \"a(b"}, {}}, // no literal, so a call
        {L"return(nobody())", {L"Error parsing return(nobody())", L"Error parsing nobody()"}, {}},
        {L"a\"", {L"nothing thrown"}, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(failureOf([&] { providerOf(row.text); }), row.chain) << quotedText(row.text);
        EXPECT_EQ(recorder.take(), row.reports) << quotedText(row.text);
    }
}

TEST(provider, call_runs_anew_for_each_value_in_the_context_given)
{
    int runs = 0;
    const hostModule host(
        hostModule::statementNamed(L"next", [&](codecontext& context, qx::genericValue& result) {
            result = qx::genericValue(++runs * (context.hasVariable(nameOf(L"negative")) ? -1 : 1));
        }));
    const ownedProvider provider = providerOf(L"next()");
    EXPECT_EQ(runs, 0);
    scriptcontext first;
    scriptcontext second;
    second.createVariable(nameOf(L"negative"), qx::genericValue());
    qx::genericValue value;
    provider->getValue(first, value);
    EXPECT_EQ(valueText(value), "int 1");
    provider->getValue(second, value);
    EXPECT_EQ(valueText(value), "int -2");
}

TEST(provider, clone_owns_a_tree_of_its_own)
{
    const hostModule host(hostModule::statementNamed(
        L"give", [](codecontext&, qx::genericValue& result) { result = textValue(L"given"); }));
    scriptcontext context;
    for (const auto& [text, trees] : {std::pair(L"give()", 1), std::pair(L"\"given\"", 0)}) {
        ownedProvider original = providerOf(text);
        const ownedProvider copy(original->clone());
        EXPECT_EQ(hostStatement::living, 2 * trees);
        original.reset();
        EXPECT_EQ(hostStatement::living, trees);
        qx::genericValue value;
        EXPECT_TRUE(copy->getValue(context, value));
        EXPECT_EQ(valueText(value), "string \"given\"");
    }
}
