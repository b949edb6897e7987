// What crosses the boundary of the library qxUtils.
//
// QXUTILS_API   a function or class that qxUtils exports.
// QX_SHARED     a class template whose instantiations are compared across libraries (dynamic casts,
// type_info):
//               visible everywhere on ELF; on Windows its explicit instantiation carries the export
//               attribute.
#pragma once

#if defined(_WIN32)
#if defined(QXUTILS_BUILD)
#define QXUTILS_API __declspec(dllexport)
#else
#define QXUTILS_API __declspec(dllimport)
#endif
#define QX_SHARED
#else
#define QXUTILS_API __attribute__((visibility("default")))
#define QX_SHARED __attribute__((visibility("default")))
#endif
