// Reports of what must not happen, and the failed check.
//
//     qx::assertMsg(L"%s has %d parts, not %d", name.c_str(), found, wanted); // reports and returns
//
// assertMsg reports and returns; what follows is the caller's, and there it is nearly
// always a throw of the bool value false. The text goes to the handler that the host has
// set, by default as one line on standard error. Everything here may be called from any
// thread.
//
//     static void toLog(const qx::string& text) { log->log_debug(L"%s", text.c_str()); }
//     const qx::assertHandler before = qx::setAssertHandler(toLog);
#pragma once

#include "qxExport.h"
#include "qxFormat.h"
#include "qxString.h"

namespace qx
{

// Receives every reported text, on the thread that reports, and may be called from several
// at once. The text is borrowed for the call. What it throws reaches the code that
// reported.
using assertHandler = void (*)(const string& text);

// Sets the handler and gives the one before. Null restores the default: `assert: TEXT` on
// standard error, line breaks as blanks. May be called at any time from any thread; a
// report that is under way still goes to the handler before.
QXUTILS_API assertHandler setAssertHandler(assertHandler handler) noexcept;

// Reports a text that is already complete.
QXUTILS_API void reportAssert(const string& text);

// Formats as string::sformat does (qxFormat.h) and reports the result. Throws what the
// handler throws, and std::bad_alloc.
template <class... Args>
void assertMsg(const wchar_t* format, const Args&... arguments)
{
    reportAssert(string::sformat(format, arguments...));
}

// Reports "Assertion failed:\n%s\n\nFile: %s\nLine: %d", at most 1024 characters of it, and
// throws the bool value false. Path and line are fixed texts, so that a report reads the
// same in every build.
[[noreturn]] QXUTILS_API void assertionFailed(const wchar_t* expression, const wchar_t* path, int line);

} // namespace qx
