// The holders of the types that this library owns, instantiated.
#include "qxHeldTypes.h"

#define QX_HOLDER(...) template class qx::genericValue::holder<__VA_ARGS__>;
#define QX_VALUEHOLDER(...) template class qx::genericValue::valueholder<__VA_ARGS__>;
#define QX_PTRHOLDER(...) template class qx::genericValue::ptrholder<__VA_ARGS__>;
#define QX_CONSTPTRHOLDER(...) template class qx::genericValue::constptrholder<__VA_ARGS__>;

QX_HELD_TYPES(QX_HOLDER, QX_VALUEHOLDER, QX_PTRHOLDER, QX_CONSTPTRHOLDER)
