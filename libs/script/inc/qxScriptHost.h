// Hosting made short: objects that count and answer queries by themselves, fields by table, walks over
// containers, functions as statements. Everything here rests on the contract of qxScriptInterfaces.h and
// qxScriptParser.h, which a host may as well implement by hand.
//
//     qxScriptHostObject.h      host::object, a base that counts and answers queries; referenceTo, valueOf,
//                               readValue between objects, values and C++ types; iterate over containers
//     qxScriptHostFields.h      host::fieldObject, an object whose fields stand in a table
//     qxScriptHostFunction.h    host::addStatement, a function or function object as a statement
//
// It is kept out of <qxScript>, which has all that running scripts takes, so that only those sources pay for
// it that make objects or statements. Everything in it is templates and inline functions, compiled into the
// host; of the library they use what the headers below export.
#pragma once

#include "qxScriptHostFields.h"
#include "qxScriptHostFunction.h"
#include "qxScriptHostObject.h"
