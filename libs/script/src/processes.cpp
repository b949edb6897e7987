// Libraries and processes of the system.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule libraryModule{L"library", {}};

} // namespace qx::script
