// The three forms of a parameter: literal, nested call, variable.
#include "qxScriptProvider.h"

#include "qxScriptParser.h"

#include <new>

namespace qx::script
{

namespace
{

class constantProvider final : public valueProvider
{
public:
    explicit constantProvider(std::wstring_view text) : mText(std::wstring(text)) {}

    bool getValue(codecontext&, genericValue& value) const override
    {
        if (!value.setValue(mText, false))
            throw false;
        return true;
    }
    valueProvider* clone() const override { return new constantProvider(*this); }
    const string* literal() const override { return &mText; }

private:
    string mText;
};

class statementProvider final : public valueProvider
{
public:
    // A null statement fails each read.
    explicit statementProvider(sharedPtr<statement> nested) noexcept : mStatement(std::move(nested)) {}

    bool getValue(codecontext& context, genericValue& value) const override
    {
        if (!mStatement)
            throw unexpectedErrorException(L"statementProvider::getValue: no statement given");
        mStatement->exec(context, value);
        return true;
    }
    valueProvider* clone() const override
    {
        return new statementProvider(sharedPtr<statement>(mStatement ? mStatement->clone() : nullptr));
    }
    const statement* nested() const override { return mStatement.get(); }

private:
    sharedPtr<statement> mStatement;
};

bool isLiteral(std::wstring_view text)
{
    return text.front() == L'"' && text.back() == L'"';
}

// The provider of a call; `shown` is the text that a failure names.
valueProvider* makeFromCall(const textSlice& call, const textSlice& shown, int flags)
{
    sharedPtr<statement> nested(statementParser::instance()->createStatementFrom(call, flags));
    if (!nested)
        throw errParsingException(shown);
    return new statementProvider(std::move(nested));
}

valueProvider* makeFromVariable(const textSlice& name, int flags)
{
    string call(L"getvar(");
    call.append(name.view()).push_back(L')');
    return makeFromCall(textSlice(std::move(call)), name, flags);
}

} // namespace

valueProvider::~valueProvider() = default;

const statement* valueProvider::nested() const
{
    return nullptr;
}

const string* valueProvider::literal() const
{
    return nullptr;
}

valueProvider* valueProvider::createFrom(const string& text, int flags)
{
    return createFrom(textSlice(text), flags);
}

valueProvider* valueProvider::createFrom(const textSlice& text, int flags)
{
    const std::wstring_view view = text.view();
    if (view.empty())
        throw errParsingException(text);
    const bool literal = isLiteral(view);
    const bool call = !literal && view.find(L'(') != view.npos;
    try {
        if (literal)
            return new constantProvider(view.size() == 1 ? std::wstring_view()
                                                         : view.substr(1, view.size() - 2));
        return call ? makeFromCall(text, text, flags) : makeFromVariable(text, flags);
    } catch (const std::bad_alloc&) {
        if (literal || call)
            throw outOfMemoryException();
        return nullptr;
    }
}

} // namespace qx::script
