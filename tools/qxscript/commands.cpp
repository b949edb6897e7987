#include "commands.h"

#include "commandLineSystem.h"
#include "outputText.h"
#include "report.h"

#include <qxDirectory.h>
#include <qxScript>

namespace
{

using qx::file;
using qx::genericValue;
using qx::string;
namespace script = qx::script;

void printValue(const genericValue& value)
{
    string text;
    if (outputText(value, text)) {
        printLine(text);
    }
}

int execute(const string& base, const string& call, const std::vector<string>& texts)
{
    std::vector<genericValue> arguments;
    arguments.reserve(texts.size());
    for (const string& text : texts) {
        arguments.emplace_back(text);
    }
    script::scriptcontext context;
    genericValue result;
    if (!script::codeManager::instance()->executeFunction(base, call, context, arguments, result)) {
        printError(L"qxscript: the engine does not carry out \"" + call + L"\"");
        return 1;
    }
    printValue(result);
    return 0;
}

// A script file as it was named on the command line: what its code call says, and which files are meant.
class namedScript
{
public:
    namedScript(const scriptCall& wanted) : mGiven(wanted.file)
    {
        const qx::fsEntryName given(wanted.file);
        const string extension = given.extension(0).lower();
        const bool isComplete = extension == L"qxscr" || extension == L"qxsscr";
        const int flags = isComplete ? qx::nameWithoutExtension : 0;
        if (wanted.hasBase) {
            mBase = wanted.base;
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
            if (meant == found) {
                return true;
            }
            exists = exists || meant.exists();
        }
        if (exists) {
            return false;
        }
        for (const file& meant : mMeant) {
            if (meant.fullName().lower() == found.fullName().lower()) {
                return true;
            }
        }
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
    if (function.redefines == 0) {
        return 0;
    }
    printError(place(name, function.line) + function.name + L" takes the place of the definition in line " +
               std::to_wstring(function.redefines));
    return 1;
}
int reportEnd(const string& name, const script::scriptFileInfo& info)
{
    if (info.end == script::scriptFileEnd::complete) {
        return 0;
    }
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
    if (!scriptFile.exists()) {
        throw qx::fileNotFoundException(scriptFile);
    }
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
    if (content.empty() || content == L"{}") {
        return 0;
    }
    const string shown = text.size() > most ? string(text.substr(0, most) + L"...") : text;
    printError(L"qxscript: cannot be read as a statement: " + inOneLine(shown));
    return 1;
}

void describe(const script::statementInfo& statement)
{
    printLine(statement.name + statement.parameters);
    printLine(statement.summary);
    printLine(L"module: " + statement.module);
    if (!statement.types.empty()) {
        printLine(L"types: " + statement.types);
    }
    printLine(L"result: " + statement.result);
    if (!statement.failures.empty()) {
        printLine(L"failures:");
    }
    for (const string& text : statement.failures) {
        printLine(L"  " + text);
    }
}

} // namespace

int runFunction(const scriptCall& wanted)
{
    const namedScript named(wanted);
    if (named.callName().find(L'$') != string::npos) {
        printError(L"qxscript: a file with \"$\" in its name cannot be called: " + wanted.file);
        return 1;
    }
    if (named.isStandardInput()) {
        commandLineSystem::instance().provide(named.meant(), standardInput());
    }
    const string call = L"script$" + named.callName() + L"$" + wanted.function;
    script::eCodeType type = script::codeTypeScript;
    string fileName;
    string function;
    if (script::codeManager::instance()->parseCodeCall(call, type, fileName, function)) {
        const file found = script::locateScriptFile(named.base(), fileName);
        if (!named.means(found)) {
            printError(L"qxscript: the search finds " + found.fullName() + L" and not " +
                       (named.isStandardInput() ? string(L"standard input") : wanted.file));
            return 1;
        }
    }
    return execute(named.base(), call, wanted.arguments);
}

int runCall(const scriptCall& wanted)
{
    return execute(wanted.base, wanted.call, wanted.arguments);
}

int evaluate(const string& given)
{
    const string text = given == L"-" ? trimmedInput() : given;
    const qx::sharedPtr<script::statement> parsed(script::statement::createFrom(text, 0));
    if (!parsed) {
        return reportNoStatement(text);
    }
    script::scriptcontext context;
    genericValue result;
    parsed->exec(context, result);
    const qx::sharedPtr<genericValue> returned =
        context.parameterAddress(script::scriptcontext::returnparam());
    printValue(returned ? *returned : result);
    return 0;
}

int checkFiles(const std::vector<string>& files)
{
    int status = 0;
    for (const string& name : files) {
        try {
            if (checkFile(name) > 0) {
                status = 1;
            }
        } catch (const qx::exception& failure) {
            printFailure(failure);
            status = 1;
        }
    }
    return status;
}

int showFunctions(const string& name)
{
    const file scriptFile(name);
    if (!scriptFile.exists()) {
        throw qx::fileNotFoundException(scriptFile);
    }
    const script::scriptFileInfo info = script::listFunctions(scriptFile);
    for (const script::functionInfo& function : info.functions) {
        printLine(function.name + shownParameters(function));
    }
    for (const script::functionInfo& function : info.functions) {
        reportRedefinition(name, function);
    }
    reportEnd(name, info);
    return 0;
}

int showStatements(const string& name)
{
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
    if (!isFound) {
        printError(L"qxscript: there is no statement \"" + name + L"\"");
    }
    return isFound ? 0 : 1;
}

int scrambleCopy(const string& from, const string& to)
{
    const file target(to);
    if (!script::scrambleFile(file(from), target)) {
        printError(L"qxscript: cannot write " + target.fullName());
        return 1;
    }
    return 0;
}
