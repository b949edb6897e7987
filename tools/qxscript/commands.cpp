// What each command does, and the one table of them.
#include "commands.h"

#include "commandLineSystem.h"
#include "outputText.h"
#include "report.h"

#include <qxDirectory.h>
#include <qxScript>

#include <algorithm>

namespace
{

using qx::file;
using qx::genericValue;
using qx::string;
namespace script = qx::script;

void printValue(const genericValue& value)
{
    string text;
    if (outputText(value, text))
        printLine(text);
}

// Runs a code call with the arguments that the command passes on.
int execute(const string& base, const string& codeCall, const commandCall& call)
{
    std::vector<genericValue> arguments(call.passedOn.begin(), call.passedOn.end());
    script::scriptcontext context;
    genericValue result;
    if (!script::codeManager::instance()->executeFunction(base, codeCall, context, arguments, result)) {
        printError(L"qxscript: the engine does not carry out \"" + codeCall + L"\"");
        return 1;
    }
    printValue(result);
    return 0;
}

// A script file as it was named on the command line: what its code call says, and which files are meant.
class namedScript
{
public:
    explicit namedScript(const commandCall& call) : mGiven(call.words[0])
    {
        const qx::fsEntryName given(mGiven);
        const string extension = given.extension(0).lower();
        const bool isComplete = extension == L"qxscr" || extension == L"qxsscr";
        const int flags = isComplete ? qx::nameWithoutExtension : 0;
        if (call.base) {
            mBase = *call.base;
            mCallName = given.name(flags | qx::nameWithPath);
        } else {
            mBase = qx::directory(given.path(0)).fullName();
            mCallName = given.name(flags);
        }
        if (isStandardInput()) {
            mMeant.emplace_back(mBase, mCallName + L".qxscr");
            return;
        }
        const string dotted = isComplete ? L"." + given.extension(0) : string();
        mMeant.emplace_back(mBase, mCallName + dotted);
        if (!isComplete) {
            mMeant.emplace_back(mBase, mCallName + L".qxscr");
            mMeant.emplace_back(mBase, mCallName + L".qxsscr");
        }
    }

    // The text of a script file that stands in no file: it is called as the file `-.qxscr` in the base path.
    bool isStandardInput() const { return mGiven == L"-"; }
    // The file that is meant first.
    const file& meant() const { return mMeant.front(); }
    const string& base() const { return mBase; }
    const string& callName() const { return mCallName; }

    // Whether `found` is a file that was meant: one that exists as it was written, else one that is equal but
    // for case.
    bool means(const file& found) const
    {
        bool exists = false;
        for (const file& meant : mMeant) {
            if (meant == found)
                return true;
            exists = exists || meant.exists();
        }
        if (exists)
            return false;
        for (const file& meant : mMeant)
            if (meant.fullName().lower() == found.fullName().lower())
                return true;
        return false;
    }

private:
    string mGiven;
    string mBase;
    string mCallName;
    std::vector<file> mMeant;
};

string shownParameters(const script::functionInfo& function)
{
    string list;
    for (string declaration : function.parameters) {
        list += list.empty() ? L"" : L", ";
        list += declaration.deleteLeading(L" \t").deleteTrailing(L" \t");
    }
    return L"(" + list + L")";
}

string place(const string& name, std::size_t line)
{
    return name + L":" + std::to_wstring(line) + L": ";
}

// These report what is wrong with the outline of a script file, and give the number of reports.
int reportRedefinition(const string& name, const script::functionInfo& function)
{
    if (function.redefines == 0)
        return 0;
    printError(place(name, function.line) + function.name + L" takes the place of the definition in line " +
               std::to_wstring(function.redefines));
    return 1;
}
int reportEnd(const string& name, const script::scriptFileInfo& info)
{
    if (info.end == script::scriptFileEnd::complete)
        return 0;
    const bool isBlank = info.end == script::scriptFileEnd::blankInName;
    printError(place(name, info.endLine) +
               (isBlank ? L"a blank before the opening bracket" : L"an empty definition") +
               L" ends the file: nothing from here on exists");
    return 1;
}

// Gives the number of failures, each of which is reported.
int checkFile(const string& name)
{
    const file scriptFile(name);
    if (!scriptFile.exists())
        throw qx::fileNotFoundException(scriptFile);
    int failures = 0;
    const script::scriptFileInfo info = script::checkFunctions(
        scriptFile, [&](const script::functionInfo& function, const qx::exception* failure) {
            failures += reportRedefinition(name, function);
            if (failure) {
                printError(place(name, function.line) + function.name);
                printFailure(*failure, 1);
                ++failures;
            }
        });
    failures += reportEnd(name, info);
    return failures;
}

// Standard input, as UTF-8, without what a file or an editor puts around its text.
string trimmedInput()
{
    constexpr const wchar_t* around = L"\uFEFF \t\r\n";
    return string::fromUtf8(standardInput()).deleteLeading(around).deleteTrailing(around);
}

// Gives the exit status for a text that made no statement. The parser takes that for no failure, and tells of
// the parts of a block only.
int reportNoStatement(const string& text)
{
    constexpr std::size_t most = 60;
    const string content = string(text).deleteAll(L" \t\r\n");
    if (content.empty() || content == L"{}")
        return 0;
    const string shown = text.size() > most ? string(text.substr(0, most) + L"...") : text;
    printError(L"qxscript: cannot be read as a statement: " + inOneLine(shown));
    return 1;
}

void describe(const script::statementInfo& statement)
{
    printLine(statement.name + statement.parameters);
    printLine(statement.summary);
    printLine(L"module: " + statement.module);
    if (!statement.types.empty())
        printLine(L"types: " + statement.types);
    printLine(L"result: " + statement.result);
    if (!statement.failures.empty())
        printLine(L"failures:");
    for (const string& text : statement.failures)
        printLine(L"  " + text);
}

// --- The commands ---

int runFunction(const commandCall& given)
{
    const string& written = given.words[0];
    const namedScript named(given);
    if (named.callName().find(L'$') != string::npos) {
        printError(L"qxscript: a file with \"$\" in its name cannot be called: " + written);
        return 1;
    }
    if (named.isStandardInput())
        commandLineSystem::instance().provide(named.meant(), standardInput());
    const string call = L"script$" + named.callName() + L"$" + given.words[1];
    script::eCodeType type = script::codeTypeScript;
    string fileName;
    string function;
    if (script::codeManager::instance()->parseCodeCall(call, type, fileName, function)) {
        const file found = script::locateScriptFile(named.base(), fileName);
        if (!named.means(found)) {
            printError(L"qxscript: the search finds " + found.fullName() + L" and not " +
                       (named.isStandardInput() ? string(L"standard input") : written));
            return 1;
        }
    }
    return execute(named.base(), call, given);
}

int runCall(const commandCall& given)
{
    return execute(given.base.value_or(string()), given.words[0], given);
}

int evaluate(const commandCall& given)
{
    const string text = given.words[0] == L"-" ? trimmedInput() : given.words[0];
    const qx::sharedPtr<script::statement> parsed(script::statement::createFrom(text, 0));
    if (!parsed)
        return reportNoStatement(text);
    script::scriptcontext context;
    genericValue result;
    parsed->exec(context, result);
    const qx::sharedPtr<genericValue> returned =
        context.parameterAddress(script::scriptcontext::returnparam());
    printValue(returned ? *returned : result);
    return 0;
}

int checkFiles(const commandCall& given)
{
    int status = 0;
    for (const string& name : given.words) {
        try {
            if (checkFile(name) > 0)
                status = 1;
        } catch (const qx::exception& failure) {
            printFailure(failure);
            status = 1;
        }
    }
    return status;
}

int showFunctions(const commandCall& given)
{
    const string& name = given.words[0];
    const file scriptFile(name);
    if (!scriptFile.exists())
        throw qx::fileNotFoundException(scriptFile);
    const script::scriptFileInfo info = script::listFunctions(scriptFile);
    for (const script::functionInfo& function : info.functions)
        printLine(function.name + shownParameters(function));
    for (const script::functionInfo& function : info.functions)
        reportRedefinition(name, function);
    reportEnd(name, info);
    return 0;
}

int showStatements(const commandCall& given)
{
    const string name = given.words.empty() ? string() : given.words[0];
    const string wanted = name.lower();
    bool isFound = wanted.empty();
    for (const script::statementInfo& statement : script::listStatements()) {
        if (wanted.empty()) {
            printLine(statement.name + statement.parameters);
        } else if (statement.name == wanted) {
            isFound = true;
            describe(statement);
        }
    }
    if (!isFound)
        printError(L"qxscript: there is no statement \"" + name + L"\"");
    return isFound ? 0 : 1;
}

int scrambleCopy(const commandCall& given)
{
    const file target(given.words[1]);
    if (!script::scrambleFile(file(given.words[0]), target)) {
        printError(L"qxscript: cannot write " + target.fullName());
        return 1;
    }
    return 0;
}

constexpr command commands[] = {
    {"run",
     "Run a function of a script file; further arguments go to it as they are",
     {{"FILE", commandParameter::required,
       "The script file, with or without its extension; - reads standard input"},
      {"FUNCTION", commandParameter::required, "The function"}},
     "Where FILE is looked for; without it FILE's own directory",
     true,
     runFunction},
    {"call",
     "Run a code call; further arguments go to it as they are",
     {{"CALL", commandParameter::required, "type$file$function"}},
     "Where the file of the call is looked for first",
     true,
     runCall},
    {"eval",
     "Run a text",
     {{"TEXT", commandParameter::required, "The text; - reads standard input"}},
     nullptr,
     false,
     evaluate},
    {"check",
     "Load every function of script files and report every failure",
     {{"FILE", commandParameter::several, "The script files"}},
     nullptr,
     false,
     checkFiles},
    {"functions",
     "List the functions of a script file",
     {{"FILE", commandParameter::required, "The script file"}},
     nullptr,
     false,
     showFunctions},
    {"statements",
     "List the statements, or tell about one",
     {{"NAME", commandParameter::optional, "The statement"}},
     nullptr,
     false,
     showStatements},
    {"scramble",
     "Scramble a script file, or restore a scrambled one",
     {{"IN", commandParameter::required, "The file to read"},
      {"OUT", commandParameter::required, "The file to write"}},
     nullptr,
     false,
     scrambleCopy},
};

} // namespace

std::size_t command::parameterCount() const
{
    return static_cast<std::size_t>(std::ranges::count_if(parameters, [](const commandParameter& parameter) {
        return parameter.wanted != commandParameter::none;
    }));
}

std::span<const command> allCommands()
{
    return commands;
}

const command* findCommand(std::string_view word)
{
    const auto found = std::ranges::find(commands, word, &command::name);
    return found == std::end(commands) ? nullptr : found;
}
