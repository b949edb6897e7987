// Dates: constants, read-outs and text forms.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule dateModule{L"date", {}};

} // namespace qx::script
