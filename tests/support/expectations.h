// Tables of cases in files NAME.expected beside their tests. A case stands at the start of a line, what comes
// of it is indented below, and `# ` begins a comment. Signs stand for what lines cannot show: ␤ ␍ ␉ and ␀ for
// the control characters, ␠ for a blank at either end, ∅ for nothing.
//
// With QX_REWRITE_EXPECTATIONS set the files are written anew; the difference is read like code.
#pragma once

#include <qxString.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

inline std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

inline std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

inline std::filesystem::path tableFile(const std::string& table)
{
    return std::filesystem::path(QX_TESTS_DIR) / (table + ".expected");
}

inline void expectContent(const std::filesystem::path& expected, const std::string& content)
{
    if (std::getenv("QX_REWRITE_EXPECTATIONS"))
        std::ofstream(expected, std::ios::binary) << content;
    EXPECT_EQ(content, contentOf(expected));
}

// Signs in place of what they stand for, or the other way round.
inline qx::string exchanged(qx::string text, bool toSigns)
{
    static const std::pair<qx::string, qx::string> signs[] = {
        {L"\n", L"\u2424"}, {L"\r", L"\u240D"}, {L"\t", L"\u2409"}, {{L'\0'}, L"\u2400"}};
    for (const auto& [plain, sign] : signs)
        text.replace(toSigns ? plain : sign, toSigns ? sign : plain);
    if (!toSigns)
        return text.replace(L"\u2420", L" ").replace(L"\u2205", L"");
    if (text.empty())
        return L"\u2205";
    if (text.ends_with(L" "))
        text.replace(text.size() - 1, 1, L"\u2420");
    return text;
}

// `outcomeOf` gives the lines that come of a case. `lines` are the cases; those of outcomes are passed over.
template <class OutcomeOf>
void expectOutcomes(const std::string& table, const std::vector<std::string>& lines,
                    const OutcomeOf& outcomeOf)
{
    std::string now;
    for (const std::string& line : lines) {
        if (line.starts_with("    "))
            continue;
        now += line + "\n";
        if (!line.empty() && !line.starts_with("# "))
            for (const qx::string& outcome : outcomeOf(exchanged(qx::string::fromUtf8(line), false)))
                now += "    " + exchanged(outcome, true).utf8() + "\n";
    }
    expectContent(tableFile(table), now);
}

// Of the cases that stand in the table.
template <class OutcomeOf>
void expectOutcomes(const std::string& table, const OutcomeOf& outcomeOf)
{
    expectOutcomes(table, linesOf(contentOf(tableFile(table))), outcomeOf);
}
