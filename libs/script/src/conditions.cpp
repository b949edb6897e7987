// Conditions: small expressions tested against a value.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule conditionModule{L"condition", {}};

} // namespace qx::script
