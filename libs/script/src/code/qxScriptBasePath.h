// The directory in which the search for the script files of a run begins.
#pragma once

#include "qxScString.h"

namespace qx::script
{

// "scriptbasepath", the name of the global variable under which the code manager leaves it to the statements.
const scString& scriptBasePath();

} // namespace qx::script
