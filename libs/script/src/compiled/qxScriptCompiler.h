// The compiler: what a statement asks while it offers its operation.
//
// It goes through a function from its end to its beginning, so that each statement knows the operation that
// comes after it. What a name means is known beforehand: a block tells the variables that its statements make
// when it is opened.
//
// A statement that cannot be compiled hands over: there the frame is left for the tree.
#pragma once

#include "compiled/qxScriptArena.h"
#include "compiled/qxScriptOperation.h"
#include "statements/qxScriptOperand.h"

#include <vector>

namespace qx::script
{

class compiler
{
public:
    // Everything that is made lies in `made`. The parameters have the first cells.
    compiler(arena& made, std::span<const scString> parameters);
    compiler(const compiler&) = delete;
    compiler& operator=(const compiler&) = delete;

    // The first operation of the body of a function.
    const operation* compileBody(const statement& body);
    unsigned cellCount() const noexcept { return static_cast<unsigned>(mNames.size()); }
    // The name of each cell.
    const std::vector<scString>& names() const noexcept { return mNames; }
    // False where what a name means cannot be told beforehand: the function stays a tree.
    bool isPossible() const noexcept { return mIsPossible; }
    // True where no statement hands over.
    bool isComplete() const noexcept { return mIsComplete; }

    // --- For statements ---

    static constexpr unsigned noCell = frame::mostCells;

    // The operations of a piece of the statement that is being compiled, before `next`.
    const operation* piece(const statement& run, unsigned number, const operation* next);
    // The same for a piece that runs in a block of its own.
    const operation* pieceInBlock(const statement& run, unsigned number, const operation* next);
    // The body of a loop: `turn` decides about the next one, `exit` comes behind the loop.
    const operation* bodyInBlock(const statement& run, const operation* turn, const operation* exit);
    // Pieces that come one after the other. `opened` where they run in a block that is opened for them.
    const operation* sequence(std::span<const sharedPtr<statement>> pieces, bool opened,
                              const operation* next);

    // Out of the blocks of the innermost loop, to its next turn or behind it.
    const operation* toNextTurn() { return leaveBlocks(mLoop->blocks, mLoop->turn); }
    const operation* toExit() { return leaveBlocks(mLoop->blocks, mLoop->exit); }
    bool isInLoop() const noexcept { return mLoop != nullptr; }
    // Ends what these cells hold.
    const operation* endCells(unsigned first, unsigned count, const operation* next);
    // Out of all blocks and of the function.
    const operation* toEnd() { return leaveBlocks(0, nullptr); }

    // True where the function stays a tree, too deep nesting being one reason.
    bool givesUp();

    // Leaves the frame at the statement that is being compiled.
    const operation* handOver();

    // A variable that the innermost block makes.
    void declare(const scString& name);
    // The cell that a name means here; noCell where it means none.
    unsigned cellOf(const scString& name) const;
    unsigned parameterCell(const scString& name) const;
    // The cell of a variable that the innermost block makes.
    unsigned ownCell(const scString& name) const;

    // Null where it has an effect, and where it has no short cut.
    const value* valueOf(const operand& asked) { return valueOf(asked.shortCut()); }
    const value* valueOf(const operandShortCut& asked);
    // The same for a value that the tree writes into the cell, where a call may find what was there before.
    const value* valueInto(unsigned cell, const operand& asked);
    // Of two that are evaluated one after the other.
    std::pair<const value*, const value*> valuesOf(const operandShortCut& first,
                                                   const operandShortCut& second);
    // Of any number.
    bool valuesOf(std::span<const operand> asked, std::span<const value*> out);

    // --- Calls among operands, which have an effect ---

    // Has the call made before the work of the statement, by a Made. Gives its value, which is read once.
    template <class Made, class... Arguments>
    const value* prepareCall(const statement& call, const operandShortCut& asked, Arguments&&... arguments)
    {
        const unsigned cell = newCell();
        auto* const self =
            make<settledCall>(settledCall{mpDone, &call, cell, mpDone ? mpDone->order + 1 : 0});
        mPreparations.push_back(makeHere<Made>(*self, std::forward<Arguments>(arguments)...));
        mpDone = self;
        return temporary(asked, cell);
    }
    // The calls that have been prepared, one after the other, with this work behind them. Those that are
    // prepared later come before them.
    const operation* behindPreparations(const operation* work);

    template <class Made, class... Arguments>
    Made* make(Arguments&&... arguments)
    {
        return mArena.make<Made>(std::forward<Arguments>(arguments)...);
    }
    template <class Made>
    std::span<Made> makeRow(std::size_t count)
    {
        return mArena.makeRow<Made>(count);
    }
    // An operation at the statement that is being compiled.
    template <class Made, class... Arguments>
    Made* makeHere(Arguments&&... arguments)
    {
        Made* const made = make<Made>(mpWhere, std::forward<Arguments>(arguments)...);
        made->setDone(mpDone);
        return made;
    }
    // The operations of a statement that `compileWork` gives, behind its preparations.
    template <class Compile>
    const operation* compileStatement(const Compile& compileWork)
    {
        const settledCall* const doneOutside = std::exchange(mpDone, nullptr);
        std::vector<preparation*> outside = std::exchange(mPreparations, {});
        const operation* const first = behindPreparations(compileWork());
        mPreparations = std::move(outside);
        mpDone = doneOutside;
        return first;
    }

private:
    struct block
    {
        unsigned firstCell;
        unsigned cellCount = 0;
    };
    struct loop
    {
        const operation* turn;
        const operation* exit;
        std::size_t blocks; // that are open around its body
    };
    class inPlace;
    class inBlock;

    unsigned newCell();
    const value* temporary(const operandShortCut& asked, unsigned cell);
    // Puts a Made before the preparation at this position, when `done` are the calls that have been made.
    template <class Made, class... Arguments>
    void prepareAt(std::size_t at, const settledCall* done, Arguments&&... arguments);
    // Has an operand evaluated before the preparation at this position, and gives what it gave.
    const value* settled(const value& early, std::size_t at, const settledCall* done);

    // Ends the blocks beyond the first `kept`, inner ones first.
    const operation* leaveBlocks(std::size_t kept, const operation* next);
    const operation* endOf(const block& left, const operation* next);
    unsigned cellIn(const block& asked, const scString& name) const;

    arena& mArena;
    std::vector<scString> mNames; // of the cells
    unsigned mParameterCount;
    std::vector<block> mBlocks; // those that are open
    const loop* mLoop = nullptr;
    const place* mpWhere = nullptr;
    // Of the statement that is being compiled, in the order in which they run.
    std::vector<preparation*> mPreparations;
    const settledCall* mpDone = nullptr;
    bool mIsPossible = true;
    bool mIsComplete = true;
};

} // namespace qx::script
