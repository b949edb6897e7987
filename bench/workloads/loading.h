// The workloads that load scripts: a file with a great many functions.
#pragma once

#include "measured.h"
#include "scriptFile.h"

namespace workloads
{

// W9: reads the file once and loads each of its functions, without running it. Gives their number.
measured loadFunctions(const scriptFile& scripts);

// W9k: lists the functions of the file, parses the body of each and keeps all trees. Gives their number.
measured keepFunctions(const scriptFile& scripts);

// W9c: the first calls of `n` functions, evenly from all of the file, by their names. Gives the number of
// those that returned what they should.
measured callFunctionsFirst(const scriptFile& scripts, int n);

} // namespace workloads
