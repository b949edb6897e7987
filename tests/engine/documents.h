// The texts of this tree that tests read: sources, documents, examples, and what the library tells of itself.
#pragma once

#include "support/expectations.h"

#include <qxScriptInspect.h>

inline std::filesystem::path treeRoot()
{
    return std::filesystem::path(QX_TESTS_DIR).parent_path();
}

inline std::filesystem::path scriptsDirectory()
{
    return treeRoot() / "tests/cases";
}

// Without those that other tests have made.
inline std::vector<qx::script::statementInfo> builtInStatements()
{
    std::vector<qx::script::statementInfo> all = qx::script::listStatements();
    std::erase_if(all, [](const qx::script::statementInfo& one) { return !one.isBuiltIn; });
    return all;
}

// What stands between the commas of a list.
inline std::vector<std::string> wordsOf(std::string list)
{
    std::vector<std::string> words;
    for (std::size_t end = 0; !list.empty(); list.erase(0, end == list.npos ? end : end + 2)) {
        end = list.find(", ");
        words.push_back(list.substr(0, end));
    }
    return words;
}

// The statements of a table in tests/cases.
inline std::vector<std::string> rowsOf(const std::string& table)
{
    std::vector<std::string> rows = linesOf(contentOf(tableFile("cases/" + table)));
    std::erase_if(rows,
                  [](const std::string& line) { return line.empty() || line[0] == ' ' || line[0] == '#'; });
    return rows;
}
