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

// Evaluates an operand that stands before a call.
class settleOperand final : public preparation
{
public:
    settleOperand(const place* where, const value& early, unsigned cell) noexcept
        : preparation(where), mEarly(early), mCell(cell)
    {}
    const operation* run(frame& f) const override
    {
        genericValue taken;
        if (!take(mEarly, f, taken))
            return leave(f);
        f.replace(mCell, std::move(taken));
        return next();
    }

private:
    const value& mEarly;
    unsigned mCell;
};

// Asks for a variable before the calls for the value that it gets.
class requireBound final : public preparation
{
public:
    requireBound(const place* where, unsigned cell) noexcept : preparation(where), mCell(cell) {}
    const operation* run(frame& f) const override { return f.isBound(mCell) ? next() : leave(f); }

private:
    unsigned mCell;
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
    return left.cellCount == 0 ? next : endCells(left.firstCell, left.cellCount, next);
}

const operation* compiler::endCells(unsigned first, unsigned count, const operation* next)
{
    return make<endBlock>(first, count, next);
}

const operation* compiler::behindPreparations(const operation* work)
{
    for (; !mPreparations.empty(); mPreparations.pop_back()) {
        mPreparations.back()->setNext(work);
        work = mPreparations.back();
    }
    return work;
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
    mPreparations.clear(); // the tree makes them
    mpDone = nullptr;
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
    return asked.nested() ? inside::compileValue(*asked.nested(), asked, *this) : nullptr;
}

const value* compiler::valueInto(unsigned cell, const operand& asked)
{
    const std::size_t before = mPreparations.size();
    const settledCall* const done = mpDone;
    const value* const made = valueOf(asked);
    if (mPreparations.size() == before)
        return made;
    if (made && made->isTemporary()) // a call, the last that was prepared
        mPreparations.back()->setWritten(cell);
    prepareAt<requireBound>(before, done, cell);
    return made;
}

const operation* inside::compile(const statement& asked, compiler& c, const operation* next)
{
    const shortCuts& offered = *asked.mpShortCuts;
    if (offered.form)
        return c.givesUp() ? nullptr
                           : c.compileStatement([&] { return offered.form->compile(asked, c, next); });
    return offered.runShort && offered.resolve(asked, c) ? c.makeHere<step>(asked, next) : c.handOver();
}

const operation* inside::compileInside(const statement& asked, compiler& c, const operation* next)
{
    const compiledForm* const form = asked.mpShortCuts->form;
    return !form         ? compile(asked, c, next)
           : c.givesUp() ? nullptr
                         : c.compileStatement([&] { return form->compileInside(asked, c, next); });
}

const value* inside::compileByShortCuts(const statement&, const operandShortCut& as, compiler& c)
{
    return as.resolve(c) ? c.make<shortCutValue>(as) : nullptr;
}

bool take(const value& asked, frame& f, genericValue& out)
{
    const cell::word w = asked.small(f);
    if (w != cell::refused) {
        cell::access::store(out, w);
        return true;
    }
    if (asked.isTemporary()) {
        if (!f.isBound(asked.cell()))
            return false;
        out = std::move(f.at(asked.cell()));
        return true;
    }
    const genericValue* const variable = asked.asked().valueInPlace(f);
    return !(variable && f.isLookedInto(*variable)) && asked.asked().takeOtherwise(f, out);
}

std::pair<const value*, const value*> compiler::valuesOf(const operandShortCut& first,
                                                         const operandShortCut& second)
{
    const value* a = valueOf(first);
    const std::size_t between = mPreparations.size();
    const settledCall* const done = mpDone;
    const value* const b = valueOf(second);
    if (a && mPreparations.size() != between)
        a = settled(*a, between, done);
    return {a, b};
}

bool compiler::valuesOf(std::span<const operand> asked, std::span<const value*> out)
{
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const std::size_t before = mPreparations.size();
        const settledCall* const done = mpDone;
        out[i] = valueOf(asked[i]);
        if (!out[i])
            return false;
        if (mPreparations.size() == before)
            continue;
        std::size_t at = before;
        for (std::size_t earlier = 0; earlier < i; ++earlier) {
            const std::size_t count = mPreparations.size();
            out[earlier] = settled(*out[earlier], at, done);
            at += mPreparations.size() - count;
        }
    }
    return true;
}

const value* compiler::settled(const value& early, std::size_t at, const settledCall* done)
{
    if (early.asked().literal() || early.isTemporary())
        return &early;
    const unsigned cell = newCell();
    prepareAt<settleOperand>(at, done, early, cell);
    return temporary(early.asked(), cell);
}

template <class Made, class... Arguments>
void compiler::prepareAt(std::size_t at, const settledCall* done, Arguments&&... arguments)
{
    auto* const made = makeHere<Made>(std::forward<Arguments>(arguments)...);
    made->setDone(done);
    mPreparations.insert(mPreparations.begin() + static_cast<std::ptrdiff_t>(at), made);
}

const value* compiler::temporary(const operandShortCut& asked, unsigned cell)
{
    return make<cellValue>(asked, cell, true);
}

unsigned compiler::newCell()
{
    if (cellCount() == frame::mostCells)
        mIsPossible = false;
    else
        mNames.push_back(scriptcontext::returnparam()); // no variable is called so
    return cellCount() - 1;
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
