// Directories: listing, and the current one.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule directoryModule{L"directory", {}};

} // namespace qx::script
