// Parameters: what their texts become, and what they give on each run.
#include "assertRecorder.h"
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

namespace
{

using ownedProvider = qx::autoPtr<qx::script::valueProvider>;

ownedProvider providerOf(const qx::string& text)
{
    return ownedProvider(qx::script::valueProvider::createFrom(text, 0));
}

// The value that a parameter of this text gives into a value that is prepared as `prepared`.
std::string given(const qx::string& text, qx::genericValue prepared = qx::genericValue())
{
    scriptcontext context;
    context.createVariable(nameOf(L"abc"), textValue(L"7"));
    EXPECT_TRUE(providerOf(text)->getValue(context, prepared));
    return valueText(prepared);
}

} // namespace

TEST(provider, forms_and_the_type_they_leave)
{
    EXPECT_EQ(given(L"\" 12\t\""), "string \" 12\t\"");
    EXPECT_EQ(given(L"\" 12\t\"", qx::genericValue(1)), "int 12");
    for (const wchar_t* text : {L"abc", L"A bC", L"getvar(abc)"}) { // the variable's own type
        EXPECT_EQ(given(text), "string \"7\"");
        EXPECT_EQ(given(text, qx::genericValue(1)), "string \"7\"");
    }
    // A literal reaches from the first to the last quotation mark.
    for (const wchar_t* inner : {L"", L"f(x)", L"a\" + \"b", L"\\n", L"\\\"", L" "})
        EXPECT_EQ(given(L"\"" + qx::string(inner) + L"\""), "string " + quotedText(inner));
    EXPECT_EQ(given(L"\""), "string \"\"");

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
        {L"\"a(b", {L"Error parsing \"a(b"}, {}}, // no literal, so a call
        {L"a\"", {L"nothing thrown"}, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(failureOf([&] { providerOf(row.text); }), row.chain) << quotedText(row.text);
        EXPECT_EQ(recorder.take(), row.reports) << quotedText(row.text);
    }
}
