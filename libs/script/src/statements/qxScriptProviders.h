// The providers of the engine, for those who can do better than ask for the value each time.
#pragma once

#include "parser/qxScriptSource.h"
#include "qxScriptProvider.h"
#include "qxScriptStatement.h"

#include "qxFreeLists.h"

#include <typeinfo>

namespace qx::script
{

// A literal.
class constantProvider final : public valueProvider, public fromFreeLists
{
public:
    explicit constantProvider(std::wstring_view text) : mText(std::wstring(text)) {}

    const string& text() const noexcept { return mText; }
    bool getValue(codecontext& context, genericValue& value) const override;
    valueProvider* clone() const override { return new constantProvider(*this); }

private:
    string mText;
};

// A nested call, or a variable.
class statementProvider final : public valueProvider, public fromFreeLists
{
public:
    // A null statement fails each read.
    explicit statementProvider(sharedPtr<statement> nested) noexcept : mStatement(std::move(nested)) {}

    const statement* nested() const noexcept { return mStatement.get(); }
    bool getValue(codecontext& context, genericValue& value) const override;
    valueProvider* clone() const override;

private:
    sharedPtr<statement> mStatement;
};

// valueProvider::createFrom for a piece of a text that is being parsed.
valueProvider* providerFrom(const textPiece& text, int flags);

// The provider as one of these classes; null where it is another.
template <class Provider>
const Provider* asProvider(const valueProvider& provider) noexcept
{
    return typeid(provider) == typeid(Provider) ? static_cast<const Provider*>(&provider) : nullptr;
}

} // namespace qx::script
