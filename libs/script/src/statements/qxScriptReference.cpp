// References to host objects as held values, and their truth value.
#include "qxScriptReference.h"

#include "contexts/qxScriptEpoch.h"

#include "qxHeldValue.h"
#include "qxReference.h"

#include <array>

using reference = qx::intrface::interfaceptr<qx::intrface::unknown>;

template class qx::genericValue::holder<reference>;
template class qx::genericValue::valueholder<reference>;
template QXSCRIPT_API qx::genericValue::genericValue(const reference&);
template QXSCRIPT_API bool qx::genericValue::getValue(reference&) const;

void qx::intrface::objectEnded() noexcept
{
    script::epoch::move();
}

namespace qx::script
{

namespace
{

bool referenceToBool(void* destination, const void* source, int, char*)
{
    *static_cast<bool*>(destination) = static_cast<const reference*>(source)->isValid();
    return true;
}

// Known to the conversion manager while the library is loaded: the truth value of a reference, and the way
// through a reference to a variable.
struct referenceConverters
{
    referenceConverters()
    {
        for (typeconvert::typeConverterBase* converter : all())
            typeconvert::typeConversionManager::instance().add(converter);
    }
    ~referenceConverters()
    {
        for (typeconvert::typeConverterBase* converter : all())
            typeconvert::typeConversionManager::instance().remove(converter);
    }
    referenceConverters(const referenceConverters&) = delete;
    referenceConverters& operator=(const referenceConverters&) = delete;

private:
    using variable = sharedPtr<genericValue>;

    std::array<typeconvert::typeConverterBase*, 3> all() { return {&mTruth, &mReading, &mWriting}; }

    typeconvert::typeConverter<reference, bool> mTruth{referenceToBool};
    typeconvert::typeConverter<variable, reference> mReading{typeconvert::readReference<reference>};
    typeconvert::typeConverter<reference, variable> mWriting{typeconvert::writeReference<reference>};
};

referenceConverters loaded;

} // namespace

} // namespace qx::script
