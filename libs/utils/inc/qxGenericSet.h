// genericSet: a dictionary from names to values.
//
// A set of a few names is one object without memory of its own. A value whose address is handed out moves
// into a block that is shared with whoever has the address, and stays there: a later write under the name
// goes into that same storage. Not locked: for one thread at a time.
#pragma once

#include "qxGenericValue.h"
#include "qxScString.h"
#include "qxSharedPtr.h"

namespace qx
{

class QXUTILS_API genericSet
{
public:
    // A name and its storage. Borrowed until the set is changed.
    class QXUTILS_API entry
    {
    public:
        entry(const scString& name, qx::genericValue&& value) noexcept : mName(name), mValue(std::move(value))
        {}
        entry(const scString& name, const qx::genericValue& value) : mName(name), mValue(value) {}
        entry(entry&& other) noexcept
            : mName(other.mName), mValue(std::move(other.mValue)),
              mpShared(std::exchange(other.mpShared, nullptr))
        {}
        entry(const entry&) = delete;
        entry& operator=(const entry&) = delete;
        ~entry()
        {
            if (mpShared)
                drop();
        }

        const scString& name() const noexcept { return mName; }
        qx::genericValue& value() noexcept { return mpShared ? mpShared->value : mValue; }
        // True when somebody else has the address.
        bool isShared() const noexcept
        {
            return mpShared && interlockedRead(&mpShared->counter) != 1u + mpShared->held;
        }
        // The value, if nobody has ever asked for its address; null otherwise.
        qx::genericValue* own() noexcept { return mpShared ? nullptr : &mValue; }
        // A share of the storage, which does not move any more.
        sharedPtr<qx::genericValue> address();

    private:
        friend class genericSet;

        void drop() noexcept;

        scString mName;
        qx::genericValue mValue;            // unless it is shared
        sharedVariable* mpShared = nullptr; // with one count for this entry
    };

    // Keeps the storage of an entry, which may be erased or moved meanwhile, without counting as somebody
    // else.
    class hold
    {
    public:
        explicit hold(entry& kept) : mpAddress(kept.address()), mpShared(kept.mpShared) { ++mpShared->held; }
        hold(const hold&) = delete;
        hold& operator=(const hold&) = delete;
        ~hold() { --mpShared->held; }

        qx::genericValue& value() const noexcept { return mpShared->value; }
        // As the entry's, while that is there.
        bool isShared() const noexcept { return interlockedRead(&mpShared->counter) != 1u + mpShared->held; }

    private:
        sharedPtr<qx::genericValue> mpAddress;
        sharedVariable* mpShared;
    };

    genericSet() noexcept : mpEntries(own()) {}
    ~genericSet()
    {
        if (mCapacity != ownEntries || !isSmall())
            end();
    }
    genericSet(const genericSet&) = delete;
    genericSet& operator=(const genericSet&) = delete;

    // Stores a copy of `value` under `name`: in the storage that is there already, else in a new one. The
    // flag makes no difference to what is stored. True when the value is stored.
    bool setGenericValue(const scString& name, const qx::genericValue& value, bool)
    {
        // A new name where there is room, which is what occurs most, without a call.
        if (mpIndex || mCount == mCapacity || findByWalk(name))
            return storeOtherwise(name, value);
        new (mpEntries + mCount) entry(name, value);
        ++mCount;
        return true;
    }
    // The same with a value that is emptied.
    void take(const scString& name, qx::genericValue&& value)
    {
        if (entry* const existing = find(name))
            existing->value() = std::move(value);
        else
            insert(name, std::move(value));
    }

    // The storage of `name`; a null pointer for an unknown name.
    sharedPtr<qx::genericValue> genericValue(const scString& name);
    const_sharedPtr<qx::genericValue> genericValue(const scString& name) const;

    // The entry of `name`; null for an unknown name.
    entry* find(const scString& name) noexcept { return isIndexed() ? findIndexed(name) : findByWalk(name); }
    // The same for a set that is not indexed, for those who look into several: without a call.
    entry* findByWalk(const scString& name) noexcept
    {
        entry* e = mpEntries;
        for (uint left = mCount; left != 0; --left, ++e)
            if (e->mName == name)
                return e;
        return nullptr;
    }
    bool isEmpty() const noexcept { return mCount == 0; }
    bool isIndexed() const noexcept { return mCount > walkedAtMost; }

    // A new entry; the name must not be there.
    entry& insert(const scString& name, qx::genericValue&& value)
    {
        if (mCount == mCapacity)
            grow();
        entry* const made = new (mpEntries + mCount) entry(name, std::move(value));
        ++mCount;
        if (mpIndex || mCount > walkedAtMost)
            enterLast();
        return *made;
    }

    void erase(const scString& name) noexcept;

private:
    class index;

    static constexpr uint ownEntries = 4;
    static constexpr uint walkedAtMost = 16; // names; beyond, a hash is quicker

    entry* own() noexcept { return reinterpret_cast<entry*>(mOwn); }
    entry* findIndexed(const scString& name) noexcept;
    bool storeOtherwise(const scString& name, const qx::genericValue& value);
    void grow();
    // True when all values lie in the entries, so that there is nothing to end.
    bool isSmall() const noexcept
    {
        const entry* e = mpEntries;
        for (uint left = mCount; left != 0; --left, ++e)
            if (e->mpShared || e->mValue.hasHolder())
                return false;
        return true;
    }
    void end() noexcept;
    void enterLast();

    entry* mpEntries;
    uint mCount = 0;
    uint mCapacity = ownEntries;
    index* mpIndex = nullptr; // positions by name, made when the set outgrows a walk along its entries
    alignas(entry) std::byte mOwn[ownEntries * sizeof(entry)];
};

} // namespace qx
