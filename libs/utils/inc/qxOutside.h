// Where the library leaves its own code: who remembers something only as long as nobody else can have run on
// the thread, or been heard of, is told here.
#pragma once

#include "qxExport.h"

namespace qx::outside
{

// Tells that a host's code has run on this thread, or that a variable which others can reach is about to be
// read.
QXUTILS_API void note() noexcept;

// Who is told, on the thread itself. One for the process; null for nobody, as at the start.
using listener = void (*)() noexcept;
QXUTILS_API void setListener(listener told) noexcept;

} // namespace qx::outside
