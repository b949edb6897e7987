// Blocks, and the binding of parameters by name.
#include "qxScriptBase.h"

#include "qxScriptSignals.h"

namespace qx::script
{

// --- Results and operands ---

void writeToSlot(genericValue& result, string&& text)
{
    const cell::word before = cell::access::load(result);
    if (before == cell::null || cell::kindIn(before) == cell::decimalKind) {
        genericValue made = cell::made(std::move(text));
        if (cell::access::moveIf(result, before, made))
            return;
        made.getValue(text); // somebody else has written meanwhile
    }
    writeToSlot(result, std::as_const(text));
}

bool boundOperand::readLongText(codecontext& context, textScratch& text) const
{
    genericValue value;
    if (!mpBound || !mpBound->getValue(context, value))
        return false;
    if (cell::shortCutsAllowed() && text.show(cell::access::load(value)))
        return true;
    string read;
    if (string* const sole = soleText(value))
        read.swap(*sole);
    else if (!value.getValue(read))
        return false;
    text.own(std::move(read));
    return true;
}

// --- compoundstatement ---

bool compoundstatement::add(statement* child)
{
    if (!child)
        return false;
    mStatements.emplace_back(child);
    return true;
}

void compoundstatement::execute(codecontext& context, genericValue& result) const
{
    run(context);
    if (raisedIn(context) == raised::returned)
        copyReturned(context, result);
}

void compoundstatement::run(codecontext& context) const
{
    blockcontext block(context);
    for (const sharedPtr<statement>& child : mStatements) {
        child->execNested(block);
        if (isAnythingRaised(block))
            return;
    }
}

// --- singlefunction ---

singlefunction::singlefunction() = default;

singlefunction::singlefunction(const singlefunction& other) : statement(other)
{
    mParams.reserve(other.mParams.size());
    for (const parameter& p : other.mParams)
        mParams.push_back({p.name, autoPtr<valueProvider>(p.provider->clone())});
}

singlefunction::~singlefunction() = default;

bool singlefunction::parseDeclared(const wchar_t* function, const std::vector<string>& params, int flags,
                                   const declarationItem* items)
{
    std::vector<declaredParameter> declared;
    for (; items->name; items += 2)
        declared.push_back({items[0].name, items[1].flag});
    std::vector<textSlice> slices;
    slices.reserve(params.size());
    for (const string& text : params)
        slices.emplace_back(text);
    return parse(function, slices, flags, declared);
}

bool singlefunction::parse(const wchar_t* function, const std::vector<textSlice>& params, int flags,
                           const std::vector<declaredParameter>& declared)
{
    try {
        uint required = 0;
        for (const declaredParameter& d : declared)
            required += d.required ? 1u : 0u;
        if (params.size() < required)
            throw numParamsException(function, long32(static_cast<int>(required)));

        for (std::size_t i = 0; i < declared.size() && i < params.size(); ++i) {
            autoPtr<valueProvider> provider(valueProvider::createFrom(params[i], flags));
            if (!provider)
                throw errParsingException(params[i]);
            if (find(declared[i].name))
                throw unexpectedErrorException(L"singlefunction::parse: Error inserting parameter %s",
                                               declared[i].name);
            mParams.push_back({string(declared[i].name), std::move(provider)});
        }
        return true;
    } catch (const exception& caught) {
        throw errParsingException(string::sformat(L"%s(...)", function).c_str(), &caught);
    } catch (...) {
        throw errParsingException(string::sformat(L"%s(...)", function).c_str());
    }
}

const singlefunction::parameter* singlefunction::find(std::wstring_view name) const
{
    for (const parameter& p : mParams)
        if (p.name == name)
            return &p;
    return nullptr;
}

const valueProvider* singlefunction::boundProvider(std::size_t place) const
{
    return place < mParams.size() ? &*mParams[place].provider : nullptr;
}

bool singlefunction::getParamValue(const wchar_t* name, codecontext& context, genericValue& value) const
{
    const parameter* const bound = find(name ? name : L"");
    return bound && bound->provider->getValue(context, value);
}

} // namespace qx::script
