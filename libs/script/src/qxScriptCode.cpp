#include "qxScriptCode.h"

#include "qxScriptBasePath.h"
#include "qxScriptException.h"
#include "qxScriptFile.h"
#include "qxScriptFunction.h"
#include "qxScriptSignals.h"

#include <map>
#include <mutex>

namespace qx::script
{

namespace
{

timestamp modificationTime(const file& scriptFile)
{
    return timestamp::fromTimer(scriptFile.lastModificationTime());
}

// Reads the file for one function. A null pointer when the file does not define it, or without a statement.
sharedPtr<function> loadFunction(const file& source, const string& name)
{
    binaryBuffer text;
    readScriptText(source, text); // a file that cannot be read defines nothing
    scrdefReader reader(std::move(text));
    const timestamp time = modificationTime(source);
    scriptDefinition definition;
    const bool isFound = findDefinition(reader, name, definition);
    reader.clear();
    return isFound ? function::parse(definition.body, definition.parameters, source, time)
                   : sharedPtr<function>();
}

} // namespace

const scString& scriptBasePath()
{
    static const scString name = scString::createFrom(L"scriptbasepath");
    return name;
}

// The functions that are loaded, under the file name as it was asked for and the function name. Two files of
// one name share their entries, whatever their directories.
struct codeManager::state
{
    sharedPtr<function> find(const string& key)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        const auto found = mFunctions.find(key);
        return found == mFunctions.end() ? sharedPtr<function>() : found->second;
    }

    // Gives what is in the cache afterwards: of two functions that are equally new the one that came first.
    sharedPtr<function> insert(const string& key, const sharedPtr<function>& loaded)
    {
        sharedPtr<function> kept = loaded; // what it replaces ends after the mutex is released
        const std::lock_guard<std::mutex> guard(mMutex);
        sharedPtr<function>& entry = mFunctions[key];
        if (entry && !(entry->time() < loaded->time()))
            return entry;
        entry.swap(kept);
        return entry;
    }

    // Throws fileNotFoundException, scriptFunctionNotFoundException and what loading throws.
    sharedPtr<function> get(const string& basePath, const string& fileName, const string& name)
    {
        const file source = findScriptFile(basePath, fileName);
        const timestamp time = modificationTime(source);
        const string key = fileName + L"." + name;
        if (sharedPtr<function> cached = find(key); cached && !(cached->time() < time))
            return cached;
        const sharedPtr<function> loaded = loadFunction(source, name);
        if (!loaded)
            throw scriptFunctionNotFoundException(name.c_str(), source);
        return insert(key, loaded);
    }

private:
    std::mutex mMutex;
    std::map<string, sharedPtr<function>> mFunctions;
};

codeManager::codeManager() : mpState(new state) {}

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
    eCodeType type = codeTypeScript;
    string fileName;
    string name;
    parseCodeCall(call, type, fileName, name); // REQUIRED: a malformed call goes on and finds no file
    if (type != codeTypeScript)
        return false;
    const sharedPtr<function> called = mpState->get(basePath, fileName, name);
    called->bind(name, arguments, context);
    try {
        const string directoryName = called->source().entryName().path(0);
        context.setGlobalContextVariable(scriptBasePath(), genericValue(directoryName));
        called->body().exec(context, result);
        copyReturned(context, result);
        context.clearScriptSignal(breakSignal());
        context.clearScriptSignal(continueSignal());
        return true;
    } catch (const exception& caught) {
        throw scriptExecException(name.c_str(), nullptr, &caught);
    } catch (const string& text) {
        throw scriptExecException((text + L"\n\n" + name).c_str(), nullptr);
    } catch (...) {
        throw scriptExecException(name.c_str(), nullptr);
    }
}

} // namespace qx::script
