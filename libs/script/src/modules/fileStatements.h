// The file module has one table and two sources: what inifiles.cpp gives to files.cpp.
#pragma once

#include "statements/qxScriptBuiltins.h"

namespace qx::script
{

statement* createLoadini(const callText& call);
statement* createLoadcfg(const callText& call);

} // namespace qx::script
