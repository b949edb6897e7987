// What crosses the boundary of the library qxUtils.
//
//     QXUTILS_API       a function or class that qxUtils exports
//     QX_SHARED         a class template whose instantiations are compared across libraries (dynamic casts,
//                       type_info): visible everywhere on ELF; on Windows its explicit instantiation carries
//                       the export attribute
//     QX_THREAD_LOCAL   a variable of each thread, one for each library that uses it
//
// QXSCRIPT_STATIC stands for libraries that are linked into the program, where nothing
// crosses.
#pragma once

#include "qxCompiler.h"

#if defined(_WIN32) && defined(QXSCRIPT_STATIC)
#define QXUTILS_API
#define QX_SHARED
#elif defined(_WIN32)
#if defined(QXUTILS_BUILD)
#define QXUTILS_API __declspec(dllexport)
#else
#define QXUTILS_API __declspec(dllimport)
#endif
#define QX_SHARED
#else
#define QXUTILS_API QX_VISIBLE
#define QX_SHARED QX_VISIBLE
#endif

// A variable of each thread that is read without a call, for what is read all the time.
// Where the system's loader does not offer that, it is an ordinary one.
#define QX_THREAD_LOCAL thread_local QX_INITIAL_EXEC
