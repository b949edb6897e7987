// Factories of statements whose parameters stand by place, and how they refuse a call.
#pragma once

#include "statements/qxScriptBase.h"

namespace qx::script
{

// For rows: makes a statement that reads the call itself.
template <class Statement>
statement* create(const callText& call)
{
    return new Statement(call);
}

// The texts of one statement that refuses calls.
struct refusals
{
    std::size_t required; // parameters
    const wchar_t* tooFew;
    const wchar_t* unusable; // with the text of the parameter
};

inline void requireCount(const callText& call, const refusals& texts)
{
    if (call.params.size() < texts.required)
        refuse(texts.tooFew);
}

// The provider of a parameter, which has to be made.
inline operand requireOperand(const callText& call, std::size_t place, const refusals& texts)
{
    requireCount(call, texts);
    return requireOperand(call, place, texts.unusable);
}

// The name that the first parameter tells; it must not be empty.
inline const scString& requireName(const callText& call, const scString& name, const refusals& texts)
{
    if (name.string().empty())
        refuse(texts.unusable, call.params[0].view());
    return name;
}
// ... as variables are called: without blanks and lower-cased.
inline scString requireVariableName(const callText& call, const refusals& texts)
{
    requireCount(call, texts);
    return requireName(call, call.params[0].name(), texts);
}
// ... as it stands, with its blanks and in its case.
inline scString requireWrittenName(const callText& call, const refusals& texts)
{
    requireCount(call, texts);
    return requireName(call, scString::createFrom(call.params[0].text()), texts);
}

} // namespace qx::script
