// The workloads that run scripts.
#pragma once

#include "measured.h"
#include "scriptFile.h"

namespace workloads
{

// A function of the file, with `n` as its argument; it is loaded before the clock starts. With several
// threads each runs it once, in a context of its own, and the times are until all are done.
measured runFunction(const scriptFile& scripts, const qx::string& function, int n, int threads);

// W7: the same for a function that takes an object besides.
measured runOnObject(const scriptFile& scripts, int n);

// W8: `n` times a tree that was parsed once, each in a context of its own with two parameters.
measured runTree(int n);

// W8r: `n` calls of a function that was resolved once.
measured runResolvedCall(const scriptFile& scripts, int n);

// W8e: `n` calls of a function by its name.
measured runCalls(const scriptFile& scripts, int n);

} // namespace workloads
