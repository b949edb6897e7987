// What the tables of the modules tell of the statements: held against the parser and the other tests, and
// written out as the second half of docs/language.md.
#include "assertRecorder.h"
#include "documents.h"
#include "valueText.h"

#include <qxScript>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace
{

namespace fs = std::filesystem;
namespace script = qx::script;
using script::statementInfo;

TEST(reference, rows_are_complete)
{
    for (const statementInfo& statement : builtInStatements()) {
        SCOPED_TRACE(statement.name.utf8());
        EXPECT_TRUE(statement.summary.ends_with(L"."));
        EXPECT_EQ(statement.parameters.starts_with(L"<"), !statement.types.empty());
        const std::set<qx::string> once(statement.failures.begin(), statement.failures.end());
        EXPECT_EQ(once.size(), statement.failures.size());
    }
}

// --- Failure texts ---

// The lines of the expectations, and of the tests where `sources`.
std::vector<std::string> testedLines(bool sources)
{
    std::vector<std::string> all;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(QX_TESTS_DIR)) {
        const fs::path extension = entry.path().extension();
        if (extension != ".expected" && (!sources || extension != ".cpp"))
            continue;
        qx::string text = qx::string::fromUtf8(contentOf(entry.path()));
        for (const std::string& line : linesOf(text.replace(L"\\\"", L"\"").replace(L"\u2420", L" ").utf8()))
            all.push_back(line);
    }
    return all;
}

// Whether `line` holds the text, with anything in place of each %s.
bool holds(const std::string& line, const std::string& text)
{
    std::size_t from = 0;
    for (std::size_t piece = 0; piece != std::string::npos;) {
        const std::size_t next = text.find("%s", piece);
        const std::string part = text.substr(piece, next == std::string::npos ? next : next - piece);
        const std::size_t found = line.find(part, from);
        if (found == std::string::npos)
            return false;
        from = found + part.size();
        piece = next == std::string::npos ? next : next + 2;
    }
    return true;
}

// Nothing that a script says brings these about: they stand for a provider of values that cannot be made, or
// that neither gives a value nor throws, and for a function or kind that no row of a table gives.
bool isBeyondScripts(const qx::string& failure)
{
    static const std::vector<std::string> all =
        linesOf(contentOf(treeRoot() / "tests/engine/beyond_scripts.txt"));
    return std::find(all.begin(), all.end(), failure.utf8()) != all.end();
}

bool isHeld(const qx::string& text, const std::vector<std::string>& lines)
{
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return holds(line, text.utf8()); });
}

TEST(reference, tests_assert_every_failure)
{
    const std::vector<std::string> lines = testedLines(true);
    for (const statementInfo& statement : builtInStatements())
        for (const qx::string& text : statement.failures)
            EXPECT_NE(isHeld(text, lines), isBeyondScripts(text)) << text.utf8();
}

// What a statement fails with when it runs: `Error executing script "NAME(...)" (FAILURE)`.
TEST(reference, rows_tell_every_failure_that_tests_show)
{
    std::map<std::string, texts> failuresOf;
    for (const statementInfo& statement : builtInStatements())
        failuresOf[statement.name.utf8()] = statement.failures;
    std::size_t seen = 0;
    const std::string start = "Error executing script \"";
    for (const std::string& line : testedLines(false)) {
        const std::size_t at = line.find(start);
        if (at == line.npos || line.find("\" (") == line.npos || line.ends_with("\" ()"))
            continue;
        const std::size_t name = at + start.size();
        const auto told = failuresOf.find(line.substr(name, line.find_first_of("<(", name + 1) - name));
        if (told == failuresOf.end())
            continue; // a statement of a host
        EXPECT_TRUE(std::any_of(told->second.begin(), told->second.end(), [&](const qx::string& text) {
            return isHeld(text, {line});
        })) << line;
        ++seen;
    }
    EXPECT_GT(seen, 200u);
}

// --- Data types ---

bool isTaken(const statementInfo& statement, const qx::string& type)
{
    const qx::string call =
        statement.name + L"<" + type + L">" + statement.parameters.substr(statement.parameters.find(L'('));
    bool isMade = false;
    failureOf([&] {
        isMade = static_cast<bool>(qx::sharedPtr<script::statement>(script::statement::createFrom(call, 0)));
    });
    return isMade;
}

TEST(reference, statements_take_the_types_that_they_tell)
{
    const assertRecorder recorder;
    const std::string types =
        "void, bool, short, int, long, ushort, uint, ulong, float, double, string, date, "
        "time, array, binary, timestamp, unknownptr";
    for (const statementInfo& statement : builtInStatements()) {
        if (statement.types.empty() || statement.name.starts_with(L"<")) // `<` cannot be called with a type
            continue;
        const bool isAny = statement.types == L"any";
        const std::vector<std::string> told = wordsOf(statement.types.utf8());
        // Words of statements on objects alone, and a date that moves wants a unit.
        for (const std::string& type : wordsOf(isAny ? types : types + ", generic, ref"))
            EXPECT_EQ(isTaken(statement, qx::string::fromUtf8(type)) ||
                          (type == "date" && isTaken(statement, L"date, days")),
                      isAny || std::count(told.begin(), told.end(), type) > 0)
                << statement.name.utf8() << " " << type;
    }
}

// --- docs/language.md ---

constexpr const char* generatedFromHere =
    "<!-- From here on written by `./dev docs` from the tables of the modules. -->\n";

texts reachableFailures(const statementInfo& statement)
{
    texts reachable = statement.failures;
    std::erase_if(reachable, isBeyondScripts);
    return reachable;
}

// Whether both fail with the same, so that this is told once.
bool areOneFamily(const statementInfo& a, const statementInfo& b)
{
    return a.module == b.module && a.types == b.types && a.result == b.result &&
           reachableFailures(a) == reachableFailures(b) && !reachableFailures(a).empty();
}

using family = std::vector<statementInfo>;

std::vector<family> families()
{
    std::vector<family> all;
    for (const statementInfo& statement : builtInStatements()) {
        const auto same = std::find_if(all.begin(), all.end(),
                                       [&](const family& f) { return areOneFamily(f[0], statement); });
        (same == all.end() ? all.emplace_back() : *same).push_back(statement);
    }
    return all;
}

std::string entryFor(const family& members)
{
    std::string names;
    for (const statementInfo& member : members)
        names.append(names.empty() ? "`" : ", `").append(member.name.utf8()).append("`");
    std::string entry = "\n### " + names + "\n";
    for (std::size_t i = 0; i < members.size(); ++i) {
        entry += "\n`" + members[i].name.utf8() + members[i].parameters.utf8() + "`\n";
        if (i + 1 == members.size() || members[i + 1].summary != members[i].summary)
            entry += "\n" + members[i].summary.utf8() + "\n";
    }
    const statementInfo& any = members[0];
    if (!any.types.empty())
        entry.append("\nTypes: ").append(any.types.utf8()).append(".\n");
    entry.append("\nResult: ").append(any.result.utf8()).append(".\n");
    const texts failures = reachableFailures(any);
    if (!failures.empty())
        entry.append("\nFailures:\n\n");
    for (const qx::string& text : failures)
        entry.append("    ").append(text.utf8()).append("\n");
    return entry;
}

// Module by module: first those that every script needs.
std::string generatedReference()
{
    std::vector<qx::string> modules = {L"control", L"variable", L"operator", L"string"};
    const std::vector<family> all = families();
    for (const family& members : all)
        if (std::find(modules.begin(), modules.end(), members[0].module) == modules.end())
            modules.push_back(members[0].module);
    std::string text;
    for (const qx::string& module : modules) {
        text.append("\n## Module ").append(module.utf8()).append("\n");
        for (const family& members : all)
            if (members[0].module == module)
                text += entryFor(members);
    }
    return text;
}

TEST(reference, language_document_is_up_to_date)
{
    const fs::path path = treeRoot() / "docs/language.md";
    const std::string now = contentOf(path);
    const std::size_t chapters = now.find(generatedFromHere);
    ASSERT_NE(chapters, std::string::npos);
    const std::string wanted = now.substr(0, chapters) + generatedFromHere + generatedReference();
    if (std::getenv("QX_REWRITE_REFERENCE"))
        std::ofstream(path, std::ios::binary) << wanted;
    EXPECT_TRUE(contentOf(path) == wanted) << "docs/language.md is stale; ./dev docs writes it anew";
}

} // namespace
