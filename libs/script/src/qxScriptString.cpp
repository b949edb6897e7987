// Text functions.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule stringModule{L"string", {}};

} // namespace qx::script
