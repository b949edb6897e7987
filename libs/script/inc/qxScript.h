// Everything that a host needs to run scripts and to bring statements of its own.
#pragma once

#include "qxScriptCode.h"
#include "qxScriptContext.h"
#include "qxScriptException.h"
#include "qxScriptInspect.h"
#include "qxScriptInterfaces.h"
#include "qxScriptParser.h"
#include "qxScriptProvider.h"
#include "qxScriptReference.h"
#include "qxScriptSettings.h"
#include "qxScriptStatement.h"
#include "qxScriptTypes.h"
