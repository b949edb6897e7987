// The data type keywords of the language, as they stand between angle brackets and in declarations:
//
//     createvar<int>(count)
//     in string name
//
// They name held types of values (qxGenericValue.h); which of them a statement takes is told by its entry in
// listStatements (qxScriptInspect.h).
#pragma once

#include "qxScriptExport.h"
#include "qxString.h"

namespace qx::script
{

// The numbers are stable: hosts may store them.
enum ePrimitiveScriptType
{
    scriptTypeVoid = 0, // also any text that is no keyword
    scriptTypeBool = 1, // `bool`, and so on: the keyword is the name
    scriptTypeShort = 2,
    scriptTypeInt = 3,
    scriptTypeLong = 4, // 32 bits, as all integers of the language but short and ushort
    scriptTypeUshort = 5,
    scriptTypeUint = 6,
    scriptTypeUlong = 7,
    scriptTypeFloat = 8,
    scriptTypeDouble = 9,
    scriptTypeString = 10,
    scriptTypeDate = 11,       // a day
    scriptTypeTime = 12,       // a time of day
    scriptTypeTimestamp = 13,  // both
    scriptTypeBinary = 14,     // a keyword without values
    scriptTypeUnknownptr = 15, // a reference to an object of the host
    scriptTypeArray = 16       // of values
};

// The type whose keyword `text` is, in any case, whole and exactly; scriptTypeVoid for every other text.
QXSCRIPT_API ePrimitiveScriptType parseScriptType(const string& text);

} // namespace qx::script
