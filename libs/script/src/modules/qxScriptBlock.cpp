// The block: its children run one after the other until one raises a signal.
#include "modules/qxScriptBlock.h"

#include "compiled/qxScriptCompiler.h"
#include "compiled/qxScriptResumption.h"
#include "contexts/qxScriptScope.h"
#include "contexts/qxScriptSignals.h"

#include <algorithm>

namespace qx::script
{

bool compoundstatement::add(statement* child)
{
    if (!child)
        return false;
    mStatements.emplace_back(child);
    return true;
}

void compoundstatement::execute(codecontext& context, genericValue& result) const
{
    run(context);
    if (raisedIn(context) == raised::returned)
        copyReturned(context, result);
}

void compoundstatement::run(codecontext& context) const
{
    blockcontext block(context);
    runInside(block);
}

void compoundstatement::runFrom(std::size_t child, codecontext& block) const
{
    for (; child < mStatements.size(); ++child) {
        inside::exec(*mStatements[child], block);
        if (isAnythingRaised(block))
            return;
    }
}

void compoundstatement::declareInside(compiler& names) const
{
    for (const sharedPtr<statement>& child : mStatements)
        inside::declare(*child, names);
}

const operation* compoundstatement::compile(compiler& c, const operation* next) const
{
    return c.sequence(mStatements, true, next);
}

const operation* compoundstatement::compileInside(compiler& c, const operation* next) const
{
    return c.sequence(mStatements, false, next);
}

void compoundstatement::resume(codecontext& context, resumption& rest) const
{
    blockcontext block(context);
    rest.fill(block);
    resumeInside(block, rest);
}

void compoundstatement::resumeInside(codecontext& block, resumption& rest) const
{
    const std::size_t child = rest.piece();
    rest.go(*mStatements[child], block);
    if (!isAnythingRaised(block))
        runFrom(child + 1, block);
}

bool compoundstatement::repeats() const
{
    return std::any_of(mStatements.begin(), mStatements.end(),
                       [](const sharedPtr<statement>& child) { return inside::repeats(*child); });
}

} // namespace qx::script
