// What stands at a parameter of a statement of the engine: a literal, a nested call or a variable, or
// nothing.
//
// A statement reads its parameters through operands alone. An operand tries the short cut of what stands
// there first, and evaluates its provider into a value otherwise; both give the same.
#pragma once

#include "statements/qxScriptProviders.h"
#include "statements/qxScriptRunning.h"
#include "statements/qxScriptShortCuts.h"

#include "qxAutoPtr.h"
#include "qxTypeConversion.h"

#include <algorithm>

namespace qx::script
{

// The short cut to what an operand holds. Borrows from its provider. Its questions may be asked only where
// shortCutsAllowed; one that declines has had no effect.
class operandShortCut
{
public:
    // `provider` may be null.
    explicit operandShortCut(const valueProvider* provider = nullptr)
    {
        if (!provider)
            return;
        if (const auto* const call = asProvider<statementProvider>(*provider))
            mpNested = call->nested();
        if (mpNested && inside::depth(*mpNested) != inside::noShortCut)
            mpShort = mpNested;
        if (const auto* const constant = asProvider<constantProvider>(*provider)) {
            mpLiteral = &constant->text();
            mWord = cell::makeText(*mpLiteral);
        }
    }

    // For offerShortCuts of the statement around it.
    unsigned depth() const noexcept
    {
        return mpLiteral ? 0u : mpShort ? inside::depth(*mpShort) : inside::noShortCut;
    }
    // A literal that reads as a T is read now, and not at each run.
    template <class T>
    void fold()
    {
        T value{};
        if (mpLiteral && typeconvert::dtconvert(value, *mpLiteral, 0, nullptr))
            mWord = cell::make(value);
    }
    // Takes over what `twin` folded, which was made from the same text.
    void foldAs(const operandShortCut& twin) noexcept { mWord = twin.mWord; }
    // For frames of compiled code, see namedVariable::resolve. False where it has no short cut in them.
    bool resolve(compiler& names) const { return mpLiteral || (mpShort && inside::resolve(*mpShort, names)); }
    // The word of its value, see shortCuts::smallValue.
    cell::word smallValue(codecontext& context) const
    {
        return mpShort ? inside::smallValue(*mpShort, context) : mWord;
    }
    // Reads its value as a T. False, with `out` untouched, where it declines and where the value does not
    // read.
    template <class T>
    [[gnu::always_inline]] bool read(codecontext& context, T& out) const // W1
    {
        const cell::word w = smallValue(context);
        if constexpr (heldNumber<T>)
            if (w == cell::refused)
                return readTextAs(context, out);
        return readShortly(w, out);
    }
    // Its value as text, see shortCuts::textValue.
    bool textValue(codecontext& context, textScratch& text) const
    {
        if (mpLiteral)
            text.borrow(*mpLiteral);
        return mpLiteral ||
               (mpShort && declinesWithoutMemory([&] { return inside::textValue(*mpShort, context, text); }));
    }
    // The variable itself, see shortCuts::valueInPlace.
    const genericValue* valueInPlace(codecontext& context) const
    {
        return mpShort ? inside::valueInPlace(*mpShort, context) : nullptr;
    }
    // The word of a literal, if that is small.
    cell::word word() const noexcept { return mWord; }
    // A value that is not small, into `out`, which is null and nobody else's. False, without an effect, where
    // it declines.
    bool takeOtherwise(codecontext& context, genericValue& out) const;
    // The text of a literal; null for what is none.
    const string* literal() const noexcept { return mpLiteral; }
    // True when its value keeps the type of what it is written into.
    bool keepsType() const noexcept { return mpNested ? inside::keepsType(*mpNested) : mpLiteral != nullptr; }
    // True when its value is a text.
    bool givesText() const noexcept { return mpShort ? inside::givesText(*mpShort) : mpLiteral != nullptr; }
    // The statement of a call or a variable; null for a literal.
    const statement* nested() const noexcept { return mpNested; }

private:
    // Reads a number out of a text, in a variable or made by a statement. Not inline, so that not every
    // reader of a number has room for a text.
    template <heldNumber T>
    [[gnu::noinline]] bool readTextAs(codecontext& context, T& out) const
    {
        if (const genericValue* const variable = valueInPlace(context)) {
            const string* const held = heldInPlace<string>(*variable);
            return held && readNumber(*held, out);
        }
        textScratch text;
        return givesText() && textValue(context, text) && readNumber(text.view(), out);
    }

    const statement* mpNested = nullptr; // null for a literal
    const statement* mpShort = nullptr;  // mpNested if that has short cuts
    const string* mpLiteral = nullptr;   // null for what is no literal
    cell::word mWord = cell::refused;    // of a literal
};

class operand
{
public:
    // Nothing: false for each who asks.
    operand() = default;
    // Takes over the provider, which may be null.
    explicit operand(valueProvider* provider) : mpOwned(provider), mpProvider(provider), mShort(provider) {}
    // One whose provider, which may be null, belongs to somebody who lasts as long.
    static operand borrowing(const valueProvider* provider)
    {
        operand made;
        made.mpProvider = provider;
        made.mShort = operandShortCut(provider);
        return made;
    }
    // The copy has a provider of its own.
    operand(const operand& other) : operand(other ? other.mpProvider->clone() : nullptr) { foldAs(other); }
    operand(operand&&) noexcept = default;
    operand& operator=(operand&&) noexcept = default;

    explicit operator bool() const noexcept { return mpProvider != nullptr; }

    const operandShortCut& shortCut() const noexcept { return mShort; }
    bool resolve(compiler& names) const { return mShort.resolve(names); }
    // A literal that reads as a T is read now, and not at each run by its short cut.
    template <class T>
    void fold()
    {
        mShort.fold<T>();
    }
    // Takes over what `twin` folded, which was made from the same text.
    void foldAs(const operand& twin) noexcept { mShort.foldAs(twin.mShort); }

    // Evaluates by a short cut into `value`, which is null and nobody else's. False, without an effect, where
    // there is none. To be called only where shortCutsAllowed.
    bool evaluateShort(codecontext& context, genericValue& value) const
    {
        const cell::word w = mShort.smallValue(context);
        if (w != cell::refused) {
            cell::access::store(value, w);
            return true;
        }
        return mShort.givesText() && evaluateText(context, value);
    }

    // Evaluates into `value`, which is null and nobody else's. False without a provider and when it fails.
    [[gnu::always_inline]] bool evaluate(codecontext& context, genericValue& value) const // W1, W5
    {
        return (mShort.depth() != inside::noShortCut && shortCutsAllowed() &&
                evaluateShort(context, value)) ||
               write(context, value);
    }

    // Evaluates into a value that may hold something, as its statement or literal writes it. False as above.
    bool write(codecontext& context, genericValue& value) const
    {
        if (!mShort.nested())
            return mpProvider && mpProvider->getValue(context, value);
        inside::exec(*mShort.nested(), context, value);
        return true;
    }

    // Evaluates and reads the value as a T. False, with `out` untouched, without a provider and where the
    // value does not read.
    template <readable T>
    bool read(codecontext& context, T& out) const
    {
        if constexpr (std::is_same_v<T, string>) {
            textScratch text;
            if (!readText(context, text))
                return false;
            out = text.take();
            return true;
        } else {
            if constexpr (cell::small<T>)
                if (shortCutsAllowed() && mShort.read(context, out))
                    return true;
            genericValue value;
            if (!evaluate(context, value))
                return false;
            if constexpr (heldNumber<T>)
                if (const string* const text = soleText(value); text && shortCutsAllowed())
                    return readNumber(*text, out);
            return value.getValue(out);
        }
    }

    // Reads the value as a text. What `text` borrows holds until something has an effect, such as another
    // operand.
    bool readText(codecontext& context, textScratch& text) const
    {
        return (shortCutsAllowed() && mShort.textValue(context, text)) || readLongText(context, text);
    }

private:
    // Not inline, so that an operand without a text does not have the room for one on the stack.
    [[gnu::noinline]] bool evaluateText(codecontext& context, genericValue& value) const
    {
        textScratch text;
        return mShort.textValue(context, text) && declinesWithoutMemory([&] {
                   cell::access::fill(value, text.takeValue());
                   return true;
               });
    }
    bool readLongText(codecontext& context, textScratch& text) const;

    autoPtr<valueProvider> mpOwned; // null for one that borrows
    const valueProvider* mpProvider = nullptr;
    operandShortCut mShort;
};

// The depth of several operands, for offerShortCuts: that of the deepest, inside::noShortCut if one has none.
template <class... Operand>
unsigned depthOf(const Operand&... operands)
{
    return std::max({0u, operands.shortCut().depth()...});
}

// The parameter at `place` of a call. Nothing where the call has none there or its text makes none.
operand operandAt(const callText& call, std::size_t place);

// The parameter at `place`, which has to be made: where it is nothing the call is refused with `failure`,
// which may name the text of the parameter.
operand requireOperand(const callText& call, std::size_t place, const wchar_t* failure);

} // namespace qx::script
