// The types of values, listed once: whatever has to do something for each of several types derives from here.
//
// As macros, for what only a macro can write, such as instantiations: QX_FIELD_TYPES(USE) says USE(T) for
// each T. As types, for everything else:
//
//     template <class... T>
//     void enter(table& all, typeList<T...>) { (all.add<T>(), ...); }
//     enter(all, join<numberTypes, typeList<string>>());
#pragma once

#include "qxSharedPtr.h"
#include "qxString.h"
#include "qxTypes.h"

#include <type_traits>
#include <vector>

// --- The lists ---

#define QX_INTEGER_TYPES(USE)                                                                                \
    USE(short)                                                                                               \
    USE(int)                                                                                                 \
    USE(qx::long32)                                                                                          \
    USE(qx::ushort)                                                                                          \
    USE(qx::uint)                                                                                            \
    USE(qx::ulong32)
#define QX_FLOATING_TYPES(USE)                                                                               \
    USE(float)                                                                                               \
    USE(double)
#define QX_NUMBER_TYPES(USE)                                                                                 \
    QX_INTEGER_TYPES(USE)                                                                                    \
    QX_FLOATING_TYPES(USE)
#define QX_CALENDAR_TYPES(USE)                                                                               \
    USE(qx::date)                                                                                            \
    USE(qx::time)                                                                                            \
    USE(qx::timestamp)
// The types of fields of objects.
#define QX_FIELD_TYPES(USE)                                                                                  \
    USE(bool)                                                                                                \
    QX_NUMBER_TYPES(USE)                                                                                     \
    USE(qx::string)                                                                                          \
    QX_CALENDAR_TYPES(USE)

// What values hold, by the ways in which they hold it: in every way; in values and as the target of reads; in
// values and as the source of writes; in values alone (and the maps of qxGenericMap.h).
#define QX_EVERY_HELD_TYPE(USE)                                                                              \
    QX_FIELD_TYPES(USE)                                                                                      \
    USE(std::vector<qx::genericValue>)
#define QX_READ_HELD_TYPE(USE)                                                                               \
    USE(qx::locString)                                                                                       \
    USE(qx::calcCrc32)                                                                                       \
    USE(qx::sharedPtr<qx::conditions::condition>)
#define QX_WRITTEN_HELD_TYPE(USE)                                                                            \
    USE(qx::uint64)                                                                                          \
    USE(qx::sharedPtr<qx::genericValue>)
#define QX_KEPT_HELD_TYPE(USE) USE(void*)
// The types of keys of the maps.
#define QX_MAP_KEY_TYPES(USE)                                                                                \
    USE(short)                                                                                               \
    USE(int)                                                                                                 \
    USE(qx::long32)                                                                                          \
    USE(qx::string)

namespace qx
{

class date;
class time;
class timestamp;
class locString;
class directory;
class calcCrc32;
class genericValue;

namespace conditions
{
class condition;
}

// --- ... and as types ---

template <class... T>
struct typeList
{};

namespace detail
{

template <class... Lists>
struct joined;
template <class... T>
struct joined<typeList<T...>>
{
    using type = typeList<T...>;
};
template <class... A, class... B, class... More>
struct joined<typeList<A...>, typeList<B...>, More...> : joined<typeList<A..., B...>, More...>
{};

// What a macro wrote with a comma in front of each type.
template <class Nothing, class... T>
using listBehind = typeList<T...>;

template <class T, class List>
inline constexpr bool isOneOf = false;
template <class T, class... Member>
inline constexpr bool isOneOf<T, typeList<Member...>> = (std::is_same_v<T, Member> || ...);

} // namespace detail

// One list behind the other.
template <class... Lists>
using join = typename detail::joined<Lists...>::type;

template <class T, class List>
concept oneOf = detail::isOneOf<T, List>;

#define QX_LISTED(...) , __VA_ARGS__
using integerTypes = detail::listBehind<void QX_INTEGER_TYPES(QX_LISTED)>;
using floatingTypes = detail::listBehind<void QX_FLOATING_TYPES(QX_LISTED)>;
using numberTypes = detail::listBehind<void QX_NUMBER_TYPES(QX_LISTED)>;
using calendarTypes = detail::listBehind<void QX_CALENDAR_TYPES(QX_LISTED)>;
using fieldTypes = detail::listBehind<void QX_FIELD_TYPES(QX_LISTED)>;
using everyHeldTypes = detail::listBehind<void QX_EVERY_HELD_TYPE(QX_LISTED)>;
using readHeldTypes = detail::listBehind<void QX_READ_HELD_TYPE(QX_LISTED)>;
using writtenHeldTypes = detail::listBehind<void QX_WRITTEN_HELD_TYPE(QX_LISTED)>;
using keptHeldTypes = detail::listBehind<void QX_KEPT_HELD_TYPE(QX_LISTED)>;
using mapKeyTypes = detail::listBehind<void QX_MAP_KEY_TYPES(QX_LISTED)>;
#undef QX_LISTED

} // namespace qx
