// What the tables of the modules tell of the statements: held against the parser and the other tests, and
// written out as the second half of docs/language.md.
#include "assertRecorder.h"
#include "documents.h"

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

TEST(reference, rowsAreComplete)
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

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

// The lines of the expectations, and of the tests where `sources`.
std::vector<std::string> testedLines(bool sources)
{
    std::vector<std::string> all;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(QX_TESTS_DIR)) {
        const fs::path& path = entry.path();
        if (path.extension() != ".expected" &&
            (!sources || path.extension() != ".cpp" || path.filename() == fs::path(__FILE__).filename()))
            continue;
        // A blank at the end of an expected line stands as \s.
        const std::string text = replaced(replaced(contentOf(path), "\\\"", "\""), "\\s\n", " \n");
        for (const std::string& line : linesOf(text))
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
const std::set<std::string> beyondScripts = {
    "getArrayFieldValue::parse: error parsing %s",
    "getFieldValue::parse: error parsing %s",
    "getRelation::createFrom: error parsing \"%s\"",
    "getTransientData::createFrom: error parsing \"%s\"",
    "hasTransientData::createFrom: error parsing \"%s\"",
    "internal error",
    "setFieldValue::parse: error parsing %s",
    "setRelation::createFrom: error parsing \"%s\"",
    "setTransientData::createFrom: error parsing \"%s\"",
    "unable to retrieve value for field \"%s\" (1)",
    "Error retrieving index (1)",
    "Error retrieving value for variable \"%s\"",
    "Error retrieving value(1)",
    "Error retrieving value(2)",
    "_while::createFrom: error parsing \"%s\"",
    "and::createFrom: error parsing %s",
    "anglefunc::createFrom: error parsing \"%s\"",
    "binaryoperation::createFrom: error parsing %s",
    "callFunction::createFrom: error setting codeId",
    "createArray:::createFrom: error parsing \"%s\"",
    "error retrieving first operand (2)",
    "error retrieving iterator",
    "error retrieving operand (2)",
    "error retrieving returnvalue",
    "error retrieving second operand (2)",
    "error retrieving string (1)",
    "error retrieving value",
    "infoOfDate::createFrom: error parsing \"%s\"",
    "infoOfTime::createFrom: error parsing \"%s\"",
    "invalid infotype %d",
    "invalid kind of string %d",
    "no function-ptr given",
    "rgb_make::createFrom: error parsing \"%s\"",
    "staticDate::execute: no function call",
    "strcat::createFrom: error parsing \"%s\"",
    "strlen::createFrom: error parsing \"%s\"",
    "unaryoperation::createFrom: error parsing %s",
};

TEST(reference, everyFailureIsAssertedBySomeTest)
{
    const std::vector<std::string> lines = testedLines(true);
    std::set<std::string> texts;
    for (const statementInfo& statement : builtInStatements())
        for (const qx::string& text : statement.failures)
            texts.insert(text.utf8());
    for (const std::string& text : texts) {
        const bool isAsserted = std::any_of(lines.begin(), lines.end(),
                                            [&](const std::string& line) { return holds(line, text); });
        EXPECT_NE(isAsserted, beyondScripts.contains(text)) << text;
    }
}

// What a statement fails with when it runs: `Error executing script "NAME(...)" (FAILURE)`.
TEST(reference, everyFailureThatTestsShowIsInTheRowOfItsStatement)
{
    std::map<std::string, std::vector<std::string>> failuresOf;
    for (const statementInfo& statement : builtInStatements())
        for (const qx::string& text : statement.failures)
            failuresOf[statement.name.utf8()].push_back(text.utf8());
    std::size_t seen = 0;
    for (const std::string& line : testedLines(false)) {
        const std::string start = "Error executing script \"";
        const std::size_t name = line.find(start) + start.size();
        if (line.find(start) == line.npos || line.find("\" (") == line.npos || line.ends_with("\" ()"))
            continue;
        const auto told = failuresOf.find(line.substr(name, line.find_first_of("<(", name + 1) - name));
        if (told == failuresOf.end())
            continue; // a statement of a host
        EXPECT_TRUE(std::any_of(told->second.begin(), told->second.end(), [&](const std::string& text) {
            return holds(line, text);
        })) << line;
        ++seen;
    }
    EXPECT_GT(seen, 200u);
}

// --- Data types ---

bool isTaken(const statementInfo& statement, const std::string& type)
{
    const auto parameters =
        statement.parameters == L"<key type>()"
            ? 0
            : 1 + std::count(statement.parameters.begin(), statement.parameters.end(), L',');
    qx::string call = statement.name + L"<" + qx::string::fromUtf8(type) + L">(";
    for (std::ptrdiff_t i = 0; i < parameters; ++i)
        call += i == 0 ? L"\"1\"" : L", \"1\"";
    try {
        return static_cast<bool>(
            qx::sharedPtr<script::statement>(script::statement::createFrom(call + L")", 0)));
    } catch (const qx::exception&) {
        return false;
    }
}

TEST(reference, statementsTakeTheTypesThatTheyTell)
{
    const assertRecorder recorder;
    const std::vector<std::string> all = {"void", "bool",  "short",  "int",       "long",      "ushort",
                                          "uint", "ulong", "float",  "double",    "string",    "date",
                                          "time", "array", "binary", "timestamp", "unknownptr"};
    for (const statementInfo& statement : builtInStatements()) {
        if (statement.types.empty() || statement.name.starts_with(L"<")) // `<` cannot be called with a type
            continue;
        const bool isAny = statement.types == L"any";
        std::vector<std::string> told = isAny ? all : wordsOf(statement.types.utf8());
        std::vector<std::string> tried = all;
        if (!isAny) // words of statements on objects alone
            tried.insert(tried.end(), {"generic", "ref"});
        std::vector<std::string> taken;
        std::copy_if(tried.begin(), tried.end(), std::back_inserter(taken), [&](const std::string& type) {
            // A date that moves wants a unit.
            return isTaken(statement, type) || (type == "date" && isTaken(statement, "date, days"));
        });
        std::sort(told.begin(), told.end());
        std::sort(taken.begin(), taken.end());
        EXPECT_EQ(told, taken) << statement.name.utf8();
    }
}

// --- docs/language.md ---

constexpr const char* generatedFromHere =
    "<!-- From here on written by `./dev docs` from the tables of the modules. -->\n";

std::vector<std::string> reachableFailures(const statementInfo& statement)
{
    std::vector<std::string> texts;
    for (const qx::string& text : statement.failures)
        if (!beyondScripts.contains(text.utf8()))
            texts.push_back(text.utf8());
    return texts;
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
    const std::vector<std::string> failures = reachableFailures(any);
    if (!failures.empty())
        entry.append("\nFailures:\n\n");
    for (const std::string& text : failures)
        entry.append("    ").append(text).append("\n");
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

TEST(reference, languageDocumentIsUpToDate)
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
