// The block `{ ... }`: statements in text order, run in a scope of their own.
#pragma once

#include "statements/qxScriptBase.h"

#include "qxFreeLists.h"
#include "qxSharedPtr.h"

#include <vector>

namespace qx::script
{

class compoundstatement final : public scriptbasestatement
{
public:
    static constexpr ending ends = ending::block;

    compoundstatement() { stayInside(this); }

    void reserve(std::size_t children) { mStatements.reserve(children); }
    // Takes over `child` and appends it. A null child gives false and changes nothing.
    bool add(statement* child);

    // Both blocks share their children.
    statement* clone() const override { return new compoundstatement(*this); }
    // Runs the children until one raises a signal. The value of a block is what was returned inside it, if
    // anything.
    void execute(codecontext& context, genericValue& result) const override;
    void run(codecontext& context) const;
    void runInside(codecontext& block) const;

private:
    std::vector<sharedPtr<statement>, freeListAllocator<sharedPtr<statement>>> mStatements;
};

} // namespace qx::script
