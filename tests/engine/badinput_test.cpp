// Input that nobody means well with: it ends in a clear failure, never in a crash, and within its share of
// memory.
#include "assertRecorder.h"
#include "host.h"
#include "peakMemory.h"
#include "scriptSupport.h"
#include "support/sanitizers.h"
#include "support/smallThread.h"

#include <gtest/gtest.h>

#include <algorithm>

using qx::string;
namespace script = qx::script;

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

// What parsing a long text says: the number of its failure's links, and the innermost text, cut. It takes no
// more than 64 MiB and 32 times the bytes of the text.
struct longFailure
{
    explicit longFailure(const string& text)
    {
        const peakMemory peak;
        try {
            parsed(text);
        } catch (const qx::exception& failure) {
            const std::vector<qx::locString> messages = failure.messages();
            links = messages.size();
            innermost = messages.back().text().substr(0, 40);
        }
        EXPECT_LE(peak.growth(), 64 * 1024 * 1024 + 32 * sizeof(wchar_t) * text.size());
    }

    std::size_t links = 0;
    string innermost;
};

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
        {L"f(\"", 2, L"Missing closing bracket (\")\" for stateme"},
        {L"f()", 1, L"Error parsing f()f()f()f()f()f()f()f()f("},
        {L"f;", 0, L""},
        {L"a()}{;", 1, L"Error parsing a()}{"},
    };
    for (const auto& row : rows) {
        const longFailure failure(repeated(row.piece, megabyte / std::wcslen(row.piece)));
        EXPECT_EQ(failure.links, row.links) << quotedText(row.piece);
        EXPECT_EQ(failure.innermost, row.innermost) << quotedText(row.piece);
    }
}

TEST(badInput, nesting_uses_up_the_stack_and_says_so)
{
    QX_SKIP_DEEP_STACK;
    const auto check = [](const wchar_t* open, const wchar_t* close, std::size_t depth) {
        const longFailure failure(repeated(open, depth) + L"isnull(a)" + repeated(close, depth));
        EXPECT_GE(failure.links, 2u);
        EXPECT_EQ(failure.innermost, L"stack exhausted");
    };
    // Each level walks the rest of the text, so no deeper than it takes.
    onBothStacks([&] { check(L"return(", L")", 16 * 1000); });
    EXPECT_TRUE(runOnStackOf(smallStack, [&] {
        check(L"{isnull(a);", L"}", 2000);
        check(L"return({isnull(a);", L"})", 2000);
    }));
}

TEST(badInput, recursion_without_end_uses_up_the_stack_and_says_so)
{
    QX_SKIP_DEEP_STACK;
    const scratchDirectory scripts;
    scripts.write("again.qxscr", "scrdef again()\n{ isnull(\"x\"); callfunction(script$again$again); }");
    onBothStacks([&] {
        const peakMemory peak;
        script::scriptcontext context;
        std::vector<qx::genericValue> none;
        qx::genericValue result;
        try {
            script::codeManager::instance()->executeFunction(scripts.name(), L"$again$again", context, none,
                                                             result);
            FAIL() << "nothing thrown";
        } catch (const qx::exception& failure) {
            EXPECT_LE(peak.growth(), 64u * 1024 * 1024);
            const texts chain = chainOf(failure);
            EXPECT_GT(chain.size(), 20u);
            EXPECT_EQ(chain.front(), L"Error executing script \"again\" ");
            EXPECT_EQ(chain.back(), L"stack exhausted");
        }
    });
}

TEST(badInput, every_unit_of_text_is_a_character_like_others)
{
    const assertRecorder recorder;
    for (unsigned unit = 0; unit <= 0xFFFF; unit = unit == 0x2FF ? 0xD7F0 : unit + 1) {
        const string u(1, static_cast<wchar_t>(unit));
        EXPECT_NE(failureOf([&] { evaluated(L"getvar(" + u + L"x)"); }), texts{L"nothing thrown"}) << unit;
        if (u == L"\r" || u == L"\n" || u == L";")
            continue;
        EXPECT_EQ(valueText(evaluated(L"return(\"a" + u + L"b\")")), "string " + quotedText(L"a" + u + L"b"));
    }
}

TEST(badInput, every_byte_of_a_file_is_a_character_like_others)
{
    const scratchDirectory scripts;
    const assertRecorder recorder;
    std::string oddOnes;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string number = std::to_string(byte);
        std::string content = "scrdef quoted() return(\"%\")\nscrdef bare() { %( }";
        std::replace(content.begin(), content.end(), '%', static_cast<char>(byte));
        scripts.write("bytes" + number + ".qxscr", content);
        const string file = string::fromUtf8("$bytes" + number);
        if (string::fromUtf8(runCall(scripts.name(), file + L"$quoted")).size() != 1)
            oddOnes += number + " ";
        EXPECT_NE(runCall(scripts.name(), file + L"$bare"), "null") << byte;
    }
    EXPECT_EQ(oddOnes, "10 13 59 92 "); // line ends, the semicolon and the backslash
}
