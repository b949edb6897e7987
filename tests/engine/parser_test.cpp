// What the parser cuts out of a text, whom it offers that to, and what it says of text that fails.
#include "assertRecorder.h"
#include "host.h"
#include "support/expectations.h"
#include "valueText.h"

#include <gtest/gtest.h>

namespace
{

statement* idle()
{
    return new hostStatement([](codecontext&, qx::genericValue&) {});
}

// `name<types>[params]`, with types and parameters joined by `|`; an empty one is shown as `_`.
qx::string shown(const moduleCall& call)
{
    const auto joined = [](const texts& parts) {
        qx::string text;
        for (const qx::string& part : parts)
            text += (&part == parts.data() ? L"" : L"|") + (part.empty() ? L"_" : part);
        return text;
    };
    return call.name + (call.types.empty() ? L"" : L"<" + joined(call.types) + L">") + L"[" +
           joined(call.params) + L"]";
}

// What comes of a text where a module knows every name but a few: the calls it is cut into, what was
// reported of one that gives null, or the chain of its failure, in which "!" stands for "Error parsing" with
// the whole text.
texts outcomeOf(const qx::string& text)
{
    hostModule host([](const moduleCall& call) -> statement* {
        if (call.name == L"fails")
            throw qx::unexpectedErrorException(L"because of %s", call.params[0]);
        if (call.name == L"says")
            throw qx::string(L"text");
        if (call.name == L"refuses")
            throw false;
        return call.name == L"nobody" || call.name.find(L"return") != qx::string::npos ? nullptr : idle();
    });
    const assertRecorder recorder;
    bool isNull = false;
    texts outcome = failureOf([&] { isNull = !parsed(text); });
    EXPECT_EQ(hostStatement::living, 0);
    if (outcome[0] == L"Error parsing " + text)
        outcome[0] = L"!";
    if (outcome[0] != L"nothing thrown")
        return outcome;
    outcome = recorder.take();
    for (const moduleCall& call : isNull ? std::vector<moduleCall>() : host.asked)
        outcome.push_back(shown(call));
    return outcome;
}

// What a parameter of this text gives into a value that is prepared, or its failure, and what was reported.
texts given(const qx::string& text, qx::genericValue prepared)
{
    const assertRecorder recorder;
    scriptcontext context;
    context.createVariable(nameOf(L"abc"), textValue(L"7"));
    const qx::genericValue before(prepared);
    texts outcome = failureOf([&] {
        const qx::autoPtr<qx::script::valueProvider> provider(qx::script::valueProvider::createFrom(text, 0));
        EXPECT_TRUE(provider->getValue(context, prepared));
    });
    if (outcome[0] == L"nothing thrown")
        return {qx::string::fromUtf8(valueText(prepared))};
    EXPECT_EQ(valueText(prepared), valueText(before));
    const texts reports = recorder.take();
    outcome.insert(outcome.end(), reports.begin(), reports.end());
    return outcome;
}

} // namespace

// Blanks behind it make no difference, but the brackets of a long text are found in another way.
TEST(parser, cuts_texts_as_expected)
{
    expectOutcomes("engine/parser", [](const qx::string& text) {
        texts outcome = outcomeOf(text);
        EXPECT_EQ(outcomeOf(text + std::wstring(100, L' ')), outcome) << quotedText(text);
        return outcome;
    });
}

TEST(parser, makes_parameters_as_expected)
{
    expectOutcomes("engine/provider", [](const qx::string& text) {
        const texts fresh = given(text, qx::genericValue());
        const texts overNumber = given(text, qx::genericValue(1));
        return overNumber == fresh ? fresh : texts{fresh[0], L"over a number: " + overNumber[0]};
    });
}

TEST(parser, flags_reach_every_nested_call_unchanged_but_for_a_loop_body)
{
    hostModule host([](const moduleCall& call) -> statement* {
        if (call.name == L"loop") // as loops do: condition as it came, body with both bits
            return delete qx::script::valueProvider::createFrom(call.params[0], call.flags),
                   statement::createFrom(call.params[1], call.flags | 3);
        return call.name.starts_with(L"p") ? idle() : nullptr;
    });
    parsed(L"{ p1(); loop(p2(), {p3(); treatasfunction({return(p4()); p5()})}); p6(); }", 4);
    texts flags;
    for (const moduleCall& call : host.asked)
        if (call.name.starts_with(L"p"))
            flags.push_back(call.name + L":" + std::to_wstring(call.flags));
    EXPECT_EQ(flags, (texts{L"p1:4", L"p2:4", L"p3:7", L"p4:7", L"p5:7", L"p6:4"}));
}

TEST(parser, module_below_the_built_in_ones_is_asked_first)
{
    hostModule host(L"return",
                    [](codecontext&, qx::genericValue& result) { result = textValue(L"the host's"); });
    EXPECT_EQ(valueText(evaluated(L"return(\"x\")")), "string \"the host's\"");
    EXPECT_EQ(valueText(evaluated(L"isnull(\"x\")")), "bool false"); // declined, so the next is asked
    ASSERT_EQ(host.asked.size(), 2u);
    EXPECT_EQ(shown(host.asked[1]), L"isnull[\"x\"]");
    EXPECT_EQ(failureOf([] { qx::script::scriptModule module(nullptr); }), texts{L"false"});
}

namespace
{

// Three in order, of which the middle one registers the others while it is asked.
texts askedInTurn;
template <int Place>
statement* askInTurn(const qx::string& name, const texts&, const texts&, int);
qx::script::scriptModule inTurn[] = {qx::script::scriptModule(askInTurn<0>),
                                     qx::script::scriptModule(askInTurn<1>),
                                     qx::script::scriptModule(askInTurn<2>)};

template <int Place>
statement* askInTurn(const qx::string& name, const texts&, const texts&, int)
{
    if (name == L"grow")
        askedInTurn.push_back(std::to_wstring(Place));
    for (qx::script::scriptModule& module : inTurn)
        if (name == L"grow" && Place == 1)
            module.registerModule();
    return nullptr;
}

// Asked for a name that the built-in modules know, a module behind them is never reached.
texts askedBehind;

statement* askBehind(const qx::string& name, const texts&, const texts&, int)
{
    askedBehind.push_back(name);
    return idle();
}

// Ends the process, so that the module may lie on the stack, which is above all libraries on some platforms.
[[noreturn]] void askModuleOnTheStack()
{
    qx::script::scriptModule module(askBehind);
    module.registerModule();
    module.registerModule();
    parsed(L"return(\"x\")");
    const bool isBehind = askedBehind.empty();
    parsed(L"mine()");
    parsed(L"isoftype<string>(\"x\")"); // declined by the module that knows the name
    const texts wanted = isBehind ? texts{L"mine", L"isoftype"} : texts{L"return", L"mine", L"isoftype"};
    std::_Exit(askedBehind == wanted ? 0 : 1);
}

} // namespace

TEST(parserDeathTest, module_above_the_built_in_ones_is_asked_last)
{
    EXPECT_EXIT(askModuleOnTheStack(), testing::ExitedWithCode(0), "");
}

TEST(parser, module_registered_while_another_is_asked_takes_its_place_in_the_walk)
{
    inTurn[1].registerModule();
    for (int i = 0; i < 2; ++i)
        failureOf([] { parsed(L"grow()"); });
    EXPECT_EQ(askedInTurn, (texts{L"1", L"2", L"0", L"1", L"2"}));
}

TEST(parser, long_texts_are_cut_in_messages)
{
    const auto textOf = [](std::size_t inner) {
        return parsed(L" isnull(\"" + std::wstring(inner, L'x') + L"\")\n")->text();
    };
    EXPECT_EQ(textOf(117), L"isnull(\"" + std::wstring(117, L'x') + L"\")");
    EXPECT_EQ(textOf(118), L"isnull(\"" + std::wstring(114, L'x') + L" ...");
    EXPECT_EQ(parsed(L"{ isnull(a); isnull(b); }")->text(), L"isnull(a); isnull(b);");
}
