// The bases of the built-in statements, and the block.
#pragma once

#include "qxScriptBuiltins.h"
#include "qxScriptContext.h"
#include "qxScriptProvider.h"

#include "qxAutoPtr.h"
#include "qxSharedPtr.h"

#include <vector>

namespace qx::script
{

// Root of built-ins that read their own parameter list and keep their own providers.
class scriptbasestatement : public statement
{
public:
    void destroy() override { delete this; }
};

// Root of built-ins whose parameters have names.
class scriptbasesinglefunction : public singlefunction
{
public:
    void destroy() override { delete this; }

protected:
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
    bound.parse(
        Statement::messageName, call.params, call.flags,
        std::vector<declaredParameter>(std::begin(Statement::declared), std::end(Statement::declared)));
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

private:
    std::vector<sharedPtr<statement>> mStatements;
};

// A provider that a statement owns; copies of the statement get one of their own. May be null.
class ownedProvider
{
public:
    ownedProvider() = default;
    explicit ownedProvider(valueProvider* provider) noexcept : mpProvider(provider) {}
    ownedProvider(const ownedProvider& other) : mpProvider(other ? other->clone() : nullptr) {}
    ownedProvider(ownedProvider&&) noexcept = default;
    ownedProvider& operator=(ownedProvider&&) noexcept = default;

    const valueProvider* operator->() const { return &*mpProvider; }
    explicit operator bool() const noexcept { return static_cast<bool>(mpProvider); }

    // Evaluates the provider. False without one and when it fails.
    bool evaluate(codecontext& context, genericValue& value) const
    {
        return mpProvider && mpProvider->getValue(context, value);
    }

    // Evaluates the provider and reads the value as a T.
    template <readable T>
    bool read(codecontext& context, T& out) const
    {
        genericValue value;
        return evaluate(context, value) && value.getValue(out);
    }

private:
    autoPtr<valueProvider> mpProvider;
};

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
