// Code calls from the host: the text of a call taken apart, and a function run in the host's context.
#include "qxScriptCode.h"

#include "code/qxScriptFunctionTable.h"
#include "contexts/qxScriptEpoch.h"

#include <array>
#include <mutex>

namespace qx::script
{

namespace
{

// The code calls that came as texts last, taken apart. Safe from several threads.
class recentCalls
{
public:
    // Never destroyed: a host may call while the process ends.
    static recentCalls& instance()
    {
        static recentCalls* const calls = new recentCalls;
        return *calls;
    }

    sharedPtr<const codeCall> get(const string& text)
    {
        recent& place = mPlaces[std::hash<string>()(text) % placeCount];
        {
            const std::lock_guard<std::mutex> guard(mMutex);
            if (place.call && place.text == text)
                return place.call;
        }
        sharedPtr<const codeCall> made(new codeCall(text));
        if (!made->file().empty()) // what is malformed may be reported each time
            keep(place, {text, made});
        return made;
    }

private:
    struct recent
    {
        string text;
        sharedPtr<const codeCall> call; // null for none
    };

    static constexpr std::size_t placeCount = 64;

    void keep(recent& place, recent made)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        std::swap(place, made); // the one before ends after the mutex is released
    }

    std::mutex mMutex;
    std::array<recent, placeCount> mPlaces;
};

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
    return callFromHost(basePath, *recentCalls::instance().get(call), context, arguments, result);
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
