// The block: its children run one after the other until one raises a signal.
#include "statements/qxScriptBlock.h"

#include "contexts/qxScriptScope.h"
#include "contexts/qxScriptSignals.h"

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

void compoundstatement::runInside(codecontext& block) const
{
    for (const sharedPtr<statement>& child : mStatements) {
        inside::exec(*child, block);
        if (isAnythingRaised(block))
            return;
    }
}

} // namespace qx::script
