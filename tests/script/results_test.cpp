// How statements write their results, and what their clones do: one table over the statements of whole
// modules.
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <set>

using qx::genericValue;
using qx::string;

namespace
{

enum way
{
    nothing,   // the statement has no value
    slotted,   // what the result holds keeps its type
    replacing, // the result becomes a fresh value
};

const struct row
{
    const wchar_t* text;
    way writes;
    const char* fresh;  // into a null result
    const char* inText; // into a result that holds a text
} rows[] = {
    {L"createarray()", replacing, "array []", "array []"},
    {L"createarray(arr)", replacing, "array [string \"a\"]", "array [string \"a\"]"},
    {L"sizeofarray(arr)", slotted, "ulong 1", "string \"1\""},
    {L"addtoarray(arr, \"b\")", nothing, "null", "string \"old\""},
    {L"arrayelement(arr, \"0\")", replacing, "string \"a\"", "string \"a\""},
    {L"createmap<int>()", replacing, "map<int> {}", "map<int> {}"},
    {L"createmap<string>()", replacing, "map<string> {}", "map<string> {}"},
    {L"insertintomap<string>(m, \"k\", \"v\")", nothing, "null", "string \"old\""},
    {L"findinmap<string>(m, \"size\")", replacing, "ulong 0", "ulong 0"},
    {L"findinmap<string>(m, \"absent\")", nothing, "null", "string \"old\""},
    {L"strlen(\"abc\")", slotted, "uint64 3", "string \"3\""},
    {L"strcat(\"1\", \"2\", \"3\")", slotted, "string \"123\"", "string \"123\""},
    {L"strlower(\"A\")", replacing, "string \"a\"", "string \"a\""},
    {L"strupper(\"a\")", replacing, "string \"A\"", "string \"A\""},
    {L"strreplace(\"12\", \"2\", \"3\")", replacing, "string \"13\"", "string \"13\""},
    {L"strdelspaces(\" 1\", \"all\")", replacing, "string \"1\"", "string \"1\""},
    {L"strsplit(\"1\", \",\")", replacing, "array [string \"1\"]", "array [string \"1\"]"},
    {L"strfind(\"abc\", \"c\")", replacing, "long 2", "long 2"},
    {L"substr(\"123\", \"1\", \"1\")", replacing, "string \"2\"", "string \"2\""},
};

const std::set<string> modulesOfTable = {L"collection", L"string"};

// Runs in a context with an array `arr` and a map `m`, and shows the result.
std::string resultIn(const genericValue& before, const statement& run)
{
    scriptcontext context;
    for (const wchar_t* preparation :
         {L"createvar(arr, strsplit(\"a\", \",\"))", L"createvar(none, createarray())",
          L"createvar(m, createmap<string>())", L"insertintomap<string>(m, \"size\", sizeofarray(none))"})
        parsed(preparation)->exec(context);
    genericValue result(before);
    try {
        run.exec(context, result);
    } catch (const qx::script::scriptExecException&) {
        return valueText(result) + ", refused";
    }
    return valueText(result);
}

} // namespace

TEST(results, keep_or_replace_what_is_there)
{
    const genericValue mapBefore = evaluated(L"createmap<short>()");
    for (const row& tried : rows) {
        SCOPED_TRACE(string(tried.text).utf8());
        const ownedStatement original = parsed(tried.text);
        EXPECT_EQ(resultIn(genericValue(), *original), tried.fresh);
        EXPECT_EQ(resultIn(textValue(L"old"), *original), tried.inText);
        // Nothing converts into a map.
        EXPECT_EQ(resultIn(mapBefore, *original), tried.writes == replacing ? tried.fresh
                                                  : tried.writes == slotted ? "map<short> {}, refused"
                                                                            : "map<short> {}");
    }
}

TEST(results, of_clones_are_those_of_the_original)
{
    for (const row& tried : rows) {
        SCOPED_TRACE(string(tried.text).utf8());
        ownedStatement original = parsed(tried.text);
        const ownedStatement clone(original->clone());
        EXPECT_EQ(clone->text(), tried.text);
        const statement& first = *original;
        const statement& second = *clone;
        EXPECT_EQ(typeid(second), typeid(first));
        original = ownedStatement(); // a clone needs nothing of it
        EXPECT_EQ(resultIn(genericValue(), *clone), tried.fresh);
        EXPECT_EQ(resultIn(textValue(L"old"), *clone), tried.inText);
    }
}

TEST(results, are_listed_for_every_statement_of_these_modules)
{
    std::set<string> listed;
    for (const row& tried : rows) {
        const string text = tried.text;
        listed.insert(text.substr(0, text.find_first_of(L"<(")));
    }
    for (const qx::script::statementInfo& built : qx::script::listStatements()) {
        EXPECT_TRUE(!modulesOfTable.contains(built.module) || listed.contains(built.name))
            << built.name.utf8();
    }
}
