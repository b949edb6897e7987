// Switches of the engine, for the whole process, which change what a run costs and nothing else; and a limit
// for the runs of one thread.
//
// The switches may be set at any time, from any thread; runs that are under way notice at one of their next
// statements. They are for measuring and for finding faults: a host that ships leaves them alone.
#pragma once

#include "qxScriptExport.h"

#include <cstdint>

namespace qx::script::settings
{

// Whether statements take short cuts past the boxes and look-ups of the long way. On by default; a host that
// wants to see whether a fault lies there turns them off.
QXSCRIPT_API bool shortCuts() noexcept;
QXSCRIPT_API void setShortCuts(bool on) noexcept;

// Whether functions are compiled: those with loops when they first run, the others when they have run twice.
// On by default; off, they run as the trees that they were parsed into. A function that has begun runs on as
// it is. Nothing is compiled while short cuts are off.
QXSCRIPT_API bool compiled() noexcept;
QXSCRIPT_API void setCompiled(bool on) noexcept;

// Whether each call from script to script searches its file and asks for the time of its last change. Off by
// default: what one call found holds for the calls after it until the clock ticks (a few milliseconds) or
// anything but the engine's own code has run on the thread, so only a change that another thread or program
// makes without telling may be noticed a tick late. A call from the host always looks.
QXSCRIPT_API bool strictFileCheck() noexcept;
QXSCRIPT_API void setStrictFileCheck(bool on) noexcept;

// How many statements the calling thread may still run; the greatest number is no limit, as at the start.
// Operands without an effect and turns of a loop with a body are not counted, so a run costs some fixed
// multiple of the limit at most for each character of its text. The statement that is one too many fails with
// unexpectedErrorException "step limit reached", and so does every one after it until a limit is set anew.
//
//     qx::script::settings::setStepLimit(1'000'000);
//     tree->exec(context, result); // may throw
//     qx::script::settings::setStepLimit(UINT64_MAX);
QXSCRIPT_API std::uint64_t stepLimit() noexcept;
QXSCRIPT_API void setStepLimit(std::uint64_t steps) noexcept;

} // namespace qx::script::settings
