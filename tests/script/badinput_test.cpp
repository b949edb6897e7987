// Input that nobody means well with: it ends in a clear failure, never in a crash, and within its share of
// memory.
#include "assertRecorder.h"
#include "host.h"
#include "peakMemory.h"
#include "support/smallThread.h"
#include "utils/scratchDirectory.h"
#include "valueText.h"

#include "support/sanitizers.h"

#include <gtest/gtest.h>

#include <algorithm>

using qx::string;

namespace
{

string repeated(const wchar_t* piece, std::size_t times)
{
    string text;
    text.reserve(std::wcslen(piece) * times);
    for (std::size_t i = 0; i < times; ++i)
        text += piece;
    return text;
}

// What a long chain says: its number of links, and the texts of the outermost and the innermost, cut.
struct longChain
{
    std::size_t links = 0;
    string outermost;
    string innermost;
};

template <class Action>
longChain chainOfLong(const Action& action)
{
    try {
        action();
    } catch (const qx::exception& failure) {
        const std::vector<qx::locString> messages = failure.messages();
        return {messages.size(), string(messages.front().text().substr(0, 40)),
                string(messages.back().text().substr(0, 40))};
    }
    return {};
}

// Within 64 MiB and 32 times the bytes of the text.
void expectModestMemory(const peakMemory& peak, const string& text)
{
    EXPECT_LE(peak.growth(), 64 * 1024 * 1024 + 32 * sizeof(wchar_t) * text.size());
}

longChain parsingOf(const string& text)
{
    const peakMemory peak;
    longChain chain = chainOfLong([&] { parsed(text); });
    expectModestMemory(peak, text);
    return chain;
}

constexpr std::size_t smallStack = 256 * 1024;

// On the main thread and on a small one.
template <class Check>
void onBothStacks(const Check& check)
{
    check();
    EXPECT_TRUE(runOnStackOf(smallStack, check));
}

} // namespace

TEST(badInput, unbalanced_megabytes_fail_at_once)
{
    const assertRecorder recorder;
    constexpr std::size_t megabyte = 1024 * 1024;
    const struct
    {
        const wchar_t* piece;
        std::size_t links;
        const wchar_t* innermost;
    } rows[] = {
        {L"(", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"{", 1, L"Error parsing {{{{{{{{{{{{{{{{{{{{{{{{{{"},
        {L"f(", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"{a();", 1, L"Error parsing {a();{a();{a();{a();{a();{"},
        {L"f(<", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f(\"", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f()", 1, L"Error parsing f()f()f()f()f()f()f()f()f("},
        {L"f;", 0, L""},
        {L"a()}{;", 1, L"Error parsing a()}{"},
    };
    for (const auto& row : rows) {
        const longChain chain = parsingOf(repeated(row.piece, megabyte / std::wcslen(row.piece)));
        EXPECT_EQ(chain.links, row.links) << quotedText(row.piece);
        EXPECT_EQ(chain.innermost, row.innermost) << quotedText(row.piece);
    }
}

TEST(badInput, nesting_uses_up_the_stack_and_says_so)
{
    QX_SKIP_DEEP_STACK;
    const auto nested = [](const wchar_t* open, const wchar_t* close, std::size_t depth) {
        return repeated(open, depth) + L"isnull(a)" + repeated(close, depth);
    };
    const auto check = [](const string& text) {
        const longChain chain = parsingOf(text);
        EXPECT_GE(chain.links, 2u);
        EXPECT_EQ(chain.innermost, L"stack exhausted");
    };
    // Each level walks the rest of the text, so no deeper than it takes.
    onBothStacks([&] { check(nested(L"return(", L")", 16 * 1000)); });
    EXPECT_TRUE(runOnStackOf(smallStack, [&] {
        check(nested(L"{isnull(a);", L"}", 2000));
        check(nested(L"return({isnull(a);", L"})", 2000));
    }));
}

TEST(badInput, recursion_without_end_uses_up_the_stack_and_says_so)
{
    QX_SKIP_DEEP_STACK;
    const scratchDirectory scripts;
    scripts.write("again.qxscr", "scrdef again()\n{ isnull(\"x\"); callfunction(script$again$again); }");
    onBothStacks([&] {
        const peakMemory peak;
        const longChain chain = chainOfLong([&] {
            scriptcontext context;
            std::vector<qx::genericValue> none;
            qx::genericValue result;
            qx::script::codeManager::instance()->executeFunction(scripts.name(), L"$again$again", context,
                                                                 none, result);
        });
        EXPECT_LE(peak.growth(), 64u * 1024 * 1024);
        EXPECT_GE(chain.links, 20u);
        EXPECT_EQ(chain.outermost, L"Error executing script \"again\" ");
        EXPECT_EQ(chain.innermost, L"stack exhausted");
    });
}

TEST(badInput, long_chain_is_built_copied_and_ended_in_no_depth_of_its_own)
{
    constexpr int links = 100 * 1000;
    EXPECT_TRUE(runOnStackOf(smallStack, [] {
        const peakMemory peak;
        qx::script::scriptExecException chain(L"innermost", nullptr);
        for (int i = 1; i < links; ++i)
            chain = qx::script::scriptExecException(L"outer", nullptr, &chain);
        const qx::script::scriptExecException copy(chain);
        EXPECT_EQ(copy.messages().size(), std::size_t(links));
        EXPECT_EQ(copy.messages().back().text(), L"Error executing script \"innermost\" ");
        EXPECT_LE(peak.growth(), 256u * 1024 * 1024);
    }));
}

TEST(badInput, definition_without_end_fails)
{
    const scratchDirectory scripts;
    const std::pair<const char*, texts> rows[] = {
        {"f", {L"Function \"f\" not found in file \"FILE\""}},
        {"f(in x = \"", {L"Function \"f\" not found in file \"FILE\""}},
        {"f()", {L"Function \"f\" not found in file \"FILE\""}},
        {"f() {", {L"Error parsing  {"}},
        {"f() return((",
         {L"Error parsing  return((", L"Missing closing bracket (\")\" for statement \"return((\""}},
        {"f() return(\"",
         {L"Error parsing  return(\"", L"Missing end of string for statement \"return(\"\""}},
    };
    int number = 0;
    for (const auto& [text, chain] : rows) {
        const std::string file = "end" + std::to_string(++number);
        scripts.write(file + ".qxscr", std::string("scrdef ") + text);
        texts failure = failureOf([&] {
            scriptcontext context;
            std::vector<qx::genericValue> none;
            qx::genericValue result;
            qx::script::codeManager::instance()->executeFunction(
                scripts.name(), L"$" + string::fromUtf8(file) + L"$f", context, none, result);
        });
        failure[0].replace(scripts.name(file + ".qxscr"), L"FILE");
        EXPECT_EQ(failure, chain) << text;
    }
}

TEST(badInput, every_unit_of_text_is_a_character_like_others)
{
    const auto outcome = [](const string& text) {
        return chainOfLong([&] {
            scriptcontext context;
            qx::genericValue result;
            if (const ownedStatement made = parsed(text))
                made->exec(context, result);
        });
    };
    const assertRecorder recorder;
    for (unsigned unit = 0; unit <= 0xFFFF; unit = unit == 0x2FF ? 0xD7F0 : unit + 1) {
        string u(1, static_cast<wchar_t>(unit));
        if (u != L"\r" && u != L"\n" && u != L";") {
            EXPECT_EQ(valueText(evaluated(L"return(\"a" + u + L"b\")")),
                      "string " + quotedText(L"a" + u + L"b"));
        }
        for (const string& text :
             texts{u, u + L"(" + u + L")", L"return(" + u + L")", L"isoftype<" + u + L">(\"1\")",
                   L"{" + u + L"return();" + u + L"}", L"createvar(x" + u + L", " + u + L"\"1\")"})
            outcome(text);
    }
}

TEST(badInput, every_byte_of_a_file_is_a_character_like_others)
{
    const scratchDirectory scripts;
    const assertRecorder recorder;
    const auto call = [&](const std::string& function, qx::genericValue& result) {
        return failureOf([&] {
            scriptcontext context;
            std::vector<qx::genericValue> none;
            qx::script::codeManager::instance()->executeFunction(
                scripts.name(), string::fromUtf8("$bytes" + function), context, none, result);
        })[0];
    };
    std::string oddOnes;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string number = std::to_string(byte);
        std::string content = "scrdef quoted() return(\"%\")\nscrdef bare() { %( }";
        std::replace(content.begin(), content.end(), '%', static_cast<char>(byte));
        scripts.write("bytes" + number + ".qxscr", content);
        qx::genericValue result;
        string read;
        if (call(number + "$quoted", result) != L"nothing thrown" || !result.getValue(read) ||
            read.size() != 1)
            oddOnes += number + " ";
        EXPECT_NE(call(number + "$bare", result), L"nothing thrown") << byte;
    }
    EXPECT_EQ(oddOnes, "10 13 59 92 "); // line ends, the semicolon and the backslash
}
