// Hooks: how a library above this one hears at once of what it must not miss.
//
// Each event has one function for the whole process, which the library sets while it is loaded. It is called
// on the thread on which the event occurs, and so often that it must do next to nothing.
#pragma once

#include "qxExport.h"

namespace qx::hooks
{

enum event
{
    // Foreign code may have run on this thread (a converter, the system of a host), or a variable is about to
    // be read that others can reach: what the thread has cached of the world may be stale.
    foreignCode,
    // What qxlog::logManager::listens answers may have changed.
    logging,
    // What cell::onlyOwnConversions answers may have changed.
    conversions,

    eventCount
};

using function = void (*)() noexcept;

// Null, as at the start, calls nothing. Replacing a function does not wait for calls that are under way.
QXUTILS_API void set(event occurring, function called) noexcept;

// Called where the event occurs.
void call(event occurring) noexcept;

} // namespace qx::hooks
