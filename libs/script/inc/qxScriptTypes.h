// The data type keywords of the language.
#pragma once

#include "qxScriptExport.h"
#include "qxString.h"

namespace qx::script
{

enum ePrimitiveScriptType
{
    scriptTypeVoid = 0, // also any text that is no keyword
    scriptTypeBool = 1,
    scriptTypeShort = 2,
    scriptTypeInt = 3,
    scriptTypeLong = 4, // 32 bits, as all integers of the language but short and ushort
    scriptTypeUshort = 5,
    scriptTypeUint = 6,
    scriptTypeUlong = 7,
    scriptTypeFloat = 8,
    scriptTypeDouble = 9,
    scriptTypeString = 10,
    scriptTypeDate = 11,
    scriptTypeTime = 12,
    scriptTypeTimestamp = 13,
    scriptTypeBinary = 14, // a keyword without values
    scriptTypeUnknownptr = 15,
    scriptTypeArray = 16
};

// The type whose keyword `text` is, in any case, whole and exactly; scriptTypeVoid for every other text.
QXSCRIPT_API ePrimitiveScriptType parseScriptType(const string& text);

} // namespace qx::script
