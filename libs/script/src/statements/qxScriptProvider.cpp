// The three forms of a parameter: literal, nested call, variable.
#include "qxScriptProvider.h"

#include "parser/qxScriptMarks.h"
#include "parser/qxScriptSource.h"
#include "qxScriptParser.h"

#include "qxFreeLists.h"

#include <new>

namespace qx::script
{

namespace
{

class constantProvider final : public valueProvider, public fromFreeLists
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

class statementProvider final : public valueProvider, public fromFreeLists
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
    const statementParser& parser = *statementParser::instance();
    if (isPlainName(name.view(), marked))
        return makeFrom(parser.createVariable(name, flags), name);
    sourceText call(L"getvar(" + name.text() + L")");
    return makeFrom(parser.createStatementFrom(textPiece(call), flags), name);
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
    sourceText source(text);
    return createFrom(textPiece(source), flags);
}

valueProvider* valueProvider::createFrom(const textPiece& text, int flags)
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
        return call ? makeFrom(statementParser::instance()->createCall(text, start, flags), text)
                    : makeFromVariable(text, start.marks, flags);
    } catch (const std::bad_alloc&) {
        if (literal || call)
            throw outOfMemoryException();
        return nullptr;
    }
}

} // namespace qx::script
