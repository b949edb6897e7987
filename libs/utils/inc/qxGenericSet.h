// genericSet: a dictionary from names to values.
//
// Each value lies behind a shared pointer, so an address that was handed out stays the variable's own
// storage: a later write under the name goes into that same storage. A set without entries owns no memory.
// Not locked: for one thread at a time.
#pragma once

#include "qxGenericValue.h"
#include "qxScString.h"
#include "qxSharedPtr.h"

#include <vector>

namespace qx
{

class QXUTILS_API genericSet
{
public:
    genericSet() noexcept = default;
    ~genericSet();
    genericSet(const genericSet&) = delete;
    genericSet& operator=(const genericSet&) = delete;

    // Stores a copy of `value` under `name`: in the storage that is there already, else in a new one. `keep`
    // makes no difference to what is stored. True when the value is stored.
    bool setGenericValue(const scString& name, const qx::genericValue& value, bool keep);

    // The storage of `name`; a null pointer for an unknown name.
    sharedPtr<qx::genericValue> genericValue(const scString& name);
    const_sharedPtr<qx::genericValue> genericValue(const scString& name) const;

    // The same without taking a share: borrowed until the name is erased or the set ends. Null for an unknown
    // name.
    qx::genericValue* find(const scString& name) const noexcept;

    void erase(const scString& name) noexcept;

private:
    struct entry
    {
        scString name;
        sharedPtr<qx::genericValue> value;
    };
    class index;

    const entry* lookUp(const scString& name) const noexcept;

    std::vector<entry> mEntries;
    index* mpIndex = nullptr; // positions by name, made when the set outgrows a walk along its entries
};

} // namespace qx
