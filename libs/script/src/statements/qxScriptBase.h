// The bases of the built-in statements, how they write their results, and how a factory refuses a text.
#pragma once

#include "contexts/qxScriptScope.h"
#include "qxScriptContext.h"
#include "statements/qxScriptBuiltins.h"
#include "statements/qxScriptOperand.h"
#include "statements/qxScriptRunning.h"

#include "qxAutoPtr.h"
#include "qxFreeLists.h"

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

    // Reads a parameter that has to be there: raises its failure otherwise.
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
    inside::bind(*made, Statement::messageName, call, Statement::declared);
    static_cast<scriptbasesinglefunction&>(*made).parsed();
    return made.release();
}

// The two ways in which a statement writes its result.

// The result is a typed slot: a value that is there keeps its type. Throws the bool value false where it
// cannot take the value.
template <writable T>
void writeToSlot(genericValue& result, const T& value)
{
    if constexpr (cell::small<T>) {
        const cell::word w = shortCutsAllowed() ? cell::make(value) : cell::refused;
        if (w != cell::refused && writeTyped(result, w))
            return;
    }
    if (!result.setValue(value, false))
        throw false;
}

// writeToSlot for a text that may be emptied.
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

// Reports a text that a factory refuses and throws the bool value false.
template <class... Args>
[[noreturn]] void refuse(const wchar_t* format, const Args&... arguments)
{
    assertMsg(format, arguments...);
    throw false;
}

} // namespace qx::script
