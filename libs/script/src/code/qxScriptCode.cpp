// Code calls from the host: the text of a call taken apart, and a function run in the host's context.
#include "qxScriptCode.h"

#include "code/qxScriptFunctionTable.h"
#include "contexts/qxScriptEpoch.h"

namespace qx::script
{

namespace
{

// A call from the host searches the file each time. Its arguments stay as they are.
bool callFromHost(const string& basePath, const codeCall& call, scriptcontext& context,
                  std::vector<genericValue>& arguments, genericValue& result)
{
    if (call.type() != codeTypeScript)
        return false;
    const epoch::outside host; // which may have done anything before, and may again
    const sharedPtr<function> called = functionTable::instance().getFunction(basePath, call);
    called->call(call.function(), arguments, context, function::callee::ofHost, result);
    return true;
}

} // namespace

// --- codeManager ---

codeManager* codeManager::instance()
{
    static codeManager* const manager = new codeManager;
    return manager;
}

bool codeManager::parseCodeCall(const string& call, eCodeType& type, string& file, string& function)
{
    std::vector<string> fields;
    call.splitAt(L"$", fields, false);
    if (fields.size() != 3)
        return false;
    string& typeName = fields[0];
    typeName.deleteAll(L" \t").toLower();
    if (typeName == L"dll") {
        type = codeTypeDll;
    } else if (typeName.empty() || typeName == L"script") {
        type = codeTypeScript;
    } else {
        assertMsg(L"parseCodeCall: invalid codetype %s", typeName);
        return false;
    }
    file = fields[1].deleteLeading(L" \t").deleteTrailing(L" \t").toLower();
    function = fields[2].deleteAll(L" \t").toLower();
    return !file.empty() && !function.empty();
}

bool codeManager::executeFunction(const string& basePath, const string& call, scriptcontext& context,
                                  std::vector<genericValue>& arguments, genericValue& result)
{
    return callFromHost(basePath, codeCall(call), context, arguments, result);
}

// --- resolvedCall ---

resolvedCall::resolvedCall(const string& basePath, const string& call)
    : mBasePath(basePath), mpCall(new codeCall(call))
{}

resolvedCall::~resolvedCall() = default;

bool resolvedCall::execute(scriptcontext& context, std::vector<genericValue>& arguments,
                           genericValue& result) const
{
    return callFromHost(mBasePath, *mpCall, context, arguments, result);
}

} // namespace qx::script
