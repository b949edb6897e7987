// Declared parameters of script functions.
#include "qxScriptInParameter.h"

#include "qxScriptContext.h"
#include "qxScriptException.h"

namespace qx::script
{

namespace
{

constexpr std::wstring_view blanks = L" \t";

// A declaration cut into its pieces, each as written.
struct declarationText
{
    string kind;
    string type;
    string name;
    string defaultText;
};

declarationText cut(const string& whole)
{
    declarationText cutText;
    string rest;
    if (const std::size_t open = whole.find(L'<'); open != whole.npos) {
        const std::size_t close = whole.find(L'>', open);
        if (close == whole.npos)
            throw errParsingException(whole.c_str());
        cutText.kind = whole.substr(0, open);
        cutText.type = whole.substr(open + 1, close - open - 1);
        rest = whole.substr(close + 1);
    } else {
        const std::size_t blank = whole.find_first_of(blanks);
        cutText.kind = whole.substr(0, blank);
        rest = blank == whole.npos ? whole : string(whole.substr(blank + 1));
    }
    if (const std::size_t equals = rest.find(L'='); equals != rest.npos) {
        cutText.defaultText = rest.substr(equals + 1);
        rest.erase(equals);
    }
    cutText.name = rest;
    return cutText;
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
    declarationText text = cut(whole);
    text.kind.deleteAll(blanks);
    text.type.deleteAll(blanks);
    text.name.deleteAll(blanks);
    if (text.kind != L"in")
        throw errParsingParamTypeException(text.kind.c_str());
    mType = dataType(text.type);
    mName = text.name;
    mVariable = scString::createFrom(mName);
    text.defaultText.deleteLeading(blanks).deleteTrailing(blanks);
    if (text.defaultText.empty())
        return;
    mDefault.reset(valueProvider::createFrom(text.defaultText, flags));
    if (!mDefault)
        throw errParsingDefaultOfParamException(text.defaultText.c_str(), mName.c_str());
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
