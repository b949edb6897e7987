#include "qxScriptInspect.h"

#include "qxScriptBuiltins.h"
#include "qxScriptException.h"
#include "qxScriptFile.h"
#include "qxScriptFunction.h"

#include "qxSystem.h"

#include <unordered_map>

namespace qx::script
{

namespace
{

// A name beside `target` that nothing has yet.
string unusedNameBeside(const file& target)
{
    file candidate;
    for (int number = 0; number == 0 || candidate.exists(); ++number)
        candidate = file(target.fullName() + L".part" + std::to_wstring(number));
    return candidate.fullName();
}

// The texts of all lists, one after the other.
std::vector<string> linesOf(const failureLists& failures)
{
    std::vector<string> all;
    for (const wchar_t* list : failures.lists) {
        std::vector<string> lines;
        if (list)
            string(list).splitAt(L"\n", lines, false);
        all.insert(all.end(), lines.begin(), lines.end());
    }
    return all;
}

} // namespace

scriptFileInfo listFunctions(const file& scriptFile)
{
    scriptFileInfo info;
    binaryBuffer text;
    if (!readScriptText(scriptFile, text))
        throw readFileException(scriptFile, nullptr);
    try {
        scrdefReader reader(std::move(text), scriptFile);
        std::unordered_map<string, std::size_t> lines; // of the last definition of each name
        scriptDefinition definition;
        definitionResult result = readDefinition(reader, definition);
        for (; result == definitionResult::read; result = readDefinition(reader, definition)) {
            std::size_t& line = lines[definition.name.lower()];
            info.functions.push_back({std::move(definition.name), std::move(definition.parameters),
                                      std::move(definition.body), definition.line, line});
            line = definition.line;
        }
        if (result != definitionResult::atEnd) {
            info.end = result == definitionResult::blankInName ? scriptFileEnd::blankInName
                                                               : scriptFileEnd::withoutText;
            info.endLine = definition.line;
        }
    } catch (bool) { // a byte that stands for no character
        throw readFileException(scriptFile, nullptr);
    }
    return info;
}

void checkFunction(const file& scriptFile, const functionInfo& checked)
{
    if (!function::parse(checked.body, checked.parameters, scriptFile, timestamp()))
        throw scriptFunctionNotFoundException(checked.name.c_str(), scriptFile);
}

file locateScriptFile(const string& basePath, const string& fileName)
{
    return findScriptFile(basePath, fileName);
}

bool scrambleFile(const file& from, const file& to)
{
    binaryBuffer text;
    if (!text.readFromFile(from, [] { return false; }))
        throw readFileException(from, nullptr);
    scramble(text);
    const std::string_view bytes(text.data() ? text.data() : "", text.logicalLength());
    system& current = system::current();
    const string part = unusedNameBeside(to);
    const bool isWritten = current.appendToFile(part, bytes) == appendResult::written &&
                           current.copyFile(part, to.fullName(), true);
    current.removeFile(part);
    return isWritten;
}

std::vector<statementInfo> listStatements()
{
    std::vector<statementInfo> all;
    for (const builtinModule* module : builtinModules())
        for (const builtin& row : module->rows)
            all.push_back({row.name, row.parameters, module->name, row.types ? row.types : L"", row.summary,
                           linesOf(row.failures)});
    return all;
}

} // namespace qx::script
