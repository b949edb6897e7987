// What crosses the boundary of the library qxScript.
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
