// Names to values: a walk along a few entries, a hash beyond.
#include "qxGenericSet.h"

#include "qxAutoPtr.h"

#include <unordered_map>

namespace qx
{

namespace
{

constexpr std::size_t walkedAtMost = 16;

} // namespace

class genericSet::index : public std::unordered_map<scString, std::size_t>
{};

genericSet::~genericSet()
{
    delete mpIndex;
}

const genericSet::entry* genericSet::lookUp(const scString& name) const noexcept
{
    if (mpIndex) {
        const auto found = mpIndex->find(name);
        return found == mpIndex->end() ? nullptr : &mEntries[found->second];
    }
    for (const entry& e : mEntries)
        if (e.name == name)
            return &e;
    return nullptr;
}

bool genericSet::setGenericValue(const scString& name, const qx::genericValue& value, bool)
{
    if (const entry* existing = lookUp(name)) {
        *existing->value = value;
        return true;
    }
    mEntries.push_back({name, sharedPtr<qx::genericValue>(new qx::genericValue(value))});
    try {
        if (mpIndex)
            mpIndex->emplace(name, mEntries.size() - 1);
        else if (mEntries.size() > walkedAtMost) {
            autoPtr<index> made(new index);
            for (std::size_t i = 0; i < mEntries.size(); ++i)
                made->emplace(mEntries[i].name, i);
            mpIndex = made.release();
        }
    } catch (...) {
        mEntries.pop_back();
        throw;
    }
    return true;
}

sharedPtr<qx::genericValue> genericSet::genericValue(const scString& name)
{
    const entry* found = lookUp(name);
    return found ? found->value : sharedPtr<qx::genericValue>();
}

const_sharedPtr<qx::genericValue> genericSet::genericValue(const scString& name) const
{
    const entry* found = lookUp(name);
    return found ? const_sharedPtr<qx::genericValue>(found->value) : const_sharedPtr<qx::genericValue>();
}

qx::genericValue* genericSet::find(const scString& name) const noexcept
{
    const entry* found = lookUp(name);
    return found ? found->value.get() : nullptr;
}

void genericSet::erase(const scString& name) noexcept
{
    const entry* found = lookUp(name);
    if (!found)
        return;
    // The last entry takes the place of the erased one; the erased value ends after the set is in order
    // again.
    const auto place = static_cast<std::size_t>(found - mEntries.data());
    const entry erased = std::move(mEntries[place]);
    if (mpIndex) {
        mpIndex->erase(name);
        if (place + 1 < mEntries.size())
            (*mpIndex)[mEntries.back().name] = place;
    }
    if (place + 1 < mEntries.size())
        mEntries[place] = std::move(mEntries.back());
    mEntries.pop_back();
}

} // namespace qx
