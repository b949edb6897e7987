// Programs: how a function is compiled, and the loop that runs its operations.
#include "compiled/qxScriptProgram.h"

#include "compiled/qxScriptCompiler.h"
#include "compiled/qxScriptResumption.h"
#include "compiled/qxScriptTrial.h"

namespace qx::script
{

std::unique_ptr<const program> program::compile(const statement& body, std::vector<scString> parameters)
{
    if (parameters.size() > frame::mostCells)
        return nullptr;
    std::unique_ptr<program> made(new program(body));
    made->mParameterCount = parameters.size();
    compiler c(made->mArena, parameters);
    made->mpFirst = c.compileBody(body);
    if (!c.isPossible() || (!c.isComplete() && !trial::compilesAll))
        return nullptr;
    made->mNames = c.names();
    return made;
}

bool program::runIn(frame& f) const
{
    const operation* next = mpFirst;
    if (trial::leaveAfter != 0) [[unlikely]]
        next = trial::runSome(f, next);
    while (next)
        next = next->run(f);
    return !f.left();
}

void program::run(scriptcontext& root, bool isHosts) const
{
    frame f(root, isHosts, *this);
    if (!runIn(f)) {
        f.giveParameters();
        resumption(f).run(root);
    }
}

} // namespace qx::script
