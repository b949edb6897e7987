// The tables of the sixteen modules, at the end of the sources that define their statements.
#pragma once

#include "statements/qxScriptBuiltins.h"

namespace qx::script
{

extern const builtinTable colourRows;
extern const builtinTable conditionRows;
extern const builtinTable checksumRows;
extern const builtinTable dateRows;
extern const builtinTable directoryRows;
extern const builtinTable libraryRows;
extern const builtinTable fileRows;
extern const builtinTable configurationRows; // of files
extern const builtinTable mathRows;
extern const builtinTable fieldRows;
extern const builtinTable stateRows; // of fields
extern const builtinTable relationRows;
extern const builtinTable localisationRows;
extern const builtinTable operatorRows;
extern const builtinTable logicRows; // operators too
extern const builtinTable controlRows;
extern const builtinTable callRows;
extern const builtinTable messageRows;
extern const builtinTable collectionRows;
extern const builtinTable stringRows;
extern const builtinTable timeRows;
extern const builtinTable variableRows;

} // namespace qx::script
