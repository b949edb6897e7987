// The results of statements, and the binding of parameters by name.
#include "statements/qxScriptBase.h"

#include "qxScString.h"

#include <algorithm>
#include <cwchar>

namespace qx::script
{

// --- Results ---

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
    return parse(function, params, flags, declared);
}

bool singlefunction::parse(const wchar_t* function, const std::vector<string>& params, int flags,
                           const std::vector<declaredParameter>& declared)
{
    // The names of a host may end before the statement does.
    std::vector<declaredParameter> lasting(declared);
    for (declaredParameter& d : lasting)
        d.name = scString::createFrom(d.name).c_str();
    bind(function, callOfTexts(L"", {}, params, flags).text(), lasting);
    return true;
}

void singlefunction::bind(const wchar_t* function, const callText& call,
                          std::span<const declaredParameter> declared)
{
    try {
        uint required = 0;
        for (const declaredParameter& d : declared)
            required += d.required ? 1u : 0u;
        if (call.params.size() < required)
            throw numParamsException(function, long32(static_cast<int>(required)));

        const std::size_t count = std::min(declared.size(), call.params.size());
        mParams.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            autoPtr<valueProvider> provider(providerFrom(call.params[i], call.flags));
            if (!provider)
                throw errParsingException(call.params[i].counted());
            if (find(declared[i].name))
                throw unexpectedErrorException(L"singlefunction::parse: Error inserting parameter %s",
                                               declared[i].name);
            mParams.push_back({declared[i].name, std::move(provider)});
        }
    } catch (const exception& caught) {
        throw errParsingException(string::sformat(L"%s(...)", function).c_str(), &caught);
    } catch (...) {
        throw errParsingException(string::sformat(L"%s(...)", function).c_str());
    }
}

const singlefunction::parameter* singlefunction::find(const wchar_t* name) const
{
    for (const parameter& p : mParams)
        if (p.name == name || std::wcscmp(p.name, name) == 0)
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
