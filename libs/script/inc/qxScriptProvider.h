// valueProvider: the source of a parameter's value at run time.
//
// The language has three forms of parameter: a literal in quotation marks, a nested call, and a bare word
// that names a variable. A provider is made once from the parameter's text and asked for its value on each
// run; nothing is cached. Only factories of statements deal with providers: those of a host take the texts of
// the parameters that they are given, make a provider of each, and own it.
#pragma once

#include "qxGenericValue.h"
#include "qxScriptExport.h"

namespace qx::script
{

class codecontext;

//     const qx::autoPtr<qx::script::valueProvider> amount(
//         qx::script::valueProvider::createFrom(params[0], flags)); // in the factory
//     amount->getValue(context, value);                             // in execute
//
// Immutable once made: one provider may be asked by several threads, each with a context of its own.
class QXSCRIPT_API valueProvider
{
public:
    virtual ~valueProvider();

    // Writes the current value into `value`. A literal is converted into the type that `value` holds and
    // fails by throwing the bool value false where that is refused; a nested call or a variable writes as its
    // statement does. True on success.
    virtual bool getValue(codecontext& context, genericValue& value) const = 0;
    // A new provider with a tree of its own, owned by the caller.
    virtual valueProvider* clone() const = 0;

    // Makes the provider of one parameter text, owned by the caller. `flags` are the statement flags, see
    // statementParser. Throws errParsingException for an empty text and for text that gives no statement,
    // what parsing throws, and outOfMemoryException.
    static valueProvider* createFrom(const string& text, int flags);
};

} // namespace qx::script
