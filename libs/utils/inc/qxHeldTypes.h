// The holders of the types that this library owns, declared: each is instantiated once, in the library.
//
// Code that holds dates, times, messages or checksums in values includes this; it brings those types along.
#pragma once

#include "qxCrc32.h"
#include "qxDirectory.h"
#include "qxHolder.h"
#include "qxLocString.h"
#include "qxTimestamp.h"

// Calls one of these for each held type and each form that it is held in: H all forms, V in a value, P by pointer,
// C by pointer to const.
#define QX_HELD_TYPES(H, V, P, C)                                                                                      \
    H(bool) V(bool) P(bool) C(bool)                                                                                    \
    H(short) V(short) P(short) C(short)                                                                                \
    H(qx::ushort) V(qx::ushort) P(qx::ushort) C(qx::ushort)                                                            \
    H(int) V(int) P(int) C(int)                                                                                        \
    H(qx::uint) V(qx::uint) P(qx::uint) C(qx::uint)                                                                    \
    H(qx::long32) V(qx::long32) P(qx::long32) C(qx::long32)                                                            \
    H(qx::ulong32) V(qx::ulong32) P(qx::ulong32) C(qx::ulong32)                                                        \
    H(float) V(float) P(float) C(float)                                                                                \
    H(double) V(double) P(double) C(double)                                                                            \
    H(qx::string) V(qx::string) P(qx::string) C(qx::string)                                                            \
    H(qx::date) V(qx::date) P(qx::date) C(qx::date)                                                                    \
    H(qx::time) V(qx::time) P(qx::time) C(qx::time)                                                                    \
    H(qx::timestamp) V(qx::timestamp) P(qx::timestamp) C(qx::timestamp)                                                \
    H(qx::uint64) V(qx::uint64) C(qx::uint64)                                                                          \
    H(qx::locString) V(qx::locString) P(qx::locString)                                                                 \
    H(qx::directory) P(qx::directory)                                                                                  \
    H(qx::calcCrc32) V(qx::calcCrc32) P(qx::calcCrc32)                                                                 \
    H(qx::sharedPtr<qx::genericValue>) V(qx::sharedPtr<qx::genericValue>) C(qx::sharedPtr<qx::genericValue>)           \
    H(qx::valueArray) V(qx::valueArray) P(qx::valueArray) C(qx::valueArray)                                            \
    H(void*) V(void*)                                                                                                  \
    H(std::map<short, qx::genericValue>) V(std::map<short, qx::genericValue>)                                          \
    H(std::map<int, qx::genericValue>) V(std::map<int, qx::genericValue>)                                              \
    H(std::map<qx::long32, qx::genericValue>) V(std::map<qx::long32, qx::genericValue>)                                \
    H(std::map<qx::string, qx::genericValue>) V(std::map<qx::string, qx::genericValue>)

#define QX_OWN_HOLDER(...) QX_DECLARE_HOLDER(QXUTILS_API, __VA_ARGS__)
#define QX_OWN_VALUEHOLDER(...) QX_DECLARE_VALUEHOLDER(QXUTILS_API, __VA_ARGS__)
#define QX_OWN_PTRHOLDER(...) QX_DECLARE_PTRHOLDER(QXUTILS_API, __VA_ARGS__)
#define QX_OWN_CONSTPTRHOLDER(...) QX_DECLARE_CONSTPTRHOLDER(QXUTILS_API, __VA_ARGS__)

QX_HELD_TYPES(QX_OWN_HOLDER, QX_OWN_VALUEHOLDER, QX_OWN_PTRHOLDER, QX_OWN_CONSTPTRHOLDER)

#undef QX_OWN_HOLDER
#undef QX_OWN_VALUEHOLDER
#undef QX_OWN_PTRHOLDER
#undef QX_OWN_CONSTPTRHOLDER
