// Times of day: constants and read-outs.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule timeModule{L"time", {}};

} // namespace qx::script
