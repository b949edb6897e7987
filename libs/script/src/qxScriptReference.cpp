// References to host objects as held values, and their truth value.
#include "qxScriptReference.h"

#include "qxHolder.h"

#define QX_DEFINE_INTERFACE_POINTER(T)                                                                       \
    template class qx::intrface::const_interfaceptr<qx::intrface::T>;                                        \
    template class qx::intrface::interfaceptr<qx::intrface::T>;

QX_ASKED_INTERFACE(QX_DEFINE_INTERFACE_POINTER)

using reference = qx::intrface::interfaceptr<qx::intrface::unknown>;

template class qx::genericValue::holder<reference>;
template class qx::genericValue::valueholder<reference>;
template QXSCRIPT_API qx::genericValue::genericValue(const reference&);
template QXSCRIPT_API bool qx::genericValue::getValue(reference&) const;

namespace qx::script
{

namespace
{

bool referenceToBool(void* destination, const void* source, int, char*)
{
    *static_cast<bool*>(destination) = static_cast<const reference*>(source)->isValid();
    return true;
}

// Known to the conversion manager while the library is loaded.
struct referenceConverter
{
    referenceConverter() { typeconvert::typeConversionManager::instance().add(&converter); }
    ~referenceConverter() { typeconvert::typeConversionManager::instance().remove(&converter); }

    typeconvert::typeConverter<reference, bool> converter{referenceToBool};
};

const referenceConverter loaded;

} // namespace

} // namespace qx::script
