// The values of operations: cells, literals, and what the typed operators make of two of them.
#pragma once

#include "compiled/qxScriptCompiler.h"

namespace qx::script
{

class cellValue final : public value
{
public:
    cellValue(const operandShortCut& asked, unsigned cell, bool isTemporary = false) noexcept
        : value(asked, cell, isTemporary)
    {}

    cell::word small(frame& f) const override
    {
        const cell::word w = f.word(cell());
        return cell::isHolder(w) ? cell::refused : w;
    }
};

class literalValue final : public value
{
public:
    explicit literalValue(const operandShortCut& asked) noexcept : value(asked), mWord(asked.word()) {}

    cell::word small(frame&) const override { return mWord; }

private:
    cell::word mWord;
};

// What a statement gives by its short cuts, which find their variables in the frame.
class shortCutValue final : public value
{
public:
    explicit shortCutValue(const operandShortCut& asked) noexcept : value(asked) {}

    cell::word small(frame& f) const override { return asked().smallValue(f); }
};

// --- The operands of an operator ---

struct fromCell
{
    template <class T>
    [[gnu::always_inline]] bool read(frame& f, T& out) const
    {
        return readInPlace(f.word(cell), out);
    }

    unsigned cell;
};

template <class T>
struct fromLiteral
{
    [[gnu::always_inline]] bool read(frame&, T& out) const
    {
        out = held;
        return true;
    }

    T held;
};

struct fromValue
{
    template <class T>
    [[gnu::always_inline]] bool read(frame& f, T& out) const
    {
        return readInPlace(asked->small(f), out);
    }

    const value* asked;
};

// A typed operator whose operands are read in place. Where that does not do, the short cuts of its statement
// tell: they know texts, and what its functor cannot do.
template <class F, class A, class B>
class binaryValue final : public value
{
public:
    binaryValue(const operandShortCut& asked, const A& first, const B& second) noexcept
        : value(asked), mFirst(first), mSecond(second)
    {}

    cell::word small(frame& f) const override
    {
        typename F::first a{};
        typename F::second b{};
        if (mFirst.read(f, a) && mSecond.read(f, b) && !F::faults(a, b)) [[likely]]
            return cell::make(F()(a, b));
        return smallOtherwise(f);
    }

private:
    A mFirst;
    B mSecond;
};

// The operator in the shape that suits its operands. Null where one of them has no value for operations.
template <class F>
const value* compileBinary(const operandShortCut& asked, const operandShortCut& first,
                           const operandShortCut& second, compiler& c)
{
    asked.resolve(c); // for what its short cuts have to tell
    const auto both = c.valuesOf(first, second);
    const value* const a = both.first;
    const value* const b = both.second;
    if (!a || !b)
        return nullptr;
    const auto with = [&]<class A>(const A& one) -> const value* {
        typename F::second literal{};
        if (second.literal() && readShortly(second.word(), literal))
            return c.make<binaryValue<F, A, fromLiteral<typename F::second>>>(
                asked, one, fromLiteral<typename F::second>{literal});
        if (b->cell() != compiler::noCell)
            return c.make<binaryValue<F, A, fromCell>>(asked, one, fromCell{b->cell()});
        return c.make<binaryValue<F, A, fromValue>>(asked, one, fromValue{b});
    };
    if (a->cell() != compiler::noCell)
        return with(fromCell{a->cell()});
    return with(fromValue{a});
}

} // namespace qx::script
