// Localised messages.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule localisationModule{L"localisation", {}};

} // namespace qx::script
