// Hosting made short: objects that count and answer queries by themselves, fields by table, walks over
// containers, functions as statements. Everything here rests on the contract of qxScriptInterfaces.h and
// qxScriptParser.h, which a host may as well implement by hand.
#pragma once

#include "qxScriptHostFields.h"
#include "qxScriptHostFunction.h"
#include "qxScriptHostObject.h"
