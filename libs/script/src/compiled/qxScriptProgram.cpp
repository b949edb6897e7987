// Programs: how a function is compiled, and the loop that runs its operations.
#include "compiled/qxScriptProgram.h"

#include "compiled/qxScriptCompiler.h"
#include "compiled/qxScriptResumption.h"
#include "compiled/qxScriptTrial.h"

namespace qx::script
{

std::unique_ptr<const program> program::compile(const statement& body, std::vector<scString> parameters)
{
    if (parameters.size() > frame::mostCells || (!inside::repeats(body) && !trial::compilesAll))
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

void program::run(scriptcontext& root, bool isHosts) const
{
    const operation* left = nullptr;
    const auto run = [&](frame& f) {
        const operation* next = mpFirst;
        if (trial::leaveAfter != 0) [[unlikely]]
            next = trial::runSome(f, next);
        while (next)
            next = next->run(f);
        left = f.left();
    };
    frame f(root, isHosts, std::span(mNames).first(mParameterCount), static_cast<unsigned>(mNames.size()));
    run(f);
    if (left)
        resumption(*this, f, *left->where()).run(root);
}

} // namespace qx::script
