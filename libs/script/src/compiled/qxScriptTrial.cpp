// Runs that are cut short.
#include "compiled/qxScriptTrial.h"

namespace qx::script
{

const operation* trial::runSome(frame& f, const operation* next)
{
    for (unsigned left = leaveAfter; next; next = next->run(f))
        if (next->where() && --left == 0) {
            ++timesLeft;
            return f.leaveAt(*next, next->done());
        }
    return nullptr;
}

} // namespace qx::script
