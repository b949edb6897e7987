// codeManager: runs functions of script files by name.
//
//     qx::script::scriptcontext context;
//     std::vector<qx::genericValue> arguments{qx::genericValue(qx::string(L"4"))};
//     qx::genericValue result;
//     auto* const code = qx::script::codeManager::instance();
//     code->executeFunction(L"scripts", L"script$tools$pick", context, arguments, result);
//
// What fails is thrown, see executeFunction; a host that shows it walks the chain (qxScriptException.h).
//
// A code call is `type$file$function`; an empty type means a script file. Loaded functions are cached by file
// and function name and reloaded when their file's time is newer.
#pragma once

#include "qxAutoPtr.h"
#include "qxGenericValue.h"
#include "qxScriptContext.h"
#include "qxScriptExport.h"

namespace qx::script
{

class codeCall;

enum eCodeType
{
    codeTypeScript = 0, // a function in a script file
    codeTypeDll = 1     // a function in a library: recognised, never carried out
};

class QXSCRIPT_API codeManager
{
public:
    // The one manager of the process, made at the first call; never destroyed. Safe from several threads.
    static codeManager* instance();

    // Splits a code call; file and function come lower-cased. False, with the outputs unchanged, unless there
    // are three fields; false for an unknown type, which is reported through assertMsg; false when file or
    // function is empty.
    bool parseCodeCall(const string& call, eCodeType& type, string& file, string& function);

    // Runs a script function. The file is searched in the current directory by its bare name, then with its
    // extensions in `basePath`, beside the executable and in the current directory. The arguments are bound
    // to the declared parameters, copied, and stay in `context` with the returned value. True when the
    // function has run; `result` takes what it returned and is left as it is when it returned nothing. False
    // when there is nothing to run.
    //
    // Throws fileNotFoundException, scriptFunctionNotFoundException, readFileException and parserException
    // while loading, prepareParameterException for a parameter, scriptExecException for everything that the
    // run throws.
    bool executeFunction(const string& basePath, const string& call, scriptcontext& context,
                         std::vector<genericValue>& arguments, genericValue& result);

private:
    codeManager() = default;
    ~codeManager() = default;
};

// A code call for a host that makes it often: taken apart once, called with the same checks and failures as
// codeManager::executeFunction.
//
//     const qx::script::resolvedCall pick(L"scripts", L"script$tools$pick");
//     pick.execute(context, arguments, result);
//
// May be used by several threads at once, each with a context of its own.
class QXSCRIPT_API resolvedCall
{
public:
    // Nothing is looked for until the call is made, so a wrong name fails then. Both texts are copied.
    resolvedCall(const string& basePath, const string& call);
    resolvedCall(const resolvedCall&) = delete;
    resolvedCall& operator=(const resolvedCall&) = delete;
    ~resolvedCall();

    // codeManager::executeFunction for this call: arguments, result and failures are the same.
    bool execute(scriptcontext& context, std::vector<genericValue>& arguments, genericValue& result) const;

private:
    string mBasePath;
    autoPtr<codeCall> mpCall;
};

} // namespace qx::script
