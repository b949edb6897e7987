// The sixteen modules. Each source defines its own; the order here is the order in which the parser asks
// them.
#pragma once

#include "statements/qxScriptBuiltins.h"

namespace qx::script
{

extern const builtinModule colourModule;
extern const builtinModule conditionModule;
extern const builtinModule checksumModule;
extern const builtinModule dateModule;
extern const builtinModule directoryModule;
extern const builtinModule libraryModule;
extern const builtinModule fileModule;
extern const builtinModule mathModule;
extern const builtinModule objectModule;
extern const builtinModule localisationModule;
extern const builtinModule operatorModule;
extern const builtinModule controlModule;
extern const builtinModule collectionModule;
extern const builtinModule stringModule;
extern const builtinModule timeModule;
extern const builtinModule variableModule;

} // namespace qx::script
