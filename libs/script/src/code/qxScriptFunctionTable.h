// The functions that are loaded, for all threads. A look-up searches the file, asks its time and takes a
// mutex; calls from script to script go through the memory of their thread (qxScriptCallMemory.h).
#pragma once

#include "code/qxScriptFunction.h"
#include "qxScriptCode.h"

#include <map>
#include <mutex>

namespace qx::script
{

// A code call, taken apart once.
class codeCall
{
public:
    // A text that is no code call has type codeTypeScript and empty names, and finds no file.
    explicit codeCall(const string& call);

    eCodeType type() const noexcept { return mType; }
    const string& file() const noexcept { return mFile; }
    const string& function() const noexcept { return mFunction; }
    // Under which the function is kept.
    const string& key() const noexcept { return mKey; }
    // Never given to another call of the process; not 0.
    std::uint64_t identity() const noexcept { return mIdentity; }

private:
    eCodeType mType = codeTypeScript;
    string mFile;
    string mFunction;
    string mKey;
    std::uint64_t mIdentity;
};

// The functions that are loaded, under the file name as it was asked for and the function name. Two files of
// one name share their entries, whatever their directories.
class functionTable
{
public:
    // The one table of the process; never destroyed.
    static functionTable& instance();

    // Searches the file and gives its function, loaded anew if the file is newer. Throws
    // fileNotFoundException, scriptFunctionNotFoundException and what loading throws.
    sharedPtr<function> getFunction(const string& basePath, const codeCall& call);

private:
    sharedPtr<function> find(const string& key);
    sharedPtr<function> cacheFunction(const string& key, const sharedPtr<function>& loaded);

    std::mutex mMutex;
    std::map<string, sharedPtr<function>> mFunctions;
};

} // namespace qx::script
