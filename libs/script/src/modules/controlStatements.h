// The control module has one table and three sources: what calls.cpp and messages.cpp give to control.cpp.
#pragma once

#include "statements/qxScriptBuiltins.h"

namespace qx::script
{

statement* createCallfunction(const callText& call);
statement* createTreatasfunction(const callText& call);
statement* createReturn(const callText& call);

// True for a statement that createReturn has made.
bool isReturn(const statement& made);

statement* createThrowerror(const callText& call);
statement* createThrowmessage(const callText& call);
statement* createAssert(const callText& call);
statement* createExecutablepath(const callText& call);
statement* createMessagebox(const callText& call);

} // namespace qx::script
