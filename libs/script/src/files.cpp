// Files: names, copies, and lines of text.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule fileModule{L"file", {}};

} // namespace qx::script
