// What the parser cuts out of a text, whom it offers that to, and what it says of text that fails.
#include "assertRecorder.h"
#include "host.h"
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

struct row
{
    const wchar_t* text;
    texts outcome;
};

// Blanks behind it make no difference, but the brackets of a long text are found in another way.
void expectOutcomes(std::initializer_list<row> rows)
{
    for (const row& tried : rows)
        for (const std::size_t blanks : {0, 100})
            EXPECT_EQ(outcomeOf(tried.text + std::wstring(blanks, L' ')), tried.outcome)
                << quotedText(tried.text);
}

} // namespace

TEST(parser, cuts_names_types_and_parameters)
{
    expectOutcomes({
        {L"f()", {L"f[]"}},
        {L"f(a, )", {L"f[a]"}},
        {L"f(,)", {L"f[_]"}},
        {L"f(a,,b)", {L"f[a|_|b]"}},
        {L"f( A  b ,\tC\t)", {L"f[A  b|C]"}},
        {L"f(g(a, b), g<a, b>, c)", {L"f[g(a, b)|g<a, b>|c]"}},
        {L"f({a, b})", {L"f[{a|b}]"}},
        {L"f(\"(<\")", {L"f[\"(<\"]"}},
        {L"f(a)b,c(d)", {L"f[a)b,c(d]"}},
        {L"f(a>b,c<d)", {L"f[a>b,c<d]"}},
        {L"f(a>b<c,d)", {L"f[a>b<c|d]"}},
        // The parameters end before the last closing bracket.
        {L"f(a) trailing text", {L"f[a]"}},
        {L"f(a", {L"f[a]"}},
        {L"a)f(b", {L"a)f[b]"}},
        // Quotation marks open a string only at the start of a token.
        {L"f( \t\"a,b\")", {L"f[\"a,b\"]"}},
        {L"f(g(x,\"a,b(\"))", {L"f[g(x,\"a,b(\")]"}},
        {L"f(a\"b,c\")", {L"f[a\"b|c\"]"}},
        {L"f(\"a\" \"b,c\")", {L"f[\"a\" \"b|c\"]"}},
        {L"f(g() \"b,c\")", {L"f[g() \"b|c\"]"}},
        {L"f(<a>\"b,c\")", {L"f[<a>\"b|c\"]"}},
        // The head holds the name and the types, without case and blanks.
        {L"F\u00C4 < Int > (x)", {L"f\u00E4<int>[x]"}},
        {L"fo\r\no\t< A b ,C>(X)", {L"foo<ab|c>[X]"}},
        {L"f<>(x)", {L"f<_>[x]"}},
        {L"f<a,>(x)", {L"f<a|_>[x]"}},
        {L"f<g<a>,b>(x)", {L"f<g<a>|b>[x]"}},
        {L">=<int>(a,b)", {L">=<int>[a|b]"}},
        {L"<<int>(a,b)", {L"<<int>[a|b]"}}, // an empty name with the type "<int"
        {L"a>b<c(x)", {L"a>b<c>[x]"}},
        {L"(x)", {L"[x]"}},
    });
}

TEST(parser, splitterEscapes)
{
    expectOutcomes({
        {L"f(\"a\\\",b\", c)", {L"f[\"a\",b\"|c]"}},
        {L"f(\"\\n\\\\x\\ \", c)", {L"f[\"\\n\\\\x\\ \"|c]"}},
        // A backslash behind a backslash escapes as well.
        {L"f(\"a\\\\\"\", c)", {L"f[\"a\\\"\"|c]"}},
        // Only in a literal are the escapes taken away.
        {L"f(\"a\\\"b\" x)", {L"f[\"a\\\"b\" x]"}},
        {L"f(\"c:\\\\\")", {L"!", L"Missing end of string for statement \"f(\"c:\\\\\")\""}},
    });
}

TEST(parser, cuts_blocks_at_semicolons_outside_braces)
{
    expectOutcomes({
        {L"a();b(x)", {L"a[]", L"b[x]"}},
        {L" \t{ a() ; b(); }\t", {L"a[]", L"b[]"}},
        {L"{a();}", {L"a[]"}},
        {L"{a();{b();{c();d()}}}", {L"a[]", L"b[]", L"c[]", L"d[]"}},
        {L"{a()}{b()}", {L"a[)}{b(]"}},
        {L"{{a();b()}}", {L"{a[);b(]"}},
        {L"f(\"{;}\")", {L"f[\"{;}\"]"}},
        {L"f(\"{\"); g()", {L"f[\"{\"); g(]"}},
        // A part that begins in what its block has for a string.
        {L"a() (\"; return(f(x, (y, z)))", {L"a[]", L"return[f(x, (y, z))]", L"f[x|(y, z)]"}},
        {L"}a();b({)", {L"}a[);b({]"}},
        {L"a();\r\nb(\"x\r\ny\")", {L"a[]", L"b[\"xy\"]"}},
        // The blank behind the line end hides the brace.
        {L"\n {a()}", {L"{a[]"}},
        {L" \n{a()}", {L"a[]"}},
    });
}

TEST(parser, text_without_a_statement_gives_null)
{
    for (const wchar_t* text :
         {L"", L" \t", L"\r\n", L"{}", L"{ }", L"{\n}", L"word", L"{word}", L"a)", L";", L"{;}"})
        EXPECT_EQ(outcomeOf(text), texts()) << quotedText(text);
    // As a part of a block it is reported.
    const std::pair<const wchar_t*, const wchar_t*> parts[] = {
        {L"a();;b()", L""},     {L"{a(); ;b()}", L" "}, {L"a(); word", L" word"},
        {L"word;a()", L"word"}, {L";;", L""},           {L"a();{}", L"{}"},
    };
    for (const auto& [text, part] : parts)
        EXPECT_EQ(outcomeOf(text),
                  texts{L"statement::createFrom: error parsing \"" + qx::string(part) + L"\""});
}

TEST(parser, failures_name_the_text_and_the_reason)
{
    expectOutcomes({
        {L" {return()", {L"!"}},
        {L"f(\"a;b\")", {L"Error parsing f(\"a", L"Missing end of string for statement \"f(\"a\""}},
        {L"f(a))", {L"!", L"Missing closing bracket (\")\" for statement \"f(a))\""}},
        // Brackets are told before angle brackets, and these before strings.
        {L"f((<\"a)", {L"!", L"Missing closing bracket (\")\" for statement \"f((<\"a)\""}},
        {L"f(<,\"a)", {L"!", L"Missing closing bracket (\">\" for statement \"f(<,\"a)\""}},
        // The reason shows the text without braces, blanks and line ends at its ends.
        {L"{ f(\n(a) }", {L"!", L"Missing closing bracket (\")\" for statement \"f((a)\""}},
        {L" nobody(x) ", {L"!"}},
        {L"{return()}{return()}", {L"!", L"Error parsing )}{return("}},
        // One link for each call around the bracket that is missing.
        {L"return(return({ f(<); f(>) }))",
         {L"!", L"Error parsing return({ f(<); f(>) })", L"Error parsing f(<)",
          L"Missing closing bracket (\">\" for statement \"f(<)\""}},
        // The block adds no link of its own.
        {L"f(); nobody(); f()", {L"Error parsing  nobody()"}},
        {L"return( , x)", {L"!", L"Error parsing "}},
        // What a factory throws.
        {L"return(fails(x))", {L"!", L"Error parsing fails(x)", L"because of x"}},
        {L"says(x)", {L"!"}},
        {L"refuses(x)", {L"!"}},
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
