// The functions that are loaded, and what each thread remembers of them.
//
// The table is shared; a look-up searches the file, asks its time and takes a mutex. Calls from script to
// script go through the memory of their thread: what a call found holds as long as nothing but the engine has
// run on the thread (qxScriptEpoch.h), the clock has not ticked, and the search would begin in the same
// directory. So a change of a file that this thread made or can know of is noticed at the next call, any
// other one a tick of the clock later at most.
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

// A function for the length of one run: kept by a plain count of the thread, so that threads which run the
// same function do not meet at a counter.
class pinnedFunction
{
public:
    // The function of a call between scripts, by the memory of the thread where that holds. Throws what
    // functionTable::getFunction throws.
    static pinnedFunction find(const string& basePath, const codeCall& call);

    pinnedFunction(const pinnedFunction&) = delete;
    pinnedFunction& operator=(const pinnedFunction&) = delete;
    ~pinnedFunction();

    const function& operator*() const noexcept;
    // True when the search began in the function's own directory.
    bool isAtHome() const noexcept;

private:
    struct memory;
    struct remembered;
    class unpinning;

    explicit pinnedFunction(remembered& found) noexcept;

    remembered& mFound;
};

} // namespace qx::script
