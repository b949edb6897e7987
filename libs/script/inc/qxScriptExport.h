// What crosses the boundary of the library qxScript.
//
// A class or function with QXSCRIPT_API is exported: it may be called from other libraries, and its type is
// the same in all of them. Whatever stands in a header without it is compiled into whoever includes it.
// QXSCRIPT_BUILD is defined while the library itself is compiled, QXSCRIPT_STATIC where it is linked into the
// program; hosts define neither by hand, the build's targets do.
#pragma once

#include "qxCompiler.h"

#if defined(_WIN32) && defined(QXSCRIPT_STATIC)
#define QXSCRIPT_API
#elif defined(_WIN32)
#if defined(QXSCRIPT_BUILD)
#define QXSCRIPT_API __declspec(dllexport)
#else
#define QXSCRIPT_API __declspec(dllimport)
#endif
#else
#define QXSCRIPT_API QX_VISIBLE
#endif
