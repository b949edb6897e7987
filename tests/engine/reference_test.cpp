// What the tables of the modules tell of the statements: held against the sources, the parser and the other
// tests, and written out as the second half of docs/language.md.
#include "assertRecorder.h"
#include "documents.h"

#include <qxScript>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

namespace
{

namespace fs = std::filesystem;
namespace script = qx::script;
using script::statementInfo;

// Of the calculation of times, to which no statement leads.
const std::set<std::string> failuresWithoutRow = {
    "timeCalculation::createFrom: error parsing \"%s\"",
    "timeCalculation::createFrom: missing second datatype",
    "timeCalculation::createFrom: number of parameters < 2",
    "unable to retrieve time",
};

std::set<std::string> documentedFailures()
{
    std::set<std::string> texts = failuresWithoutRow;
    for (const statementInfo& statement : builtInStatements())
        for (const qx::string& text : statement.failures)
            texts.insert(text.utf8());
    return texts;
}

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

// The code of a source in front of its table, without the lines that are comments.
std::string codeOf(const std::string& source)
{
    std::string code;
    for (const std::string& line : linesOf(source.substr(0, source.find("// --- Table ---")))) {
        const std::size_t first = line.find_first_not_of(' ');
        if (first != std::string::npos && line.compare(first, 2, "//") != 0)
            code.append(line, first).append(" ");
    }
    return code;
}

bool isSentence(const std::string& text)
{
    const auto areLetters = [](char a, char b) { return a >= 'a' && a <= 'z' && b >= 'a' && b <= 'z'; };
    return text.find(' ') != std::string::npos &&
           std::adjacent_find(text.begin(), text.end(), areLetters) != text.end();
}

// The wide literals of some code that hold a word and a blank.
std::vector<std::string> sentencesIn(const std::string& code)
{
    const std::string joined = replaced(code, "\" L\"", ""); // parts of one literal
    std::vector<std::string> sentences;
    for (std::size_t at = joined.find("L\""); at != std::string::npos; at = joined.find("L\"", at)) {
        const std::size_t begin = at + 2;
        for (at = begin; joined.at(at) != '"'; ++at)
            at += joined[at] == '\\' ? 1u : 0u;
        const std::string text = replaced(joined.substr(begin, at - begin), "\\\"", "\"");
        if (isSentence(text))
            sentences.push_back(text);
        ++at;
    }
    return sentences;
}

TEST(reference, everyFailureOfAModuleIsInARow)
{
    const std::set<std::string> documented = documentedFailures();
    std::size_t seen = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(treeRoot() / "libs/script/src/modules")) {
        const std::string source = contentOf(entry.path());
        if (source.find("execError(this") == std::string::npos &&
            source.find("refuse(L") == std::string::npos)
            continue; // the engine, whose failures belong to no statement
        if (entry.path().filename() == "qxScriptHost.cpp")
            continue; // statements of hosts have no rows
        for (const std::string& text : sentencesIn(codeOf(source))) {
            EXPECT_TRUE(documented.contains(text)) << entry.path().filename() << ": " << text;
            ++seen;
        }
    }
    EXPECT_GT(seen, 100u);
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
    std::vector<std::string> asserted;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(QX_TESTS_DIR)) {
        const fs::path& path = entry.path();
        if (path.extension() != ".expected" &&
            (path.extension() != ".cpp" || path.filename() == fs::path(__FILE__).filename()))
            continue;
        // A blank at the end of an expected line stands as \s.
        const std::string text = replaced(replaced(contentOf(path), "\\\"", "\""), "\\s\n", " \n");
        for (const std::string& line : linesOf(text))
            asserted.push_back(line);
    }
    for (const std::string& text : documentedFailures()) {
        const bool isAsserted = std::any_of(asserted.begin(), asserted.end(),
                                            [&](const std::string& line) { return holds(line, text); });
        EXPECT_NE(isAsserted, beyondScripts.contains(text)) << text;
    }
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

bool tellTheSame(const statementInfo& a, const statementInfo& b)
{
    return a.parameters == b.parameters && a.types == b.types && a.summary == b.summary &&
           a.result == b.result;
}

// The entry of one statement, or of several that differ in their names alone.
std::string entryFor(const std::string& names, const statementInfo& statement)
{
    std::string entry = "\n### " + names + "\n\n`" + statement.name.utf8() + statement.parameters.utf8() +
                        "`\n\n" + statement.summary.utf8() + "\n";
    if (!statement.types.empty())
        entry.append("\nTypes: ").append(statement.types.utf8()).append(".\n");
    entry.append("\nResult: ").append(statement.result.utf8()).append(".\n");
    if (!statement.failures.empty())
        entry.append("\nFailures:\n\n");
    for (const qx::string& text : statement.failures)
        entry.append("    ").append(text.utf8()).append("\n");
    return entry;
}

std::string generatedReference()
{
    std::string text;
    qx::string module;
    const std::vector<statementInfo> all = builtInStatements();
    for (auto at = all.begin(); at != all.end();) {
        if (at->module != module) {
            module = at->module;
            text.append("\n## Module ").append(module.utf8()).append("\n");
        }
        std::string names;
        auto end = at;
        for (; end != all.end() && tellTheSame(*at, *end); ++end)
            names.append(names.empty() ? "`" : ", `").append(end->name.utf8()).append("`");
        text += entryFor(names, *at);
        at = end;
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
