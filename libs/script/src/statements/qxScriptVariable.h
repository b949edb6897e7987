// A variable as a statement names it: by its name in contexts, by its cell in a frame of compiled code.
#pragma once

#include "contexts/qxScriptScope.h"
#include "statements/qxScriptShortCuts.h"

namespace qx::script
{

class compiler;

class namedVariable
{
public:
    explicit namedVariable(const scString& name) : mName(name) {}

    const scString& name() const noexcept { return mName; }

    // The value where nobody else can reach it, for short cuts. Null where there is none, and where the name
    // has to be looked for otherwise.
    genericValue* own(codecontext& context) const noexcept
    {
        genericValue* const cells = scope::cells(context);
        return cells ? inFrame(cells) : scope::ownVariable(context, mName);
    }

    // --- In frames ---

    // Settles for good which cell of its function the name means here. False where it means none, which has
    // no short cut in a frame.
    bool resolve(compiler& names) const;
    // The same for a parameter of the function, whatever else has this name.
    bool resolveParameter(compiler& names) const;
    // Null where the variable is not made yet.
    genericValue* inFrame(genericValue* cells) const noexcept
    {
        genericValue& cell = cells[mCell];
        return cell::access::load(cell) != cell::refused ? &cell : nullptr;
    }

private:
    scString mName;
    // A statement belongs to one function, so that whoever compiles that writes the same; read in its frames
    // alone.
    mutable unsigned mCell = 0;
};

} // namespace qx::script
