// inParameter: a declared parameter of a script function.
#pragma once

#include "qxScriptProvider.h"
#include "qxScriptTypes.h"

#include "qxAutoPtr.h"
#include "qxScString.h"

namespace qx::script
{

class inParameter
{
public:
    // Parses a declaration `in<type> name = default`. The whole text is lower-cased first, the default
    // included. Throws errParsingException for an unclosed type, errParsingParamTypeException for a kind
    // other than `in`, and what parsing the default throws.
    inParameter(const string& declaration, int flags);
    // The copy has a default of its own.
    inParameter(const inParameter& other);
    inParameter(inParameter&&) noexcept = default;

    // Lower-case, without blanks; may be empty.
    const string& name() const noexcept { return mVariable.string(); }
    // The name, as contexts look it up.
    const scString& variable() const noexcept { return mVariable; }
    ePrimitiveScriptType type() const noexcept { return mType; }

    // Fills a null `value` from the default, evaluated in a context of its own. Throws
    // inParameterNotFoundException when there is none, and what the evaluation throws.
    void resolve(genericValue& value) const;

private:
    ePrimitiveScriptType mType = scriptTypeVoid;
    scString mVariable;
    autoPtr<valueProvider> mDefault; // null without a default
};

} // namespace qx::script
