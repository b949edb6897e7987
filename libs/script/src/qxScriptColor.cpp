// Colours: values for hosts that store colours as numbers.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule colourModule{L"colour", {}};

} // namespace qx::script
