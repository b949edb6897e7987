// Switches of the engine, for the whole process. They change what a run costs and nothing else.
#pragma once

#include "qxScriptExport.h"

namespace qx::script::settings
{

// Whether statements take short cuts past the boxes and look-ups of the long way. On by default; a host that
// wants to see whether a fault lies there turns them off.
QXSCRIPT_API bool shortCuts() noexcept;
QXSCRIPT_API void setShortCuts(bool on) noexcept;

// Whether each call from script to script searches its file and asks for the time of its last change. Off by
// default: what one call found holds for the calls after it until the clock ticks (a few milliseconds) or
// anything but the engine's own code has run on the thread, so only a change that another thread or program
// makes without telling may be noticed a tick late. A call from the host always looks.
QXSCRIPT_API bool strictFileCheck() noexcept;
QXSCRIPT_API void setStrictFileCheck(bool on) noexcept;

} // namespace qx::script::settings
