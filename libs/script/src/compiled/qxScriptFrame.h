// The frame of a run by operations: a cell for each parameter and for each variable of each block of the
// function that runs, and below them the cells of those that wait for it.
//
// A cell that holds `refused` is unbound: the variable is not made yet, or its block has ended. No reader
// takes that word, so that whoever finds it declines.
//
// A frame is a context for short cuts alone, which find their variables in its cells. Everything else gets
// the contexts of the tree, after the frame has been left.
#pragma once

#include "contexts/qxScriptEpoch.h"
#include "contexts/qxScriptScope.h"
#include "statements/qxScriptShortCuts.h"

#include <exception>
#include <memory>
#include <vector>

namespace qx::script
{

class operation;
class program;
class statement;

// A call that a statement has made before it came to its own work, and the cell with what the call gave.
struct settledCall
{
    const settledCall* before; // the one made before it; null for the first
    const statement* call;
    unsigned cell;
    unsigned order; // among the calls of the statement
};

class frame final : public codecontext
{
public:
    static constexpr unsigned mostCells = 64; // of a function

    // `root` is that of the call from outside, and borrowed, with the parameters in it; a host may look into
    // its own. Their values move into the first cells.
    frame(scriptcontext& root, bool isHosts, const program& outermost);
    // The parameters move back.
    ~frame() override;

    // Has the global variables of the run.
    scriptcontext& root() const noexcept { return mRoot; }

    // --- The function that runs ---

    const program& running() const noexcept { return *mpRunning; }
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

    // Where the function was left, with the calls that the statement there has made; null while it runs and
    // when it ran to its end.
    const operation* left() const noexcept { return mpLeft; }
    const settledCall* done() const noexcept { return mpDone; }
    // What the last of these calls threw; null for nothing.
    const std::exception_ptr& failure() const noexcept { return mFailure; }
    // For an operation that cannot do its work and has had no effect but those calls: the tree goes on from
    // there.
    const operation* leaveAt(const operation& declined, const settledCall* done,
                             std::exception_ptr failure = nullptr) noexcept
    {
        mpLeft = &declined;
        mpDone = done;
        mFailure = std::move(failure);
        return nullptr;
    }

    // For who goes on from there.
    void forgetLeft() noexcept
    {
        mpLeft = nullptr;
        mFailure = nullptr;
    }

    // What the function gives. False, with nothing changed, without memory.
    bool setReturned(genericValue&& value) noexcept;
    // The same for a small word, or null. False besides for the outermost function.
    bool setReturnedSmall(cell::word small) noexcept
    {
        if (isOutermost())
            return false;
        cell::access::storeSmall(mReturned, small); // which was taken, and is no holder
        return true;
    }
    // Moves what a function that was called has returned into a cell of its caller, which is unbound where
    // that is nothing.
    void takeReturned(unsigned cell) noexcept
    {
        const cell::word w = cell::access::load(mReturned);
        if (cell::isHolder(w) || cell::isHolder(word(cell)))
            replaceHolder(cell, std::move(mReturned));
        else
            cell::access::storeSmall(at(cell), w);
        cell::access::storeSmall(mReturned, cell::refused);
    }

    // The base path of the run, once somebody has looked for it; null where that has to be done.
    const string* basePath() const noexcept
    {
        return mBasePathEpoch == epoch::current ? mpBasePath : nullptr;
    }
    void setBasePath(const string* found) noexcept
    {
        mpBasePath = found;
        mBasePathEpoch = epoch::current;
    }

    // --- What the host may look at ---

    // True where asking the system may run a host's code, which may look for the parameters in the root.
    bool isSystemLookedInto() const noexcept { return mIsSystemHosts; }
    // True for a cell which the host finds in the root, under the name of the parameter.
    bool isSeen(unsigned cell) const noexcept { return mIsHosts && isOutermost() && cell < parameterCount(); }
    // True for a cell whose value may be seen to end.
    bool isEndSeen(unsigned cell) const noexcept
    {
        return cell::isHolder(word(cell)) && isEndOfHolderSeen(cell);
    }
    // True where a copy or the end of the value may run a host's code, which may look for the parameters in
    // the root.
    bool isLookedInto(const genericValue& value) const;
    // Moves the parameters of the outermost function to where the tree and the host look for them; their
    // cells are unbound then.
    void giveParameters() noexcept;
    // Moves them into the cells again. False where somebody has changed more than their values meanwhile;
    // then the outermost function has to be left.
    bool takeParameters() noexcept;
    // The same around what may run a host's code, where the host may look into the root.
    void giveToHost() noexcept
    {
        if (mIsHosts)
            giveParameters();
    }
    bool takeFromHost() noexcept { return !mIsHosts || takeParameters(); }

private:
    friend class nestedFrame;

    // Makes sure that a function has room for all its cells. False without memory.
    bool hasRoom() noexcept { return mpEnd - mpTop >= static_cast<std::ptrdiff_t>(mostCells) || grow(); }
    // So many unbound cells, for which there is room.
    genericValue* push(unsigned cells) noexcept
    {
        genericValue* const first = mpTop;
        for (mpTop += cells; cells != 0; --cells)
            cell::access::storeSmall(*new (first + cells - 1) genericValue, cell::refused);
        return first;
    }
    bool grow() noexcept;
    void replaceHolder(unsigned cell, genericValue&& value) noexcept;
    bool isOutermost() const noexcept { return mpFirst == mpOutermost; }
    std::size_t parameterCount() const noexcept;
    bool isEndOfHolderSeen(unsigned cell) const noexcept;

    static constexpr unsigned ownCells = 192;
    static constexpr unsigned chunkCells = 4096;

    scriptcontext& mRoot;
    genericValue* mpFirst; // of the function that runs
    const program* mpRunning;
    const operation* mpLeft = nullptr;
    const settledCall* mpDone = nullptr;
    std::exception_ptr mFailure;
    genericValue mReturned; // `refused` for nothing
    const string* mpBasePath = nullptr;
    std::uint64_t mBasePathEpoch = 0; // in which it was found
    bool mIsHosts;
    bool mIsSystemHosts;
    const program& mOutermost;
    genericValue* mpOutermost;
    // The room behind the cells in use.
    genericValue* mpTop;
    genericValue* mpEnd;
    std::vector<std::unique_ptr<std::byte[]>> mChunks; // beyond the own room; kept until the run ends
    std::size_t mChunksInUse = 0;
    alignas(genericValue) std::byte mRoom[ownCells * sizeof(genericValue)];
};

// The cells of a function that is called from one that runs in the frame.
class nestedFrame
{
public:
    // So many cells, unbound, for the arguments. Those of the caller are still in force.
    nestedFrame(frame& f, unsigned arguments) noexcept
        : mFrame(f), mpCaller(f.mpRunning), mpCallersCells(f.mpFirst), mpTop(f.mpTop), mpEnd(f.mpEnd),
          mpCells(f.hasRoom() ? f.push(arguments) : nullptr)
    {}
    nestedFrame(const nestedFrame&) = delete;
    nestedFrame& operator=(const nestedFrame&) = delete;
    // The cells end in their order, and those of the caller are in force again.
    ~nestedFrame()
    {
        leave();
        if (mpCells)
            std::destroy(mpCells, mFrame.mpTop);
        if (mFrame.mpEnd != mpEnd)
            --mFrame.mChunksInUse;
        mFrame.mpTop = mpTop;
        mFrame.mpEnd = mpEnd;
    }

    // Null without memory.
    genericValue* cells() const noexcept { return mpCells; }
    genericValue& ofCaller(unsigned cell) const noexcept { return mpCallersCells[cell]; }
    // From here on the function called is the one that runs; its arguments are in its first cells.
    void enter(const program& called, unsigned cells) noexcept
    {
        mFrame.push(cells - static_cast<unsigned>(mFrame.mpTop - mpCells));
        mFrame.mpFirst = mpCells;
        mFrame.mpRunning = &called;
        mFrame.enterCells(mpCells);
    }
    // From here on the caller is. The cells are still there.
    void leave() noexcept
    {
        mFrame.mpFirst = mpCallersCells;
        mFrame.mpRunning = mpCaller;
        mFrame.enterCells(mpCallersCells);
    }

private:
    frame& mFrame;
    const program* mpCaller;
    genericValue* mpCallersCells;
    genericValue* mpTop; // before
    genericValue* mpEnd;
    genericValue* mpCells;
};

} // namespace qx::script
