// Where the script file of a code call is found.
#pragma once

#include "code/qxScriptKnownSearches.h"

namespace qx::script
{

// Finds the file of a code call: the bare name in the current directory, then the name with its two
// extensions in `basePath` (if there is one), beside the running program, and in the current directory. On
// file systems that tell upper from lower case each candidate is looked for as written and then without
// regard to case. Throws fileNotFoundException with the last candidate.
foundScript findScriptFile(const string& basePath, const string& fileName);

} // namespace qx::script
