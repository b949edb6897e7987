// The walk along a chain of references, which ends at the variable or after too many.
#include "qxReference.h"

#include "qxCell.h"
#include "qxHooks.h"

namespace qx::typeconvert
{

sharedPtr<genericValue> referredVariable(const sharedPtr<genericValue>& reference)
{
    hooks::call(hooks::foreignCode); // the variable may be anybody's
    sharedPtr<genericValue> variable = reference;
    for (int followed = 0; variable && followed < referencesAtMost; ++followed) {
        if (!cell::isHolder(cell::access::load(*variable)))
            return variable;
        const sharedPtr<genericValue::holderbase> shared = variable->holderCopy();
        if (!dynamic_cast<genericValue::holder<sharedPtr<genericValue>>*>(shared.get()))
            return variable;
        sharedPtr<genericValue> next;
        genericValue::ptrholder<sharedPtr<genericValue>> target(&next);
        shared->copyTo(target);
        variable = next;
    }
    return {};
}

} // namespace qx::typeconvert
