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

// The calls that a text is cut into, as a module that knows every name sees them.
texts callsOf(const qx::string& text)
{
    hostModule everything([](const moduleCall&) { return idle(); });
    EXPECT_TRUE(parsed(text)) << quotedText(text);
    texts calls;
    for (const moduleCall& call : everything.asked)
        calls.push_back(shown(call));
    return calls;
}

struct cutting
{
    const wchar_t* text;
    texts calls;
};

void expectCalls(std::initializer_list<cutting> rows)
{
    for (const cutting& row : rows)
        EXPECT_EQ(callsOf(row.text), row.calls) << quotedText(row.text);
}

struct failing
{
    const wchar_t* text;
    texts chain;
};

void expectFailures(std::initializer_list<failing> rows)
{
    for (const failing& row : rows)
        EXPECT_EQ(failureOf([&] { parsed(row.text); }), row.chain) << quotedText(row.text);
}

} // namespace

TEST(parser, cuts_parameters_at_commas_outside_brackets_and_strings)
{
    expectCalls({
        {L"f()", {L"f[]"}},
        {L"f(a, )", {L"f[a]"}},
        {L"f(,a)", {L"f[_|a]"}},
        {L"f(,)", {L"f[_]"}},
        {L"f(a,,b)", {L"f[a|_|b]"}},
        {L"f( A  b ,\tC\t)", {L"f[A  b|C]"}},
        {L"f(g(a, b), c)", {L"f[g(a, b)|c]"}},
        {L"f(g<a, b>, c)", {L"f[g<a, b>|c]"}},
        {L"f({a, b})", {L"f[{a|b}]"}},
        {L"f(\"(<\")", {L"f[\"(<\"]"}},
        {L"f(a)b,c(d)", {L"f[a)b,c(d]"}},
        {L"f(a>b,c<d)", {L"f[a>b,c<d]"}},
        {L"f(a>b<c,d)", {L"f[a>b<c|d]"}},
        // The parameters end before the last closing bracket.
        {L"f(a) trailing text", {L"f[a]"}},
        {L"f(a", {L"f[a]"}},
        {L"a)f(b", {L"a)f[b]"}},
    });
}

TEST(parser, quotation_marks_open_a_string_only_at_the_start_of_a_token)
{
    expectCalls({
        {L"f( \t\"a,b\")", {L"f[\"a,b\"]"}},
        {L"f(g(x,\"a,b(\"))", {L"f[g(x,\"a,b(\")]"}},
        {L"f(a\"b,c\")", {L"f[a\"b|c\"]"}},
        {L"f(\"a\" \"b,c\")", {L"f[\"a\" \"b|c\"]"}},
        {L"f(g() \"b,c\")", {L"f[g() \"b|c\"]"}},
        {L"f(<\"a,b\">)", {L"f[<\"a,b\">]"}},
        {L"f(<a>\"b,c\")", {L"f[<a>\"b|c\"]"}},
        {L"f(\\\"a,b\")", {L"f[\\\"a|b\"]"}},
    });
}

TEST(parser, splitterEscapes)
{
    expectCalls({
        {L"f(\"a\\\"b\", c)", {L"f[\"a\"b\"|c]"}},
        {L"f(\"a\\\",b\")", {L"f[\"a\",b\"]"}},
        {L"f(\"\\n\\\\x\", c)", {L"f[\"\\n\\\\x\"|c]"}},
        // A backslash behind a backslash escapes as well.
        {L"f(\"a\\\\\"\", c)", {L"f[\"a\\\"\"|c]"}},
        {L"f(\"a\\ \", c)", {L"f[\"a\\ \"|c]"}},
        // Only in a literal are the escapes taken away.
        {L"f(\"a\\\"b\" x)", {L"f[\"a\\\"b\" x]"}},
        {L"f(a\\\"b)", {L"f[a\\\"b]"}},
    });
    expectFailures(
        {{L"f(\"c:\\\\\")",
          {L"Error parsing f(\"c:\\\\\")", L"Missing end of string for statement \"f(\"c:\\\\\")\""}}});
}

TEST(parser, head_holds_name_and_types_without_case_and_blanks)
{
    expectCalls({
        {L"Foo < Int > (x)", {L"foo<int>[x]"}},
        {L"fo\r\no\t< A b ,C>(X)", {L"foo<ab|c>[X]"}},
        {L"\u00C4(x)", {L"\u00E4[x]"}},
        {L"f<>(x)", {L"f<_>[x]"}},
        {L"f<a,>(x)", {L"f<a|_>[x]"}},
        {L"f<g<a>,b>(x)", {L"f<g<a>|b>[x]"}},
        {L">=<int>(a,b)", {L">=<int>[a|b]"}},
        {L"<<int>(a,b)", {L"<<int>[a|b]"}}, // an empty name with the type "<int"
        {L"&&(a,b)", {L"&&[a|b]"}},
        {L"a>b<c(x)", {L"a>b<c>[x]"}},
        {L"(x)", {L"[x]"}},
    });
}

TEST(parser, cuts_blocks_at_semicolons_outside_braces)
{
    expectCalls({
        {L"a();b(x)", {L"a[]", L"b[x]"}},
        {L" \t{ a() ; b(); }\t", {L"a[]", L"b[]"}},
        {L"{a();}", {L"a[]"}},
        {L"{a();{b();{c();d()}}}", {L"a[]", L"b[]", L"c[]", L"d[]"}},
        {L"{a()}{b()}", {L"a[)}{b(]"}},
        {L"{{a();b()}}", {L"{a[);b(]"}},
        {L"f(\"{;}\")", {L"f[\"{;}\"]"}},
        {L"f(\"{\"); g()", {L"f[\"{\"); g(]"}},
        {L"}a();b({)", {L"}a[);b({]"}},
        {L"a();\r\nb(\"x\r\ny\")", {L"a[]", L"b[\"xy\"]"}},
        // The blank behind the line end hides the brace.
        {L"\n {a()}", {L"{a[]"}},
        {L" \n{a()}", {L"a[]"}},
    });
}

TEST(parser, text_without_a_statement_gives_null_and_no_failure)
{
    const assertRecorder recorder;
    for (const wchar_t* text :
         {L"", L" \t", L"\r\n", L"{}", L"{ }", L"{\n}", L"word", L"{word}", L"a)", L";", L"{;}"})
        EXPECT_FALSE(parsed(text)) << quotedText(text);
    EXPECT_EQ(recorder.take(), texts());
}

TEST(parser, block_with_a_part_that_is_no_statement_is_reported_and_gives_null)
{
    const struct
    {
        const wchar_t* text;
        const wchar_t* part;
    } rows[] = {
        {L"a();;b()", L""},     {L"{a(); ;b()}", L" "}, {L"a(); word", L" word"},
        {L"word;a()", L"word"}, {L";;", L""},           {L"a();{}", L"{}"},
    };
    const assertRecorder recorder;
    const hostModule everything([](const moduleCall&) { return idle(); });
    for (const auto& row : rows) {
        EXPECT_FALSE(parsed(row.text)) << quotedText(row.text);
        EXPECT_EQ(recorder.take(),
                  texts{L"statement::createFrom: error parsing \"" + qx::string(row.part) + L"\""});
    }
    EXPECT_EQ(hostStatement::living, 0);
}

TEST(parser, failures_name_the_text_and_the_reason)
{
    expectFailures({
        {L" {return()", {L"Error parsing  {return()"}},
        {L"{", {L"Error parsing {"}},
        {L"f(\"a;b\")", {L"Error parsing f(\"a", L"Missing end of string for statement \"f(\"a\""}},
        {L"f((a)", {L"Error parsing f((a)", L"Missing closing bracket (\")\" for statement \"f((a)\""}},
        {L"f(a))", {L"Error parsing f(a))", L"Missing closing bracket (\")\" for statement \"f(a))\""}},
        {L"f(<a)", {L"Error parsing f(<a)", L"Missing closing bracket (\">\" for statement \"f(<a)\""}},
        {L"f(\"a)", {L"Error parsing f(\"a)", L"Missing end of string for statement \"f(\"a)\""}},
        // Brackets are told before angle brackets, and these before strings.
        {L"f((<\"a)",
         {L"Error parsing f((<\"a)", L"Missing closing bracket (\")\" for statement \"f((<\"a)\""}},
        {L"f(<,\"a)",
         {L"Error parsing f(<,\"a)", L"Missing closing bracket (\">\" for statement \"f(<,\"a)\""}},
        // The reason shows the text without braces, blanks and line ends at its ends.
        {L"{ f(\n(a) }",
         {L"Error parsing { f(\n(a) }", L"Missing closing bracket (\")\" for statement \"f((a)\""}},
        {L" nobody(x) ", {L"Error parsing  nobody(x) "}},
        {L"{return()}{return()}", {L"Error parsing {return()}{return()}", L"Error parsing )}{return("}},
        // One link for each call around the bracket that is missing.
        {L"return(treatasfunction({ isnull(<); isnull(>) }))",
         {L"Error parsing return(treatasfunction({ isnull(<); isnull(>) }))",
          L"Error parsing treatasfunction({ isnull(<); isnull(>) })", L"Error parsing isnull(<)",
          L"Missing closing bracket (\">\" for statement \"isnull(<)\""}},
        // The block adds no link of its own.
        {L"return(); nobody(); return()", {L"Error parsing  nobody()"}},
        {L"isnull( , x)", {L"Error parsing isnull( , x)", L"Error parsing "}},
        {L"continue()", {L"Error parsing continue()"}},
    });
}

TEST(parser, what_a_factory_throws_becomes_the_reason)
{
    const hostModule throwing([](const moduleCall& call) -> statement* {
        if (call.name == L"fails")
            throw qx::unexpectedErrorException(L"because of %s", call.params[0]);
        if (call.name == L"says")
            throw qx::string(L"text");
        if (call.name == L"refuses")
            throw false;
        return nullptr;
    });
    expectFailures({
        {L"return(fails(x))",
         {L"Error parsing return(fails(x))", L"Error parsing fails(x)", L"because of x"}},
        {L"says(x)", {L"Error parsing says(x)"}},
        {L"refuses(x)", {L"Error parsing refuses(x)"}},
    });
}

TEST(parser, flags_reach_every_nested_call_unchanged_but_for_a_loop_body)
{
    hostModule host([](const moduleCall& call) -> statement* {
        if (call.name == L"loop") // as loops do: condition as it came, body with both bits
            return delete qx::script::valueProvider::createFrom(call.params[0], call.flags),
                   statement::createFrom(call.params[1], call.flags | 3);
        return call.name.starts_with(L"probe") ? idle() : nullptr;
    });
    parsed(
        L"{ probe1(); loop(probe2(), {probe3(); treatasfunction({return(probe4()); probe5()})}); probe6(); }",
        4);
    std::vector<std::pair<qx::string, int>> flags;
    for (const moduleCall& call : host.asked)
        if (call.name.starts_with(L"probe"))
            flags.emplace_back(call.name, call.flags);
    EXPECT_EQ(
        flags,
        (std::vector<std::pair<qx::string, int>>{
            {L"probe1", 4}, {L"probe2", 4}, {L"probe3", 7}, {L"probe4", 7}, {L"probe5", 7}, {L"probe6", 4}}));
}

TEST(parser, module_below_the_built_in_ones_is_asked_first)
{
    hostModule host(hostModule::statementNamed(
        L"return", [](codecontext&, qx::genericValue& result) { result = textValue(L"the host's"); }));
    EXPECT_EQ(valueText(evaluated(L"return(\"x\")")), "string \"the host's\"");
    EXPECT_EQ(valueText(evaluated(L"isnull(\"x\")")), "bool false"); // declined, so the next is asked
    ASSERT_EQ(host.asked.size(), 2u);
    EXPECT_EQ(shown(host.asked[1]), L"isnull[\"x\"]");
}

namespace
{

// Asked for a name that the built-in modules know, a module behind them is never reached.
texts askedBehind;

statement* askBehind(const qx::string& name, const std::vector<qx::string>&, const std::vector<qx::string>&,
                     int)
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

TEST(parser, module_without_a_factory_is_refused)
{
    EXPECT_EQ(failureOf([] { qx::script::scriptModule module(nullptr); }), texts{L"false"});
}

TEST(parser, long_texts_are_cut_in_messages)
{
    const auto textOf = [](std::size_t length) {
        qx::string text = L"isnull(\"";
        text.append(length - text.size() - 2, L'x').append(L"\")");
        return parsed(L" " + text + L"\n")->text();
    };
    EXPECT_EQ(textOf(127), L"isnull(\"" + std::wstring(117, L'x') + L"\")");
    EXPECT_EQ(textOf(128), L"isnull(\"" + std::wstring(114, L'x') + L" ...");
    EXPECT_EQ(textOf(5000).size(), 126u);
    EXPECT_EQ(parsed(L"{ isnull(a); isnull(b); }")->text(), L"isnull(a); isnull(b);");
}
