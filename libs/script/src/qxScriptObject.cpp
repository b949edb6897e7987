// Objects of the host: fields, relations, states.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule objectModule{L"object", {}};

} // namespace qx::script
