// What tools ask of scripts: functions of files listed and checked, files scrambled, statements described.
#include "qxScriptInspect.h"

#include "code/qxScriptFile.h"
#include "code/qxScriptFileSearch.h"
#include "code/qxScriptFunction.h"
#include "parser/qxScriptParsing.h"
#include "qxScriptException.h"
#include "statements/qxScriptBuiltins.h"

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

const wchar_t* wordsFor(resultRule rule)
{
    switch (rule) {
    case resultRule::replaces:
        return L"replaces";
    case resultRule::replacesIfAny:
        return L"replaces, where there is one";
    case resultRule::keepsType:
        return L"keeps the type";
    case resultRule::keepsTypeButOfDate:
        return L"keeps the type, but a date replaces";
    case resultRule::asValue:
        return L"that of the value";
    default:
        return L"none";
    }
}

// A reader of the file's definitions.
scrdefReader readerOf(const file& scriptFile)
{
    binaryBuffer content;
    if (!readScriptText(scriptFile, content))
        throw readFileException(scriptFile, nullptr);
    return scrdefReader(std::move(content), scriptFile);
}

definitionResult readNext(scrdefReader& reader, std::wstring_view& text, std::wstring_view& name)
{
    try {
        return readDefinition(reader, text, name);
    } catch (bool) { // a byte that stands for no character
        throw readFileException(reader.source(), nullptr);
    }
}

// Reads all definitions. `use` is given the text of each, its line, and the line of the definition whose
// place it takes; what is given is valid during the call.
template <class Use>
void readAll(scrdefReader& reader, scriptFileInfo& info, const Use& use)
{
    std::unordered_map<string, std::size_t> lines; // of the last definition of each name
    string lowered;
    std::wstring_view text;
    std::wstring_view name;
    definitionResult result = readNext(reader, text, name);
    for (; result == definitionResult::read; result = readNext(reader, text, name)) {
        lowered.assign(name);
        std::size_t& line = lines[lowered.toLower()];
        use(text, reader.lineNumber(), line);
        line = reader.lineNumber();
    }
    if (result != definitionResult::atEnd) {
        info.end =
            result == definitionResult::blankInName ? scriptFileEnd::blankInName : scriptFileEnd::withoutText;
        info.endLine = reader.lineNumber();
    }
}

void load(const file& scriptFile, const string& name, string&& body, std::span<const string> declarations)
{
    if (!function::parses(std::move(body), declarations))
        throw scriptFunctionNotFoundException(name.c_str(), scriptFile);
}

} // namespace

scriptFileInfo listFunctions(const file& scriptFile)
{
    scriptFileInfo info;
    scrdefReader reader = readerOf(scriptFile);
    readAll(reader, info, [&](std::wstring_view text, std::size_t line, std::size_t redefines) {
        scriptDefinition definition;
        cutDefinition(text, definition);
        info.functions.push_back({std::move(definition.name), std::move(definition.parameters),
                                  std::move(definition.body), line, redefines});
    });
    return info;
}

void checkFunction(const file& scriptFile, const functionInfo& checked)
{
    load(scriptFile, checked.name, string(checked.body), checked.parameters);
}

scriptFileInfo checkFunctions(const file& scriptFile, checkListener& listener)
{
    scriptFileInfo info;
    scriptDefinition definition;
    functionInfo found;
    scrdefReader reader = readerOf(scriptFile);
    readAll(reader, info, [&](std::wstring_view text, std::size_t line, std::size_t redefines) {
        cutDefinition(text, definition);
        found.name.swap(definition.name);
        found.line = line;
        found.redefines = redefines;
        try {
            load(scriptFile, found.name, std::move(definition.body), definition.parameters);
        } catch (const exception& failure) {
            return listener.checked(found, &failure);
        }
        listener.checked(found, nullptr);
    });
    return info;
}

file locateScriptFile(const string& basePath, const string& fileName)
{
    return findScriptFile(basePath, fileName).source;
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
    for (const builtinModule& module : builtinModules())
        module.forEachRow([&](const builtin& row) {
            all.push_back({row.name,
                           row.parameters,
                           module.name,
                           row.types ? row.types : L"",
                           row.summary,
                           {row.failures.begin(), row.failures.end()},
                           wordsFor(row.result),
                           true});
        });
    parsing::listOfHosts(all);
    return all;
}

} // namespace qx::script
