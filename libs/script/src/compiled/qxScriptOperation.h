// Operations: what the statements of a function become when it is compiled, one after the other.
//
// An operation does the whole work of its piece and gives the next one. It stands at the start of a
// statement; where it cannot do its work it has had no effect, and leaves the frame: the tree does the
// statement, and all that follows. So an operation knows nothing of rare cases, and the tree alone tells what
// a statement means.
#pragma once

#include "compiled/qxScriptFrame.h"
#include "statements/qxScriptOperand.h"

namespace qx::script
{

class statement;

// Where in the function a statement stands: under which statement, and as which of its pieces.
struct place
{
    const place* outer; // null for the body of the function
    unsigned piece;     // the position in a block; the branch of an `if`
    unsigned depth;     // how many lie outside
    // The variables of the block that was opened around this piece, if one was.
    unsigned firstCell = 0;
    unsigned cellCount = 0;
};

class operation
{
public:
    // Null for the end of the function, and where the frame has been left.
    virtual const operation* run(frame& f) const = 0;

    // Null for one that ends a block, which cannot be left.
    const place* where() const noexcept { return mpWhere; }
    // The calls that its statement has made before it.
    const settledCall* done() const noexcept { return mpDone; }
    void setDone(const settledCall* done) noexcept { mpDone = done; }

protected:
    explicit operation(const place* where) noexcept : mpWhere(where) {}
    ~operation() = default; // they lie in the arena of their program

    const operation* leave(frame& f) const noexcept { return f.leaveAt(*this, mpDone); }

private:
    const place* mpWhere;
    const settledCall* mpDone = nullptr;
};

// What comes before the work of a statement: a call among its operands, or an operand before a call.
class preparation : public operation
{
public:
    void setNext(const operation* next) noexcept { mpNext = next; }
    // For a call that is the whole value of an assignment: the variable that the tree has it write.
    void setWritten(unsigned cell) noexcept { mWritten = cell; }

protected:
    using operation::operation;
    ~preparation() = default;

    const operation* next() const noexcept { return mpNext; }
    bool writesVariable() const noexcept { return mWritten != frame::mostCells; }
    unsigned written() const noexcept { return mWritten; }

private:
    const operation* mpNext = nullptr;
    unsigned mWritten = frame::mostCells;
};

// A value that comes about without an effect.
class value
{
public:
    // Its word. `refused` where that is none, and where it is not small.
    virtual cell::word small(frame& f) const = 0;

    const operandShortCut& asked() const noexcept { return *mpAsked; }
    // The cell whose value it is; frame::mostCells for every other value.
    unsigned cell() const noexcept { return mCell; }
    // True for a cell that is read once, which may be emptied then.
    bool isTemporary() const noexcept { return mIsTemporary; }
    bool keepsType() const noexcept { return mKeepsType; }

protected:
    explicit value(const operandShortCut& asked, unsigned cell = frame::mostCells,
                   bool isTemporary = false) noexcept
        : mpAsked(&asked), mCell(cell), mKeepsType(asked.keepsType()), mIsTemporary(isTemporary)
    {}
    ~value() = default;

    // By the short cuts of the tree, for what an operation has no way for.
    [[gnu::noinline]] cell::word smallOtherwise(frame& f) const { return mpAsked->smallValue(f); }

private:
    const operandShortCut* mpAsked;
    unsigned mCell;
    bool mKeepsType;
    bool mIsTemporary;
};

// Evaluates into `out`, which is null. False, without an effect, where it declines.
bool take(const value& asked, frame& f, genericValue& out);

} // namespace qx::script
