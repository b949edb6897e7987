// Input that nobody means well with: it ends in a clear failure, never in a crash, and within its share of
// memory.
#include "host.h"
#include "peakMemory.h"
#include "support/smallThread.h"
#include "utils/scratchDirectory.h"
#include "valueText.h"

#include <gtest/gtest.h>

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
    const longChain chain = chainOfLong([&] { parsed(text); });
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
        {L"return(", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"{a();", 1, L"Error parsing {a();{a();{a();{a();{a();{"},
        {L"f(<", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f(\"", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f()", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f(,", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f;", 0, L""},
        {L"a()}{;", 1, L""},
    };
    for (const auto& row : rows) {
        const longChain chain = parsingOf(repeated(row.piece, megabyte / std::wcslen(row.piece)));
        EXPECT_EQ(chain.links, row.links) << quotedText(row.piece);
        EXPECT_EQ(chain.innermost, row.innermost) << quotedText(row.piece);
    }
}

TEST(badInput, nesting_uses_up_the_stack_and_says_so)
{
    constexpr std::size_t depth = 100 * 1000;
    const struct
    {
        const wchar_t* open;
        const wchar_t* close;
    } rows[] = {{L"return(", L")"}, {L"{isnull(a);", L"}"}, {L"return({isnull(a);", L"})"}};
    for (const auto& row : rows) {
        const string text = repeated(row.open, depth) + L"isnull(a)" + repeated(row.close, depth);
        onBothStacks([&] {
            const longChain chain = parsingOf(text);
            EXPECT_GE(chain.links, row.open[0] == L'{' ? 1u : 50u) << row.open;
            EXPECT_EQ(chain.innermost, L"stack exhausted");
        });
    }
}
