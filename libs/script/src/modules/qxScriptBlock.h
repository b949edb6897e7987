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
    void runInside(codecontext& block) const { runFrom(0, block); }

    // Compiled: the children in their order, and the end of what they have made.
    void declare(compiler&) const {}
    void declareInside(compiler& names) const;
    const operation* compile(compiler& c, const operation* next) const;
    const operation* compileInside(compiler& c, const operation* next) const;
    void resume(codecontext& context, resumption& rest) const;
    void resumeInside(codecontext& block, resumption& rest) const;
    bool repeats() const;

private:
    void runFrom(std::size_t child, codecontext& block) const;

    std::vector<sharedPtr<statement>, freeListAllocator<sharedPtr<statement>>> mStatements;
};

} // namespace qx::script
