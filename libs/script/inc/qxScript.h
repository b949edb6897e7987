// Everything that a host needs to run scripts and to bring statements of its own.
//
//     #include <qxScript>
//
//     qx::script::scriptcontext context;                       // where variables live
//     qx::genericValue result;
//     const qx::sharedPtr<qx::script::statement> tree(
//         qx::script::statement::createFrom(L"add<int>(\"1\", \"2\")", 0));
//     tree->exec(context, result);                              // or codeManager, for functions in files
//
// A tree, a parser and a code manager may be used from any thread; a context belongs to one thread at a time.
// Every failure is a qx::exception, but a text that a script throws, which is a qx::string. qxScriptHost.h
// has what makes objects and statements of a host short.
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
