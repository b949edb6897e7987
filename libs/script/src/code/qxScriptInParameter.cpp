// Declared parameters of script functions.
#include "code/qxScriptInParameter.h"

#include "parser/qxScriptMarks.h"
#include "qxScriptContext.h"
#include "qxScriptException.h"
#include "statements/qxScriptBuiltins.h"

#include "qxTextView.h"

#include <algorithm>

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

declarationText cut(std::wstring_view whole)
{
    declarationText cutText;
    if (const std::size_t open = whole.find(L'<'); open != whole.npos) {
        const std::size_t close = whole.find(L'>', open);
        if (close == whole.npos)
            throw errParsingException(std::wstring(whole).c_str());
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

// A text without any blanks, a copy only where it has some inside.
class compactText
{
public:
    explicit compactText(std::wstring_view text) : mView(trimmed(text, blanks))
    {
        if (!marks::holdAny(mView, marks::blank))
            return;
        mCompact.assign(mView);
        mCompact.deleteAll(blanks);
        mView = mCompact;
    }

    std::wstring_view view() const noexcept { return mView; }
    std::wstring text() const { return std::wstring(mView); }

private:
    string mCompact;
    std::wstring_view mView;
};

ePrimitiveScriptType dataType(std::wstring_view word)
{
    try {
        return parseScriptType(typeWord(word));
    } catch (const exception& caught) {
        throw errParsingDataTypeException(std::wstring(word).c_str(), &caught);
    } catch (...) {
        throw errParsingDataTypeException(std::wstring(word).c_str());
    }
}

} // namespace

inParameter::inParameter(const string& declaration, int flags) : mVariable(scString::intern({}))
{
    string lowered;
    std::wstring_view whole = declaration;
    if (marks::holdAny(whole, marks::otherUnplain)) {
        lowered = declaration.lower();
        whole = lowered;
    }
    whole.remove_prefix(std::min(whole.find_first_not_of(blanks), whole.size()));
    const declarationText text = cut(whole);
    const compactText kind(text.kind);
    if (kind.view() != L"in")
        throw errParsingParamTypeException(kind.text().c_str());
    mType = dataType(compactText(text.type).view());
    mVariable = scString::intern(compactText(text.name).view());
    if (text.defaultText.empty())
        return;
    const string defaultText{std::wstring(text.defaultText)};
    mDefault.reset(valueProvider::createFrom(defaultText, flags));
    if (!mDefault)
        throw errParsingDefaultOfParamException(defaultText.c_str(), name().c_str());
}

inParameter::inParameter(const inParameter& other)
    : mType(other.mType), mVariable(other.mVariable),
      mDefault(other.mDefault ? other.mDefault->clone() : nullptr)
{}

void inParameter::resolve(genericValue& value) const
{
    if (!value.isNull())
        return;
    if (!mDefault)
        throw inParameterNotFoundException(name().c_str());
    scriptcontext ownContext;
    if (!mDefault->getValue(ownContext, value))
        throw unexpectedErrorException(L"in-parameter %s: error retrieving default-value!", name());
}

} // namespace qx::script
