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
};

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

} // namespace qx::script
