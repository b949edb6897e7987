// The one place where the holders of the library's types are instantiated: one type_info
// for each, exported, so that dynamic casts agree in all libraries.
#include "qxHeldTypes.h"

#include "qxHeldValue.h"

#define QX_DEFINE_HOLDER(...) template class qx::genericValue::holder<__VA_ARGS__>;
#define QX_DEFINE_VALUE(...)                                                                                 \
    QX_DEFINE_HOLDER(__VA_ARGS__)                                                                            \
    template class qx::genericValue::valueholder<__VA_ARGS__>;                                               \
    template qx::genericValue::genericValue(__VA_ARGS__ const&);
#define QX_DEFINE_MAP(Key) QX_DEFINE_VALUE(std::map<Key, qx::genericValue>)
#define QX_DEFINE_READ(...)                                                                                  \
    QX_DEFINE_VALUE(__VA_ARGS__)                                                                             \
    template bool qx::genericValue::getValue(__VA_ARGS__&) const;
#define QX_DEFINE_WRITTEN(...)                                                                               \
    QX_DEFINE_VALUE(__VA_ARGS__)                                                                             \
    template bool qx::genericValue::setValue(__VA_ARGS__ const&, bool);
#define QX_DEFINE_EVERY(...)                                                                                 \
    QX_DEFINE_READ(__VA_ARGS__)                                                                              \
    template bool qx::genericValue::setValue(__VA_ARGS__ const&, bool);

QX_EVERY_HELD_TYPE(QX_DEFINE_EVERY)
QX_READ_HELD_TYPE(QX_DEFINE_READ)
QX_WRITTEN_HELD_TYPE(QX_DEFINE_WRITTEN)
QX_KEPT_HELD_TYPE(QX_DEFINE_VALUE)
QX_MAP_KEY_TYPES(QX_DEFINE_MAP)
QX_DEFINE_HOLDER(qx::directory)
template bool qx::genericValue::getValue(qx::directory&) const;
