// Operators on typed values, and logic.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule operatorModule{L"operator", {}};

} // namespace qx::script
