// The held types of the utility library, complete, with their holders.
//
// A source includes this instead of the header of each type when it works with values of
// many types, or with their holders in place (qxHolder.h):
//
//     const auto shared = value.holderCopy();
//     if (const auto* text = dynamic_cast<qx::genericValue::holder<qx::string>*>(shared.get()))
//         length = text->constValue().size(); // without a copy of the text
//
// The holders are instantiated once, in the library; here they are declared, so that every
// user sees one type_info and the dynamic cast above works across libraries. A type in
// these lists but not in genericValue's, or the other way round, does not link.
//
// The macros take a macro USE and call it for each type of a group; a type with a comma in
// its name comes as several arguments, so USE is variadic:
//
//     #define PRINT_NAME(...) std::puts(#__VA_ARGS__);
//     QX_EVERY_HELD_TYPE(PRINT_NAME)
//
// They serve these declarations and the definitions behind them. No order is promised.
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

// What each group has of genericValue's members, declared as instantiated elsewhere.
// Explicit, for each member: MinGW exports no inline member of an instantiated class.
#define QX_DECLARE_UTILS_HOLDER(...) extern template class QXUTILS_API qx::genericValue::holder<__VA_ARGS__>;
// A type that a value can be made of.
#define QX_DECLARE_UTILS_VALUE(...)                                                                          \
    QX_DECLARE_UTILS_HOLDER(__VA_ARGS__)                                                                     \
    extern template class QXUTILS_API qx::genericValue::valueholder<__VA_ARGS__>;                            \
    extern template QXUTILS_API qx::genericValue::genericValue(__VA_ARGS__ const&);
#define QX_DECLARE_UTILS_MAP(Key) QX_DECLARE_UTILS_VALUE(std::map<Key, qx::genericValue>)
// ... and read into.
#define QX_DECLARE_UTILS_READ(...)                                                                           \
    QX_DECLARE_UTILS_VALUE(__VA_ARGS__)                                                                      \
    extern template QXUTILS_API bool qx::genericValue::getValue(__VA_ARGS__&) const;
// ... and written from.
#define QX_DECLARE_UTILS_WRITTEN(...)                                                                        \
    QX_DECLARE_UTILS_VALUE(__VA_ARGS__)                                                                      \
    extern template QXUTILS_API bool qx::genericValue::setValue(__VA_ARGS__ const&, bool);
// ... and both.
#define QX_DECLARE_UTILS_EVERY(...)                                                                          \
    QX_DECLARE_UTILS_READ(__VA_ARGS__)                                                                       \
    extern template QXUTILS_API bool qx::genericValue::setValue(__VA_ARGS__ const&, bool);

// The declarations themselves. A source that includes this instantiates none of these
// members.
QX_EVERY_HELD_TYPE(QX_DECLARE_UTILS_EVERY)
QX_READ_HELD_TYPE(QX_DECLARE_UTILS_READ)
QX_WRITTEN_HELD_TYPE(QX_DECLARE_UTILS_WRITTEN)
QX_KEPT_HELD_TYPE(QX_DECLARE_UTILS_VALUE)
QX_MAP_KEY_TYPES(QX_DECLARE_UTILS_MAP)
// A directory is in no group: it is read, and kept in no value.
QX_DECLARE_UTILS_HOLDER(qx::directory)
extern template QXUTILS_API bool qx::genericValue::getValue(qx::directory&) const;
