// The frame of a function that runs compiled: a cell for each parameter and for each variable of each block.
//
// A cell that holds `refused` is unbound: the variable is not made yet, or its block has ended. No reader
// takes that word, so that whoever finds it declines.
//
// A frame is a context for short cuts alone, which find their variables in its cells. Everything else gets
// the contexts of the tree, after the frame has been left.
#pragma once

#include "contexts/qxScriptScope.h"
#include "statements/qxScriptShortCuts.h"

#include <memory>
#include <span>

namespace qx::script
{

class operation;

class frame final : public codecontext
{
public:
    static constexpr unsigned mostCells = 64;

    // `root` is that of the call, and borrowed, with the parameters in it; a host may look into its own.
    // Their values move into the first cells.
    frame(scriptcontext& root, bool isHosts, std::span<const scString> parameters, unsigned cells) noexcept;
    // The parameters move back.
    ~frame() override;

    scriptcontext& root() const noexcept { return mRoot; }

    genericValue& at(unsigned cell) noexcept { return mpFirst[cell]; }
    cell::word word(unsigned cell) const noexcept { return cell::access::load(mpFirst[cell]); }
    bool isBound(unsigned cell) const noexcept { return word(cell) != cell::refused; }

    // Writes a cell. What it held ends.
    void replace(unsigned cell, cell::word small) noexcept
    {
        if (cell::isHolder(word(cell)))
            replaceHolder(cell, cell::access::made(small));
        else
            cell::access::store(at(cell), small);
    }
    void replace(unsigned cell, genericValue&& value) noexcept
    {
        if (cell::isHolder(word(cell)))
            replaceHolder(cell, std::move(value));
        else
            cell::access::fill(at(cell), std::move(value));
    }
    void unbind(unsigned cell) noexcept { replace(cell, cell::refused); }

    // True where a copy or the end of the value may run a host's code, which may look for the parameters in
    // the root.
    bool isLookedInto(const genericValue& value) const;
    // Moves the parameters to where the tree and the host look for them; their cells are unbound then.
    void giveParameters() noexcept;

    // For an operation that cannot do its work and has had no effect: the tree goes on from there.
    const operation* leaveAt(const operation& declined) noexcept
    {
        mpLeft = &declined;
        return nullptr;
    }
    // Where the frame was left; null while it runs and when it ran to the end.
    const operation* left() const noexcept { return mpLeft; }

private:
    void replaceHolder(unsigned cell, genericValue&& value) noexcept;

    scriptcontext& mRoot;
    std::span<const scString> mParameters;
    const operation* mpLeft = nullptr;
    unsigned mCount;
    bool mIsHosts;
    genericValue* mpFirst;
    alignas(genericValue) std::byte mRoom[mostCells * sizeof(genericValue)];
};

} // namespace qx::script
