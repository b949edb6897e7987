// Arrays and maps.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule collectionModule{L"collection", {}};

} // namespace qx::script
