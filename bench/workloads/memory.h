// How much memory things take.
#pragma once

#include "scriptFile.h"

#include <string_view>

namespace workloads
{

struct memoryUse
{
    long long things = 0;
    long long bytes = 0;
};

// Knows `ints`, `texts` and `entries`: an array of so many numbers or texts, or a map, as the script builds
// it; `statements`: the trees of all functions of the file, whose calls are counted; and `loading`: by how
// much the peak of the process grows while the functions of the file are loaded. Throws for another name.
memoryUse memoryOf(const scriptFile& scripts, std::string_view what, int n);

} // namespace workloads
