// Loaded functions: the shared table, and code calls as its keys.
#include "code/qxScriptFunctionTable.h"

#include "code/qxScriptFileSearch.h"
#include "code/qxScriptRecentFile.h"
#include "contexts/qxScriptEpoch.h"
#include "qxScriptException.h"

#include <atomic>

namespace qx::script
{

namespace
{

std::uint64_t nextIdentity() noexcept
{
    static constinit std::atomic<std::uint64_t> last = 0;
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

} // namespace

// --- codeCall ---

codeCall::codeCall(const string& call) : mIdentity(nextIdentity())
{
    // REQUIRED: a malformed call goes on and finds no file.
    codeManager::instance()->parseCodeCall(call, mType, mFile, mFunction);
    mKey = mFile + L"." + mFunction;
}

// --- functionTable ---

functionTable& functionTable::instance()
{
    static functionTable* const table = new functionTable;
    return *table;
}

sharedPtr<function> functionTable::getFunction(const string& basePath, const codeCall& call)
{
    const foundScript script = findScriptFile(basePath, call.file());
    if (sharedPtr<function> cached = find(call.key()); cached && !(cached->time() < script.time))
        return cached;
    const sharedPtr<function> loaded = recentFile::instance().load(script.source, call.function());
    epoch::move(); // the parser asks the modules of hosts
    if (!loaded)
        throw scriptFunctionNotFoundException(call.function().c_str(), script.source);
    return cacheFunction(call.key(), loaded);
}

sharedPtr<function> functionTable::find(const string& key)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    const auto found = mFunctions.find(key);
    return found == mFunctions.end() ? sharedPtr<function>() : found->second;
}

// Gives what is in the table afterwards: of two functions that are equally new the one that came first.
sharedPtr<function> functionTable::cacheFunction(const string& key, const sharedPtr<function>& loaded)
{
    sharedPtr<function> kept = loaded; // what it replaces ends after the mutex is released
    const std::lock_guard<std::mutex> guard(mMutex);
    sharedPtr<function>& entry = mFunctions[key];
    if (entry && !(entry->time() < loaded->time()))
        return entry;
    entry.swap(kept);
    return entry;
}

} // namespace qx::script
