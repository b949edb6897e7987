// The reporting function of the system, and the failed-check path.
//
// assertMsg reports and returns; what follows is the caller's, and in the engine that is nearly always a
// throw of the bool value false. The text goes to the handler that the host has set, by default as one line
// on standard error.
#pragma once

#include "qxExport.h"
#include "qxFormat.h"
#include "qxString.h"

namespace qx
{

// Receives every reported text, on the thread that reports. What it throws reaches the code that reported.
using assertHandler = void (*)(const string& text);

// Sets the handler and gives the one before. Null restores the default: `assert: TEXT` on standard error,
// line breaks as blanks. May be called at any time from any thread.
QXUTILS_API assertHandler setAssertHandler(assertHandler handler) noexcept;

// Reports a text that is already complete.
QXUTILS_API void reportAssert(const string& text);

template <class... Args>
void assertMsg(const wchar_t* format, const Args&... arguments)
{
    reportAssert(string::sformat(format, arguments...));
}

// Reports "Assertion failed:\n%s\n\nFile: %s\nLine: %d", at most 1024 characters of it, and throws the bool
// value false. Path and line are fixed texts, so that a report reads the same in every build.
[[noreturn]] QXUTILS_API void assertionFailed(const wchar_t* expression, const wchar_t* path, int line);

} // namespace qx
