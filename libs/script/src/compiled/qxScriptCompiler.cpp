// The compiler: places, blocks and what names mean.
#include "compiled/qxScriptCompiler.h"

#include "compiled/qxScriptValues.h"
#include "statements/qxScriptRunning.h"
#include "statements/qxScriptVariable.h"

#include <algorithm>

namespace qx::script
{

namespace
{

class handingOver final : public operation
{
public:
    explicit handingOver(const place* where) noexcept : operation(where) {}
    const operation* run(frame& f) const override { return leave(f); }
};

// A statement that has a short way.
class step final : public operation
{
public:
    step(const place* where, const statement& run, const operation* next) noexcept
        : operation(where), mRun(run), mpNext(next)
    {}
    const operation* run(frame& f) const override { return inside::runShort(mRun, f) ? mpNext : leave(f); }

private:
    const statement& mRun;
    const operation* mpNext;
};

// Ends the variables of a block, in the order in which they were made.
class endBlock final : public operation
{
public:
    endBlock(unsigned first, unsigned count, const operation* next) noexcept
        : operation(nullptr), mFirst(first), mCount(count), mpNext(next)
    {}
    const operation* run(frame& f) const override
    {
        for (unsigned cell = mFirst; cell < mFirst + mCount; ++cell)
            f.unbind(cell);
        return mpNext;
    }

private:
    unsigned mFirst;
    unsigned mCount;
    const operation* mpNext;
};

} // namespace

// The statement that is being compiled is a piece of the one before.
class compiler::inPlace
{
public:
    inPlace(compiler& c, unsigned piece, unsigned firstCell = 0, unsigned cellCount = 0)
        : mCompiler(c), mpOuter(c.mpWhere)
    {
        c.mpWhere =
            c.make<place>(place{mpOuter, piece, mpOuter ? mpOuter->depth + 1 : 0, firstCell, cellCount});
    }
    inPlace(const inPlace&) = delete;
    inPlace& operator=(const inPlace&) = delete;
    ~inPlace() { mCompiler.mpWhere = mpOuter; }

private:
    compiler& mCompiler;
    const place* mpOuter;
};

// A block is open, in which these run.
class compiler::inBlock
{
public:
    inBlock(compiler& c, std::span<const sharedPtr<statement>> pieces) : mCompiler(c)
    {
        open();
        for (const sharedPtr<statement>& each : pieces)
            inside::declare(*each, c);
    }
    inBlock(compiler& c, const statement& piece) : mCompiler(c)
    {
        open();
        inside::declareInside(piece, c);
    }
    inBlock(const inBlock&) = delete;
    inBlock& operator=(const inBlock&) = delete;
    ~inBlock() { mCompiler.mBlocks.pop_back(); }

    const block& opened() const { return mCompiler.mBlocks.back(); }

private:
    void open() { mCompiler.mBlocks.push_back({mCompiler.cellCount()}); }

    compiler& mCompiler;
};

compiler::compiler(arena& made, std::span<const scString> parameters)
    : mArena(made), mNames(parameters.begin(), parameters.end()),
      mParameterCount(static_cast<unsigned>(parameters.size()))
{
    for (auto name = mNames.begin(); name != mNames.end(); ++name)
        if (std::find(mNames.begin(), name, *name) != name)
            mIsPossible = false; // two of one name
}

const operation* compiler::compileBody(const statement& body)
{
    return piece(body, 0, nullptr);
}

const operation* compiler::piece(const statement& run, unsigned number, const operation* next)
{
    const inPlace here(*this, number);
    return inside::compile(run, *this, next);
}

const operation* compiler::pieceInBlock(const statement& run, unsigned number, const operation* next)
{
    const inBlock fresh(*this, run);
    const block opened = fresh.opened();
    const inPlace here(*this, number, opened.firstCell, opened.cellCount);
    return inside::compileInside(run, *this, endOf(opened, next));
}

const operation* compiler::bodyInBlock(const statement& run, const operation* turn, const operation* exit)
{
    const loop around{turn, exit, mBlocks.size()};
    const loop* const outer = std::exchange(mLoop, &around);
    const operation* const first = pieceInBlock(run, 0, turn);
    mLoop = outer;
    return first;
}

const operation* compiler::sequence(std::span<const sharedPtr<statement>> pieces, bool opened,
                                    const operation* next)
{
    const auto compileAll = [&](const block& around) {
        for (std::size_t i = pieces.size(); i-- > 0;) {
            const inPlace here(*this, static_cast<unsigned>(i), around.firstCell, around.cellCount);
            next = inside::compile(*pieces[i], *this, next);
        }
        return next;
    };
    if (!opened)
        return compileAll({0});
    const inBlock fresh(*this, pieces);
    const block around = fresh.opened();
    next = endOf(around, next);
    return compileAll(around);
}

const operation* compiler::leaveBlocks(std::size_t kept, const operation* next)
{
    for (std::size_t i = kept; i < mBlocks.size(); ++i)
        next = endOf(mBlocks[i], next);
    return next;
}

const operation* compiler::endOf(const block& left, const operation* next)
{
    return left.cellCount == 0 ? next : make<endBlock>(left.firstCell, left.cellCount, next);
}

bool compiler::givesUp()
{
    constexpr unsigned deepest = 200; // a frame that is left walks along its places
    if (mpWhere->depth > deepest)
        mIsPossible = false;
    return !mIsPossible;
}

const operation* compiler::handOver()
{
    mIsComplete = false;
    return makeHere<handingOver>();
}

void compiler::declare(const scString& name)
{
    if (ownCell(name) != noCell)
        return;
    // A name that may be visible already is made only where it is not: the tree knows.
    if (cellOf(name) != noCell || cellCount() == frame::mostCells)
        mIsPossible = false;
    else {
        mNames.push_back(name);
        ++mBlocks.back().cellCount;
    }
}

unsigned compiler::ownCell(const scString& name) const
{
    return mBlocks.empty() ? noCell : cellIn(mBlocks.back(), name);
}

unsigned compiler::cellOf(const scString& name) const
{
    for (std::size_t i = mBlocks.size(); i-- > 0;)
        if (const unsigned found = cellIn(mBlocks[i], name); found != noCell)
            return found;
    return parameterCell(name);
}

unsigned compiler::parameterCell(const scString& name) const
{
    return cellIn({0, mParameterCount}, name);
}

unsigned compiler::cellIn(const block& asked, const scString& name) const
{
    for (unsigned cell = asked.firstCell; cell < asked.firstCell + asked.cellCount; ++cell)
        if (mNames[cell] == name)
            return cell;
    return noCell;
}

const value* compiler::valueOf(const operandShortCut& asked)
{
    if (asked.literal())
        return make<literalValue>(asked);
    return asked.resolve(*this) ? inside::compileValue(*asked.nested(), asked, *this) : nullptr;
}

const operation* inside::compile(const statement& asked, compiler& c, const operation* next)
{
    const shortCuts& offered = *asked.mpShortCuts;
    if (offered.form)
        return c.givesUp() ? nullptr : offered.form->compile(asked, c, next);
    return offered.runShort && offered.resolve(asked, c) ? c.makeHere<step>(asked, next) : c.handOver();
}

const operation* inside::compileInside(const statement& asked, compiler& c, const operation* next)
{
    const compiledForm* const form = asked.mpShortCuts->form;
    return !form ? compile(asked, c, next) : c.givesUp() ? nullptr : form->compileInside(asked, c, next);
}

const value* inside::compileByShortCuts(const statement&, const operandShortCut& as, compiler& c)
{
    return c.make<shortCutValue>(as);
}

bool take(const value& asked, frame& f, genericValue& out)
{
    const cell::word w = asked.small(f);
    if (w != cell::refused) {
        cell::access::store(out, w);
        return true;
    }
    const genericValue* const variable = asked.asked().valueInPlace(f);
    return !(variable && f.isLookedInto(*variable)) && asked.asked().takeOtherwise(f, out);
}

bool namedVariable::resolve(compiler& names) const
{
    mCell = names.cellOf(mName);
    return mCell != compiler::noCell;
}

bool namedVariable::resolveParameter(compiler& names) const
{
    mCell = names.parameterCell(mName);
    return mCell != compiler::noCell;
}

} // namespace qx::script
