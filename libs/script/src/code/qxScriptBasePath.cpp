// The name of the base path among the global variables.
#include "code/qxScriptBasePath.h"

namespace qx::script
{

const scString& scriptBasePath()
{
    static const scString name = scString::createFrom(L"scriptbasepath");
    return name;
}

} // namespace qx::script
