// What tests change of the compiled form, so that they see every way out of it.
#pragma once

#include "compiled/qxScriptOperation.h"

namespace qx::script::trial
{

// Functions are compiled whatever they hold; what has no operation is handed over.
inline constinit bool compilesAll = false;

// Frames are left before the operation of this number, counted from 1, that can be left; 0 for never.
inline constinit unsigned leaveAfter = 0;

// How many frames `leaveAfter` has had left.
inline constinit unsigned timesLeft = 0;

// Runs so many operations, as `leaveAfter` tells. Gives the next one; null where the frame has ended or was
// left.
const operation* runSome(frame& f, const operation* next);

} // namespace qx::script::trial
