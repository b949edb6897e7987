// Checksums: a CRC-32 over a series of texts.
#include "qxScriptModules.h"

namespace qx::script
{

constinit const builtinModule checksumModule{L"checksum", {}};

} // namespace qx::script
