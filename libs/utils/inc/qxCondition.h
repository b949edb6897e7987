// A condition: a small expression that can be tested against a value.
#pragma once

#include "qxExport.h"
#include "qxGenericValue.h"

namespace qx::conditions
{

class QXUTILS_API condition
{
public:
    virtual ~condition();
    // True when `value` fulfils the condition. May be asked from several threads at once.
    virtual bool isTrue(const genericValue& value) const = 0;
};

} // namespace qx::conditions
