// Maths: trigonometric functions, remainder, root.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule mathModule{L"math", {}};

} // namespace qx::script
