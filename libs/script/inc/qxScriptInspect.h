// For tools: what script files hold, whether it can be loaded, and which statements there are.
//
//     qx::script::checkFunctions(
//         scripts, [](const qx::script::functionInfo& found, const qx::exception* failure) {
//             if (failure)
//                 show(found.name, found.line, failure->messages());
//         });
//
// Nothing here runs a script or touches the cache of codeManager.
#pragma once

#include "qxException.h"
#include "qxFile.h"
#include "qxScriptExport.h"

#include <cstddef>
#include <vector>

namespace qx::script
{

// One definition of a script file.
struct functionInfo
{
    string name;                    // as written
    std::vector<string> parameters; // the declarations, as written
    string body;
    std::size_t line = 0; // where it begins, from 1
    std::size_t redefines =
        0; // the line of the definition before it with the same name, whose place it takes; 0: none
};

// Why the definitions of a file end.
enum class scriptFileEnd
{
    complete,
    withoutText, // a definition without any text: it and all behind it do not exist
    blankInName  // a blank stands before the opening bracket: likewise
};

struct scriptFileInfo
{
    // In file order. Of two with one name the later counts, see functionInfo::redefines.
    std::vector<functionInfo> functions;
    scriptFileEnd end = scriptFileEnd::complete;
    std::size_t endLine = 0; // of the definition that ends the reading; 0 in a complete file
};

//     for (const qx::script::functionInfo& function : qx::script::listFunctions(file).functions)
//         show(function.line, function.name);
//
// Lists the definitions of a script file, in file order, without parsing their bodies; its extension tells
// whether it is scrambled. Throws readFileException for one that cannot be read.
QXSCRIPT_API scriptFileInfo listFunctions(const file& scriptFile);

// Loads a definition as its first call would. Throws parserException: what is wrong with its text, or
// scriptFunctionNotFoundException for a body without a statement.
QXSCRIPT_API void checkFunction(const file& scriptFile, const functionInfo& checked);

// Who is told of each definition that checkFunctions comes to.
class checkListener
{
public:
    // `function` has neither parameters nor a body; `failure` is what checkFunction throws, null where the
    // definition loads.
    virtual void checked(const functionInfo& function, const exception* failure) = 0;

protected:
    ~checkListener() = default;
};

// Lists and checks the definitions of a file as it reads them, in file order, without a copy of each: in half
// the time, and with little memory. Gives what listFunctions does, but no functions. What the listener throws
// goes on. Throws as listFunctions does, after it has told of the definitions in front of what cannot be
// read.
QXSCRIPT_API scriptFileInfo checkFunctions(const file& scriptFile, checkListener& listener);

// checkFunctions with a function `told(const functionInfo&, const exception* failure)` in place of a
// listener.
template <class Told>
scriptFileInfo checkFunctions(const file& scriptFile, const Told& told)
{
    struct telling final : checkListener
    {
        explicit telling(const Told& whom) : mTold(whom) {}
        void checked(const functionInfo& function, const exception* failure) override
        {
            mTold(function, failure);
        }

        const Told& mTold;
    };
    telling listener(told);
    return checkFunctions(scriptFile, static_cast<checkListener&>(listener));
}

//     const qx::file found = qx::script::locateScriptFile(L"scripts", L"tools"); // of script$tools$...
//
// The file that code calls of this base path and file name run. Throws fileNotFoundException.
QXSCRIPT_API file locateScriptFile(const string& basePath, const string& fileName);

// Writes a scrambled copy of `from`, or a plain one of a scrambled file: the transform is its own inverse.
// `to` is replaced when there is one, may be `from` itself, and is unchanged on failure. False when it cannot
// be written; throws readFileException when `from` cannot be read.
QXSCRIPT_API bool scrambleFile(const file& from, const file& to);

// One statement, as help texts and editors want it.
struct statementInfo
{
    string name;
    string parameters;            // a summary: `<type>(name, [value])`
    string module;                // `host` for what qx::host::addStatement has made
    string types;                 // the data types that it takes: `short, int`; empty for none
    string summary;               // a sentence: what it does, and its value
    std::vector<string> failures; // the texts of its own failures; %s stands for what was found
    string result;                // what it does to a value that it is written into: `keeps the type`
    bool isBuiltIn = false;
};

// All built-in statements, module by module; behind them what hosts have made by qx::host::addStatement, by
// name, and what modules with a lister tell of theirs, in the order in which the parser asks these.
QXSCRIPT_API std::vector<statementInfo> listStatements();

} // namespace qx::script
