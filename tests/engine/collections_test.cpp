// What scripts alone cannot show of arrays and maps: containers that go away, deep nesting.
#include "host.h"
#include "scriptSupport.h"

#include <qxHeldTypes.h>

#include "support/sanitizers.h"
#include "support/smallThread.h"

#include <gtest/gtest.h>

using qx::genericValue;
using qx::string;
using qx::valueArray;

namespace
{

using stringMap = std::map<string, genericValue>;

template <class T>
T& heldIn(const genericValue& value)
{
    return dynamic_cast<genericValue::holder<T>&>(*value.holderCopy()).value();
}

// Runs one statement and gives its value.
genericValue run(scriptcontext& context, const wchar_t* text, const genericValue& slot = genericValue())
{
    genericValue result(slot);
    parsed(text)->exec(context, result);
    return result;
}

// Arrays and maps in each other by turns.
genericValue nested(int depth)
{
    genericValue outermost((valueArray()));
    genericValue* innermost = &outermost;
    for (int i = 1; i < depth; i += 2) {
        valueArray& array = heldIn<valueArray>(*innermost);
        array.emplace_back(stringMap());
        genericValue& entry = heldIn<stringMap>(array.back())[L"k"];
        entry = genericValue(valueArray());
        innermost = &entry;
    }
    return outermost;
}

} // namespace

TEST(collections, array_of_maps_of_arrays_is_copied_deeply)
{
    scriptcontext context;
    const stringMap map{{L"k", genericValue(valueArray{genericValue(1)})}};
    context.createVariable(nameOf(L"arr"), genericValue(valueArray{genericValue(map)}));
    const genericValue copies[] = {run(context, L"createarray(arr)"), run(context, L"getvar(arr)"),
                                   genericValue(valueArray{run(context, L"arrayelement(arr, \"0\")")})};
    genericValue& original = heldIn<valueArray>(context.variable(nameOf(L"arr")))[0];
    heldIn<valueArray>(heldIn<stringMap>(original)[L"k"]).clear();
    EXPECT_EQ(valueText(original), "map<string> {k: array []}");
    for (const genericValue& copy : copies)
        EXPECT_EQ(valueText(copy), "array [map<string> {k: array [int 1]}]");
}

// The variable loses its container while a key, an index or a value is evaluated; the statement still works
// on the container that it found.
TEST(collections, containers_are_held_while_parameters_are_evaluated)
{
    const struct
    {
        const wchar_t* text;
        const char* container; // what became of it
        const char* result;
    } rows[] = {
        {L"addtoarray(arr, act())", "array [int 7, string \"0\"]", "int 5"},
        {L"arrayelement(arr, act())", "array [int 7]", "int 7"},
        {L"insertintomap<string>(m, act(), \"v\")", "map<string> {0: string \"v\"}", "int 5"},
        {L"insertintomap<string>(m, \"k\", act())", "map<string> {0: int 8, k: string \"0\"}", "int 5"},
        {L"findinmap<string>(m, act())", "map<string> {0: int 8}", "int 8"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.container);
        scriptcontext context;
        context.createVariable(nameOf(L"arr"), genericValue(valueArray{genericValue(7)}));
        context.createVariable(nameOf(L"m"), genericValue(stringMap{{L"0", genericValue(8)}}));
        const bool onArray = string(row.text).find(L"arr") != string::npos;
        const genericValue& variable = context.variable(nameOf(onArray ? L"arr" : L"m"));
        for (const bool keep : {true, false}) {
            genericValue kept;
            const hostModule host(
                hostModule::statementNamed(L"act", [&](codecontext& running, genericValue& result) {
                    if (keep) {
                        auto shared = variable.holderCopy();
                        kept.swapHolder(shared);
                    }
                    running.variable(nameOf(onArray ? L"arr" : L"m")).clear();
                    result = textValue(L"0");
                }));
            const genericValue before(variable);
            EXPECT_EQ(valueText(run(context, row.text, genericValue(5))), row.result);
            EXPECT_TRUE(variable.isNull());
            EXPECT_EQ(valueText(kept), keep ? row.container : "null");
            context.setVariable(nameOf(onArray ? L"arr" : L"m"), before);
        }
    }
}

TEST(collections, failing_parameters_leave_the_container_alone)
{
    scriptcontext context;
    const genericValue one(1);
    context.createVariable(nameOf(L"arr"), genericValue(valueArray{one}));
    context.createVariable(nameOf(L"m"), genericValue(stringMap{{L"k", one}}));
    for (const wchar_t* text :
         {L"addtoarray(arr, missing)", L"arrayelement(arr, missing)",
          L"insertintomap<string>(m, missing, \"v\")", L"insertintomap<string>(m, \"k\", missing)",
          L"insertintomap<string>(m, \"new\", missing)", L"findinmap<string>(m, missing)"}) {
        SCOPED_TRACE(string(text).utf8());
        EXPECT_EQ(failureOf([&] { run(context, text, genericValue(5)); }).back(),
                  L"Variable \"missing\" not found");
    }
    EXPECT_EQ(valueText(context.variable(nameOf(L"arr"))), "array [int 1]");
    EXPECT_EQ(valueText(context.variable(nameOf(L"m"))), "map<string> {k: int 1}");
}

// Copying goes as deep as the stack; beyond it the statement fails and the containers stay as they are.
TEST(collections, nested_a_hundred_thousand_deep)
{
    QX_SKIP_DEEP_STACK;
    scriptcontext context;
    context.createVariable(nameOf(L"arr"), genericValue());
    context.variable(nameOf(L"arr")) = nested(100000);
    context.createVariable(nameOf(L"all"), genericValue(valueArray()));
    context.createVariable(nameOf(L"m"), genericValue(stringMap()));
    std::size_t copied = 0;
    for (const wchar_t* text : {L"addtoarray(all, arr)", L"insertintomap<string>(m, \"k\", arr)"}) {
        SCOPED_TRACE(string(text).utf8());
        const string last = failureOf([&] { run(context, text); }).back();
        EXPECT_TRUE(last == L"nothing thrown" || last == L"stack exhausted") << last.utf8();
        if (last == L"nothing thrown")
            ++copied;
    }
    const std::size_t kept = heldIn<valueArray>(context.variable(nameOf(L"all"))).size() +
                             heldIn<stringMap>(context.variable(nameOf(L"m"))).size();
    EXPECT_EQ(kept, copied);
    for (const wchar_t* text : {L"createarray(arr)", L"arrayelement(arr, \"0\")"}) {
        const string last = failureOf([&] { run(context, text); }).back();
        EXPECT_TRUE(last == L"nothing thrown" || last == L"stack exhausted") << last.utf8();
    }
    EXPECT_EQ(valueText(run(context, L"sizeofarray(arr)")), "ulong 1");
}

// What is nested too deep to be copied is the failure of the parameter that it is given for.
TEST(collections, argument_that_cannot_be_copied_fails_its_parameter)
{
    QX_SKIP_DEEP_STACK;
    const scratchDirectory directory;
    const std::string name = unusedName();
    directory.write(name + ".qxscr", "scrdef f(in<array> a){ return(\"1\"); }");
    texts chain;
    EXPECT_TRUE(runOnStackOf(512 * 1024, [&] {
        std::vector<genericValue> arguments(1);
        arguments[0] = nested(100000);
        scriptcontext context;
        genericValue result;
        chain = failureOf([&] {
            qx::script::codeManager::instance()->executeFunction(
                directory.name(), L"$" + string::fromUtf8(name) + L"$f", context, arguments, result);
        });
    }));
    EXPECT_EQ(chain, (texts{L"Error preparing parameter for function \"f\" ()", L"stack exhausted"}));
}
