// Steps of a run, which a thread may limit, see qxScriptSettings.h. A limit makes the end of the stack look
// near, so that a run without one is not slowed by it.
#pragma once

#include "qxStack.h"

namespace qx::script
{

// Counts one step. Throws unexpectedErrorException where there is none left.
void takeStep();

// What each step looks at before its work; throws unexpectedErrorException.
inline void checkRun()
{
    if (stack::isFar()) [[likely]]
        return;
    stack::check();
    takeStep();
}

} // namespace qx::script
