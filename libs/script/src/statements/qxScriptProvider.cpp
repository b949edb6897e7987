// The three forms of a parameter: literal, nested call, variable.
#include "statements/qxScriptProviders.h"

#include "parser/qxScriptParsing.h"

#include <new>

namespace qx::script
{

namespace
{

bool isLiteral(std::wstring_view text)
{
    return text.front() == L'"' && text.back() == L'"';
}

// The provider of a statement that was made of `text`.
valueProvider* makeFrom(statement* made, const textPiece& text)
{
    sharedPtr<statement> nested(made);
    if (!nested)
        throw errParsingException(text.counted());
    return new statementProvider(std::move(nested));
}

// True for a name with these marks that stays in one piece when `getvar(NAME)` is parsed.
bool isPlainName(std::wstring_view name, unsigned char marked)
{
    return name.front() > L' ' && name.back() > L' ' &&
           !(marked & (marks::statementMark | marks::parameterMark | marks::lineEnd));
}

valueProvider* makeFromVariable(const textPiece& name, unsigned char marked, int flags)
{
    if (isPlainName(name.view(), marked))
        return makeFrom(parsing::variableFrom(name, flags), name);
    sourceText call(L"getvar(" + name.text() + L")");
    return makeFrom(parsing::statementFrom(textPiece(call), flags), name);
}

} // namespace

valueProvider::~valueProvider() = default;

bool constantProvider::getValue(codecontext&, genericValue& value) const
{
    if (!value.setValue(mText, false))
        throw false;
    return true;
}

bool statementProvider::getValue(codecontext& context, genericValue& value) const
{
    if (!mStatement)
        throw unexpectedErrorException(L"statementProvider::getValue: no statement given");
    mStatement->exec(context, value);
    return true;
}

valueProvider* statementProvider::clone() const
{
    return new statementProvider(sharedPtr<statement>(mStatement ? mStatement->clone() : nullptr));
}

valueProvider* valueProvider::createFrom(const string& text, int flags)
{
    sourceText source(text);
    return providerFrom(textPiece(source), flags);
}

valueProvider* providerFrom(const textPiece& text, int flags)
{
    const std::wstring_view view = text.view();
    if (view.empty())
        throw errParsingException(text.counted());
    const bool literal = isLiteral(view);
    bool call = false;
    try {
        if (literal)
            return new constantProvider(view.size() == 1 ? std::wstring_view()
                                                         : view.substr(1, view.size() - 2));
        const marks::head start(view);
        call = start.size < view.size();
        return call ? makeFrom(parsing::callFrom(text, start, flags), text)
                    : makeFromVariable(text, start.marks, flags);
    } catch (const std::bad_alloc&) {
        if (literal || call)
            throw outOfMemoryException();
        return nullptr;
    }
}

} // namespace qx::script
