// The bases of the built-in statements, and the block.
#pragma once

#include "qxScriptBuiltins.h"
#include "qxScriptContext.h"
#include "qxScriptProvider.h"
#include "qxScriptScope.h"
#include "qxScriptShortCuts.h"

#include "qxAutoPtr.h"
#include "qxSharedPtr.h"
#include "qxTypeConversion.h"

#include <algorithm>
#include <vector>

namespace qx::script
{

// Root of built-ins that read their own parameter list and keep their own providers.
class scriptbasestatement : public statement
{
public:
    void destroy() override { delete this; }

protected:
    scriptbasestatement() { stayInside(); }
};

// Root of built-ins whose parameters have names.
class scriptbasesinglefunction : public singlefunction
{
public:
    void destroy() override { delete this; }

protected:
    scriptbasesinglefunction() { stayInside(); }

    // Evaluates the parameter and reads it as a T. False, with `out` untouched, when it was not given or does
    // not read.
    template <readable T>
    bool read(const wchar_t* name, codecontext& context, T& out) const
    {
        genericValue value;
        return getParamValue(name, context, value) && value.getValue(out);
    }

    // The same for a parameter that has to be there: raises `failure` otherwise.
    template <readable T>
    T require(const wchar_t* name, codecontext& context, const wchar_t* failure) const
    {
        T out{};
        if (!read(name, context, out))
            execError(this, failure);
        return out;
    }

private:
    template <class Statement>
    friend statement* createNamed(const callText& call);
};

// Makes a statement with named parameters. It tells its name in messages and what it declares:
//     static constexpr const wchar_t* messageName = L"file_copy";
//     static constexpr declaredParameter declared[] = {{L"file", true}, {L"topath", true}, {L"tofile",
//     false}};
template <class Statement>
statement* createNamed(const callText& call)
{
    autoPtr<Statement> made(new Statement);
    scriptbasesinglefunction& bound = *made;
    bound.parse(Statement::messageName, call, Statement::declared);
    return made.release();
}

// The two ways in which a statement writes its result.

// The result is a typed slot: a value that is there keeps its type. Throws the bool value false where it
// cannot take the value.
template <writable T>
void writeToSlot(genericValue& result, const T& value)
{
    if (!result.setValue(value, false))
        throw false;
}

// The result becomes a fresh value, whatever it held.
template <holdable T>
void replaceResult(genericValue& result, const T& value)
{
    result = genericValue(value);
}

// A block: statements in text order, run in a scope of their own.
class compoundstatement final : public scriptbasestatement
{
public:
    // Takes over `child` and appends it. A null child gives false and changes nothing.
    bool add(statement* child);

    // Both blocks share their children.
    statement* clone() const override { return new compoundstatement(*this); }
    // Runs the children until one raises a signal. The value of a block is what was returned inside it, if
    // anything.
    void execute(codecontext& context, genericValue& result) const override;
    void run(codecontext& context) const override;

private:
    std::vector<sharedPtr<statement>> mStatements;
};

// What lies behind a provider, for short cuts: to be asked only where cell::shortCutsAllowed. Borrows from
// the provider.
class shortOperand
{
public:
    // `provider` may be null.
    explicit shortOperand(const valueProvider* provider = nullptr)
    {
        if (!provider)
            return;
        const statement* const nested = provider->nested();
        if (nested && nested->shortCutDepth() != statement::noShortCut)
            mpNested = nested;
        mpLiteral = provider->literal();
        if (mpLiteral)
            mWord = cell::makeText(*mpLiteral);
    }

    // For offerShortCuts of the statement around it.
    unsigned depth() const noexcept
    {
        return mpLiteral ? 0u : mpNested ? mpNested->shortCutDepth() : statement::noShortCut;
    }
    // A literal that reads as a T is read now, and not at each run.
    template <class T>
    void fold()
    {
        T value{};
        if (mpLiteral && typeconvert::dtconvert(value, *mpLiteral, 0, nullptr))
            mWord = cell::make(value);
    }
    // The same as a twin did that was made from the same text.
    void foldAs(const shortOperand& twin) noexcept { mWord = twin.mWord; }
    // The word of its value, see statement::smallValue.
    cell::word smallValue(codecontext& context) const
    {
        return mpNested ? mpNested->smallValue(context) : mWord;
    }
    // Its value as text, see statement::textValue.
    bool textValue(codecontext& context, textScratch& text) const
    {
        if (mpLiteral)
            text.borrow(*mpLiteral);
        return mpLiteral || (mpNested && mpNested->textValue(context, text));
    }
    // True when its value keeps the type of what it is written into.
    bool keepsType() const noexcept { return mpNested ? mpNested->keepsType() : mpLiteral != nullptr; }
    // True when its value is a text.
    bool givesText() const noexcept { return mpNested ? mpNested->givesText() : mpLiteral != nullptr; }

private:
    const statement* mpNested = nullptr; // if it has short cuts
    const string* mpLiteral = nullptr;   // null for what is no literal
    cell::word mWord = cell::refused;    // of a literal
};

// A provider that a statement owns; copies of the statement get one of their own. May be null.
class ownedProvider
{
public:
    ownedProvider() = default;
    explicit ownedProvider(valueProvider* provider) : mpProvider(provider), mShort(provider) {}
    ownedProvider(const ownedProvider& other) : ownedProvider(other ? other->clone() : nullptr)
    {
        mShort.foldAs(other.mShort);
    }
    ownedProvider(ownedProvider&&) noexcept = default;
    ownedProvider& operator=(ownedProvider&&) noexcept = default;

    const valueProvider* operator->() const { return &*mpProvider; }
    explicit operator bool() const noexcept { return static_cast<bool>(mpProvider); }

    const shortOperand& shortCut() const noexcept { return mShort; }
    template <class T>
    void fold()
    {
        mShort.fold<T>();
    }

    // Evaluates the provider into `value`, which is null and nobody else's. False without a provider and when
    // it fails.
    bool evaluate(codecontext& context, genericValue& value) const
    {
        return (cell::shortCutsAllowed() && evaluateShort(context, value)) ||
               (mpProvider && mpProvider->getValue(context, value));
    }

    // Evaluates the provider and reads the value as a T.
    template <readable T>
    bool read(codecontext& context, T& out) const
    {
        if constexpr (cell::small<T>) {
            const cell::word w = cell::shortCutsAllowed() ? mShort.smallValue(context) : cell::refused;
            if (w != cell::refused)
                return cell::read(w, out);
        } else if constexpr (std::is_same_v<T, string>) {
            textScratch text;
            if (cell::shortCutsAllowed() && mShort.textValue(context, text)) {
                out = text.take();
                return true;
            }
        }
        genericValue value;
        return evaluate(context, value) && value.getValue(out);
    }

private:
    bool evaluateShort(codecontext& context, genericValue& value) const
    {
        const cell::word w = mShort.smallValue(context);
        if (w != cell::refused) {
            cell::access::store(value, w);
            return true;
        }
        textScratch text;
        if (!mShort.givesText() || !mShort.textValue(context, text))
            return false;
        value = cell::made(text.take());
        return true;
    }

    autoPtr<valueProvider> mpProvider;
    shortOperand mShort;
};

// The depth of several operands, for offerShortCuts: that of the deepest, noShortCut if one has none.
template <class... Operand>
unsigned depthOf(const Operand&... operands)
{
    return std::max({0u, operands.shortCut().depth()...});
}

// Reports a text that a factory refuses and throws the bool value false.
template <class... Args>
[[noreturn]] void refuse(const wchar_t* format, const Args&... arguments)
{
    assertMsg(format, arguments...);
    throw false;
}

// The provider of the parameter at `place`. Null where the call has none there or its text makes none.
inline ownedProvider providerOf(const callText& call, std::size_t place)
{
    if (place >= call.params.size())
        return ownedProvider();
    return ownedProvider(valueProvider::createFrom(call.params[place], call.flags));
}

// The same for one that has to be made: where it is null the call is refused with `failure`, which may name
// the text of the parameter.
inline ownedProvider requireProvider(const callText& call, std::size_t place, const wchar_t* failure)
{
    ownedProvider made = providerOf(call, place);
    if (!made)
        refuse(failure, place < call.params.size() ? call.params[place].view() : std::wstring_view());
    return made;
}

} // namespace qx::script
