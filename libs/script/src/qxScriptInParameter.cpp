// Declared parameters of script functions.
#include "qxScriptInParameter.h"

#include "qxScriptContext.h"
#include "qxScriptException.h"

#include "qxTextView.h"

namespace qx::script
{

namespace
{

constexpr std::wstring_view blanks = L" \t";

// A declaration cut into its pieces, each as written.
struct declarationText
{
    std::wstring_view kind;
    std::wstring_view type;
    std::wstring_view name;
    std::wstring_view defaultText;
};

declarationText cut(const string& declaration)
{
    const std::wstring_view whole = declaration;
    declarationText cutText;
    if (const std::size_t open = whole.find(L'<'); open != whole.npos) {
        const std::size_t close = whole.find(L'>', open);
        if (close == whole.npos)
            throw errParsingException(declaration.c_str());
        cutText.kind = whole.substr(0, open);
        cutText.type = whole.substr(open + 1, close - open - 1);
        cutText.name = whole.substr(close + 1);
    } else {
        const std::size_t blank = whole.find_first_of(blanks);
        cutText.kind = whole.substr(0, blank);
        cutText.name = blank == whole.npos ? whole : whole.substr(blank + 1);
    }
    if (const std::size_t equals = cutText.name.find(L'='); equals != whole.npos) {
        cutText.defaultText = trimmed(cutText.name.substr(equals + 1), blanks);
        cutText.name = cutText.name.substr(0, equals);
    }
    return cutText;
}

string withoutAnyBlanks(std::wstring_view text)
{
    string copy{std::wstring(text)};
    copy.deleteAll(blanks);
    return copy;
}

ePrimitiveScriptType dataType(const string& word)
{
    try {
        return parseScriptType(word);
    } catch (const exception& caught) {
        throw errParsingDataTypeException(word.c_str(), &caught);
    } catch (...) {
        throw errParsingDataTypeException(word.c_str());
    }
}

} // namespace

inParameter::inParameter(const string& declaration, int flags) : mVariable(scString::createFrom(string()))
{
    string whole = declaration.lower();
    whole.deleteLeading(blanks);
    const declarationText text = cut(whole);
    const string kind = withoutAnyBlanks(text.kind);
    if (kind != L"in")
        throw errParsingParamTypeException(kind.c_str());
    mType = dataType(withoutAnyBlanks(text.type));
    mName = withoutAnyBlanks(text.name);
    mVariable = scString::createFrom(mName);
    if (text.defaultText.empty())
        return;
    const string defaultText{std::wstring(text.defaultText)};
    mDefault.reset(valueProvider::createFrom(defaultText, flags));
    if (!mDefault)
        throw errParsingDefaultOfParamException(defaultText.c_str(), mName.c_str());
}

inParameter::inParameter(const inParameter& other)
    : mType(other.mType), mName(other.mName), mVariable(other.mVariable),
      mDefault(other.mDefault ? other.mDefault->clone() : nullptr)
{}

void inParameter::resolve(genericValue& value) const
{
    if (!value.isNull())
        return;
    if (!mDefault)
        throw inParameterNotFoundException(mName.c_str());
    scriptcontext ownContext;
    if (!mDefault->getValue(ownContext, value))
        throw unexpectedErrorException(L"in-parameter %s: error retrieving default-value!", mName);
}

} // namespace qx::script
