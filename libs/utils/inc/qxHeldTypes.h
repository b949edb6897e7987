// The held types of the utility library, complete, with their holders.
//
// The holders are instantiated once, in the library; here they are declared, so that every user sees one
// type_info.
#pragma once

#include "qxCondition.h"
#include "qxCrc32.h"
#include "qxDate.h"
#include "qxDirectory.h"
#include "qxGenericMap.h"
#include "qxHolder.h"
#include "qxLocString.h"
#include "qxTime.h"
#include "qxTimestamp.h"

// Calls USE(T) for each type that is held in every way.
#define QX_EVERY_HELD_TYPE(USE)                                                                              \
    USE(bool)                                                                                                \
    USE(short)                                                                                               \
    USE(qx::ushort)                                                                                          \
    USE(int)                                                                                                 \
    USE(qx::uint)                                                                                            \
    USE(qx::long32)                                                                                          \
    USE(qx::ulong32)                                                                                         \
    USE(float)                                                                                               \
    USE(double)                                                                                              \
    USE(qx::string)                                                                                          \
    USE(qx::date)                                                                                            \
    USE(qx::time)                                                                                            \
    USE(qx::timestamp)                                                                                       \
    USE(std::vector<qx::genericValue>)

// ... in values and as the target of reads.
#define QX_READ_HELD_TYPE(USE)                                                                               \
    USE(qx::locString)                                                                                       \
    USE(qx::calcCrc32)                                                                                       \
    USE(qx::sharedPtr<qx::conditions::condition>)

// ... in values and as the source of writes.
#define QX_WRITTEN_HELD_TYPE(USE)                                                                            \
    USE(qx::uint64)                                                                                          \
    USE(qx::sharedPtr<qx::genericValue>)

// ... in values alone.
#define QX_KEPT_HELD_TYPE(USE)                                                                               \
    USE(void*)                                                                                               \
    USE(std::map<short, qx::genericValue>)                                                                   \
    USE(std::map<int, qx::genericValue>)                                                                     \
    USE(std::map<qx::long32, qx::genericValue>)                                                              \
    USE(std::map<qx::string, qx::genericValue>)

#define QX_DECLARE_UTILS_HOLDER(...) extern template class QXUTILS_API qx::genericValue::holder<__VA_ARGS__>;
#define QX_DECLARE_UTILS_VALUE(...)                                                                          \
    QX_DECLARE_UTILS_HOLDER(__VA_ARGS__)                                                                     \
    extern template class QXUTILS_API qx::genericValue::valueholder<__VA_ARGS__>;                            \
    extern template QXUTILS_API qx::genericValue::genericValue(__VA_ARGS__ const&);
#define QX_DECLARE_UTILS_READ(...)                                                                           \
    QX_DECLARE_UTILS_VALUE(__VA_ARGS__)                                                                      \
    extern template QXUTILS_API bool qx::genericValue::getValue(__VA_ARGS__&) const;
#define QX_DECLARE_UTILS_WRITTEN(...)                                                                        \
    QX_DECLARE_UTILS_VALUE(__VA_ARGS__)                                                                      \
    extern template QXUTILS_API bool qx::genericValue::setValue(__VA_ARGS__ const&, bool);
#define QX_DECLARE_UTILS_EVERY(...)                                                                          \
    QX_DECLARE_UTILS_READ(__VA_ARGS__)                                                                       \
    extern template QXUTILS_API bool qx::genericValue::setValue(__VA_ARGS__ const&, bool);

QX_EVERY_HELD_TYPE(QX_DECLARE_UTILS_EVERY)
QX_READ_HELD_TYPE(QX_DECLARE_UTILS_READ)
QX_WRITTEN_HELD_TYPE(QX_DECLARE_UTILS_WRITTEN)
QX_KEPT_HELD_TYPE(QX_DECLARE_UTILS_VALUE)
QX_DECLARE_UTILS_HOLDER(qx::directory)
extern template QXUTILS_API bool qx::genericValue::getValue(qx::directory&) const;
