// What each thread remembers of the functions that its scripts call, so that a call from script to script
// neither searches the file nor takes the mutex of the table.
//
// An entry is valid as long as nothing but the engine has run on the thread (qxScriptEpoch.h), the clock has
// not ticked, and the search would begin in the same directory. So a change of a file that this thread made
// or can know of is noticed at the next call, any other one a tick of the clock later at most.
#pragma once

#include "code/qxScriptFunctionTable.h"

namespace qx::script
{

class rememberedCall;

// A function for the length of one run: kept by a plain count of the thread, so that threads which run the
// same function do not meet at a counter.
class pinnedFunction
{
public:
    // The function of a call between scripts, by the memory of the thread where that is valid. Throws what
    // functionTable::getFunction throws.
    static pinnedFunction find(const string& basePath, const codeCall& call);

    pinnedFunction(const pinnedFunction&) = delete;
    pinnedFunction& operator=(const pinnedFunction&) = delete;
    ~pinnedFunction();

    const function& operator*() const noexcept;
    // True when the search began in the function's own directory.
    bool isAtHome() const noexcept;

private:
    // Takes over a pin.
    explicit pinnedFunction(rememberedCall& pinned) noexcept;

    rememberedCall& mFound;
};

} // namespace qx::script
