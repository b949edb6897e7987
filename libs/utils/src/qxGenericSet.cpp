// Names to values: a walk along a few entries, a hash beyond.
#include "qxGenericSet.h"

#include "qxAutoPtr.h"
#include "qxFreeLists.h"

#include <new>
#include <unordered_map>

namespace qx
{

// --- entry ---

sharedPtr<qx::genericValue> genericSet::entry::address()
{
    if (!mpShared) {
        void* const storage = freelists::take(sizeof(sharedVariable));
        if (!storage)
            throw std::bad_alloc();
        mpShared = new (storage) sharedVariable{{ulong32(1u), 0}, std::move(mValue)};
    }
    interlockedIncrement(&mpShared->counter);
    return sharedPtr<qx::genericValue>::attach(&mpShared->value, &mpShared->counter);
}

void genericSet::entry::drop() noexcept
{
    sharedPtr<qx::genericValue>::attach(&mpShared->value, &mpShared->counter);
}

// --- genericSet ---

class genericSet::index : public std::unordered_map<scString, uint>
{};

sharedPtr<qx::genericValue> genericSet::genericValue(const scString& name)
{
    entry* const found = find(name);
    return found ? found->address() : sharedPtr<qx::genericValue>();
}

const_sharedPtr<qx::genericValue> genericSet::genericValue(const scString& name) const
{
    return const_cast<genericSet*>(this)->genericValue(name);
}

void genericSet::erase(const scString& name) noexcept
{
    entry* const found = find(name);
    if (!found)
        return;
    // The last entry takes the place of the erased one; the erased value ends after the set is in order
    // again.
    const entry erased = std::move(*found);
    found->~entry();
    --mCount;
    entry* const last = mpEntries + mCount;
    if (mpIndex)
        mpIndex->erase(name);
    if (found == last)
        return;
    if (mpIndex)
        (*mpIndex)[last->mName] = static_cast<uint>(found - mpEntries);
    new (found) entry(std::move(*last));
    last->~entry();
}

genericSet::entry* genericSet::findIndexed(const scString& name) noexcept
{
    const auto found = mpIndex->find(name);
    return found == mpIndex->end() ? nullptr : mpEntries + found->second;
}

// Where there is no room for a new name at once, or the name is there already.
bool genericSet::storeOtherwise(const scString& name, const qx::genericValue& value)
{
    if (entry* const existing = find(name))
        existing->value() = value;
    else
        insert(name, qx::genericValue(value));
    return true;
}

void genericSet::grow()
{
    const uint capacity = mCapacity * 2;
    auto* const larger = static_cast<entry*>(freelists::take(capacity * sizeof(entry)));
    if (!larger)
        throw std::bad_alloc();
    for (uint i = 0; i < mCount; ++i) {
        new (larger + i) entry(std::move(mpEntries[i]));
        mpEntries[i].~entry();
    }
    if (mpEntries != own())
        freelists::give(mpEntries, mCapacity * sizeof(entry));
    mpEntries = larger;
    mCapacity = capacity;
}

void genericSet::end() noexcept
{
    for (uint i = 0; i < mCount; ++i)
        mpEntries[i].~entry();
    delete mpIndex;
    if (mCapacity != ownEntries)
        freelists::give(mpEntries, mCapacity * sizeof(entry));
}

// The last entry is new, and the set too large for a walk.
void genericSet::enterLast()
{
    try {
        if (mpIndex) {
            mpIndex->emplace(mpEntries[mCount - 1].mName, mCount - 1);
            return;
        }
        autoPtr<index> made(new index);
        for (uint i = 0; i < mCount; ++i)
            made->emplace(mpEntries[i].mName, i);
        mpIndex = made.release();
    } catch (...) {
        mpEntries[--mCount].~entry();
        throw;
    }
}

} // namespace qx
