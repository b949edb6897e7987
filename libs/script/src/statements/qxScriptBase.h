// The bases of the built-in statements, and the block.
#pragma once

#include "contexts/qxScriptScope.h"
#include "qxScriptContext.h"
#include "statements/qxScriptBuiltins.h"
#include "statements/qxScriptProviders.h"
#include "statements/qxScriptRunning.h"
#include "statements/qxScriptShortCuts.h"

#include "qxAutoPtr.h"
#include "qxFreeLists.h"
#include "qxSharedPtr.h"
#include "qxTypeConversion.h"

#include <algorithm>
#include <vector>

namespace qx::script
{

// Root of built-ins that read their own parameter list and keep their own providers.
class scriptbasestatement : public statement, public fromFreeLists
{
public:
    void destroy() override { delete this; }
};

// Root of built-ins whose parameters have names.
class scriptbasesinglefunction : public singlefunction, public fromFreeLists
{
public:
    void destroy() override { delete this; }

protected:
    // Evaluates the parameter and reads it as a T. False, with `out` untouched, when it was not given or does
    // not read.
    template <readable T>
    bool read(const declaredParameter& asked, codecontext& context, T& out) const
    {
        genericValue value;
        if (!getParamValue(asked.name, context, value))
            return false;
        if constexpr (std::is_same_v<T, string>)
            if (string* const sole = soleText(value)) {
                out = std::move(*sole);
                return true;
            }
        return value.getValue(out);
    }

    // The same for a parameter that has to be there: raises its failure otherwise.
    template <readable T>
    T require(const declaredParameter& asked, codecontext& context) const
    {
        T out{};
        if (!read(asked, context, out))
            execError(this, asked.failure);
        return out;
    }

private:
    template <class Statement>
    friend statement* createNamed(const callText& call);

    // Once the parameters are bound.
    virtual void parsed() {}
};

// Makes a statement with named parameters, which tells its name in messages and what it declares: see
// qxScriptRows.h.
template <class Statement>
statement* createNamed(const callText& call)
{
    autoPtr<Statement> made(new Statement);
    scriptbasesinglefunction& bound = *made;
    bound.parse(Statement::messageName, call, Statement::declared);
    bound.parsed();
    return made.release();
}

// The two ways in which a statement writes its result.

// The result is a typed slot: a value that is there keeps its type. Throws the bool value false where it
// cannot take the value.
template <writable T>
void writeToSlot(genericValue& result, const T& value)
{
    if constexpr (cell::small<T>) {
        const cell::word w = cell::shortCutsAllowed() ? cell::make(value) : cell::refused;
        if (w != cell::refused && writeTyped(result, w))
            return;
    }
    if (!result.setValue(value, false))
        throw false;
}

// The same with a text that may be emptied.
void writeToSlot(genericValue& result, string&& text);

// The result becomes a fresh value, whatever it held.
template <holdable T>
void replaceResult(genericValue& result, const T& value)
{
    if constexpr (cell::small<T>) {
        const cell::word w = cell::make(value);
        const cell::word before = cell::access::load(result);
        if (w != cell::refused && !cell::isHolder(before) && cell::access::storeIf(result, before, w))
            return;
    }
    result = genericValue(value);
}
inline void replaceResult(genericValue& result, string&& text)
{
    result = cell::made(std::move(text));
}

// A block: statements in text order, run in a scope of their own.
class compoundstatement final : public scriptbasestatement
{
public:
    static constexpr ending ends = ending::block;

    compoundstatement() { stayInside(this); }

    void reserve(std::size_t children) { mStatements.reserve(children); }
    // Takes over `child` and appends it. A null child gives false and changes nothing.
    bool add(statement* child);

    // Both blocks share their children.
    statement* clone() const override { return new compoundstatement(*this); }
    // Runs the children until one raises a signal. The value of a block is what was returned inside it, if
    // anything.
    void execute(codecontext& context, genericValue& result) const override;
    void run(codecontext& context) const;
    void runInside(codecontext& block) const;

private:
    std::vector<sharedPtr<statement>, freeListAllocator<sharedPtr<statement>>> mStatements;
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
    // The same as a twin did that was made from the same text.
    void foldAs(const shortOperand& twin) noexcept { mWord = twin.mWord; }
    // The word of its value, see statement::smallValue.
    cell::word smallValue(codecontext& context) const
    {
        return mpShort ? inside::smallValue(*mpShort, context) : mWord;
    }
    // Reads its value as a T. False, with `out` untouched, where it declines and where the value does not
    // read.
    template <class T>
    [[gnu::always_inline]] bool read(codecontext& context, T& out) const
    {
        const cell::word w = smallValue(context);
        if constexpr (heldNumber<T>)
            if (w == cell::refused)
                return readTextAs(context, out);
        return readShortly(w, out);
    }
    // Its value as text, see statement::textValue.
    bool textValue(codecontext& context, textScratch& text) const
    {
        if (mpLiteral)
            text.borrow(*mpLiteral);
        return mpLiteral ||
               (mpShort && declinesWithoutMemory([&] { return inside::textValue(*mpShort, context, text); }));
    }
    const genericValue* valueInPlace(codecontext& context) const
    {
        return mpShort ? inside::valueInPlace(*mpShort, context) : nullptr;
    }
    // The text of a literal; null for what is none.
    const string* literal() const noexcept { return mpLiteral; }
    // True when its value keeps the type of what it is written into.
    bool keepsType() const noexcept { return mpNested ? inside::keepsType(*mpNested) : mpLiteral != nullptr; }
    // True when its value is a text.
    bool givesText() const noexcept { return mpShort ? inside::givesText(*mpShort) : mpLiteral != nullptr; }
    // The statement of a call or a variable.
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
    const statement* mpShort = nullptr;  // the same if it has short cuts
    const string* mpLiteral = nullptr;   // null for what is no literal
    cell::word mWord = cell::refused;    // of a literal
};

// What a statement asks of a provider, which it borrows and which may be null.
class boundOperand
{
public:
    explicit boundOperand(const valueProvider* provider = nullptr) : mpBound(provider), mShort(provider) {}

    explicit operator bool() const noexcept { return mpBound != nullptr; }

    const shortOperand& shortCut() const noexcept { return mShort; }
    template <class T>
    void fold()
    {
        mShort.fold<T>();
    }
    // The same as a twin did that was made from the same text.
    void foldAs(const boundOperand& twin) noexcept { mShort.foldAs(twin.mShort); }

    // Evaluates by a short cut into `value`, which is null and nobody else's. False, without an effect, where
    // there is none. To be called only where cell::shortCutsAllowed.
    bool evaluateShort(codecontext& context, genericValue& value) const
    {
        const cell::word w = mShort.smallValue(context);
        if (w != cell::refused) {
            cell::access::store(value, w);
            return true;
        }
        return mShort.givesText() && evaluateText(context, value);
    }

    // Evaluates the provider into `value`, which is null and nobody else's. False without a provider and when
    // it fails.
    [[gnu::always_inline]] bool evaluate(codecontext& context, genericValue& value) const
    {
        return (mShort.depth() != inside::noShortCut && cell::shortCutsAllowed() &&
                evaluateShort(context, value)) ||
               write(context, value);
    }

    // Evaluates the provider into a value that may hold something, as its statement or literal writes it.
    // False as above.
    bool write(codecontext& context, genericValue& value) const
    {
        if (!mShort.nested())
            return mpBound && mpBound->getValue(context, value);
        inside::exec(*mShort.nested(), context, value);
        return true;
    }

    // Evaluates the provider and reads the value as a T.
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
                if (cell::shortCutsAllowed() && mShort.read(context, out))
                    return true;
            genericValue value;
            if (!evaluate(context, value))
                return false;
            if constexpr (heldNumber<T>)
                if (const string* const text = soleText(value); text && cell::shortCutsAllowed())
                    return readNumber(*text, out);
            return value.getValue(out);
        }
    }

    // The same for a text. What `text` borrows holds until something has an effect, such as another operand.
    bool readText(codecontext& context, textScratch& text) const
    {
        return (cell::shortCutsAllowed() && mShort.textValue(context, text)) || readLongText(context, text);
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

    const valueProvider* mpBound;
    shortOperand mShort;
};

// A provider that a statement owns; copies of the statement get one of their own. May be null.
class ownedProvider : public boundOperand
{
public:
    ownedProvider() = default;
    explicit ownedProvider(valueProvider* provider) : boundOperand(provider), mpProvider(provider) {}
    ownedProvider(const ownedProvider& other) : ownedProvider(other ? other->clone() : nullptr)
    {
        foldAs(other);
    }
    ownedProvider(ownedProvider&&) noexcept = default;
    ownedProvider& operator=(ownedProvider&&) noexcept = default;

    const valueProvider* operator->() const { return &*mpProvider; }

private:
    autoPtr<valueProvider> mpProvider;
};

// The depth of several operands, for offerShortCuts: that of the deepest, inside::noShortCut if one has none.
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
    return ownedProvider(providerFrom(call.params[place], call.flags));
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
