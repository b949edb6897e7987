// genericSet: a dictionary from names to values.
//
//     qx::genericSet variables;
//     variables.setGenericValue(count, qx::genericValue(1), false);      // `count` is an scString
//     if (qx::genericSet::entry* const found = variables.find(count))
//         found->value().setValue(2);                                    // in place, for the moment
//     const qx::sharedPtr<qx::genericValue> kept = variables.genericValue(count);
//     variables.erase(count);                                            // `kept` is good still
//
// A set of a few names is one object without memory of its own; from the fifth name on it
// allocates, from the seventeenth on it is hashed. A value whose address is handed out
// moves into a block that is shared with whoever has the address, and stays there: a later
// write under the name goes into that same storage.
//
// Not locked: for one thread at a time. What address() hands out may outlive the set and go
// to other threads, as a genericValue may be used by several. Storing throws
// std::bad_alloc, and then the set is as before.
#pragma once

#include "qxGenericValue.h"
#include "qxScString.h"
#include "qxSharedPtr.h"

namespace qx
{

class QXUTILS_API genericSet
{
public:
    // A name and its storage. Owned by the set and borrowed by everybody else, until the
    // set is changed: a new name may move all entries, an erased one moves the last. Who
    // needs the storage for longer takes address() or a hold.
    class QXUTILS_API entry
    {
    public:
        // Made by the set alone.
        entry(const scString& name, qx::genericValue&& value) noexcept : mName(name), mValue(std::move(value))
        {}
        entry(const scString& name, const qx::genericValue& value) : mName(name), mValue(value) {}
        // Moves when the set grows, and when another one is erased. The block of a shared
        // value stays where it is.
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

        // The name that it was stored under; it never changes.
        const scString& name() const noexcept { return mName; }
        // The storage, wherever it lies at the moment.
        qx::genericValue& value() noexcept { return mpShared ? mpShared->value : mValue; }
        // True when somebody else has the address: a write here is seen there.
        bool isShared() const noexcept
        {
            return mpShared && interlockedRead(&mpShared->counter) != 1u + mpShared->held;
        }
        // The value, if nobody has ever asked for its address; null otherwise.
        qx::genericValue* own() noexcept { return mpShared ? nullptr : &mValue; }
        // A share of the storage, which does not move any more. The first call allocates
        // the block; throws std::bad_alloc, with the entry unchanged.
        sharedPtr<qx::genericValue> address();

    private:
        friend class genericSet;

        // Gives the entry's share of the block back.
        void drop() noexcept;

        // Either the value itself or the block that has it: the first address moves it, for
        // good.
        scString mName;
        qx::genericValue mValue;            // unless it is shared
        sharedVariable* mpShared = nullptr; // with one count for this entry
    };

    // Keeps the storage of an entry, which may be erased or moved meanwhile, without
    // counting as somebody else: isShared() of the entry does not see it. For one thread,
    // within one function:
    //
    //     const qx::genericSet::hold kept(*variables.find(count));
    //     run();                       // may erase the variable, or hand out its address
    //     kept.value().setValue(3);    // is written all the same
    class hold
    {
    public:
        // Throws as address() does.
        explicit hold(entry& kept) : mpAddress(kept.address()), mpShared(kept.mpShared) { ++mpShared->held; }
        hold(const hold&) = delete;
        hold& operator=(const hold&) = delete;
        ~hold() { --mpShared->held; }

        // The storage; it does not move while the hold lasts.
        qx::genericValue& value() const noexcept { return mpShared->value; }
        // isShared of the entry, while that is there.
        bool isShared() const noexcept { return interlockedRead(&mpShared->counter) != 1u + mpShared->held; }

    private:
        sharedPtr<qx::genericValue> mpAddress;
        sharedVariable* mpShared;
    };

    // Without a name.
    genericSet() noexcept : mpEntries(own()) {}
    // Ends the values that nobody else shares. A set of small values in its own room has
    // nothing to end.
    ~genericSet()
    {
        if (mCapacity != ownEntries || !isSmall())
            end();
    }
    genericSet(const genericSet&) = delete;
    genericSet& operator=(const genericSet&) = delete;

    // Stores a copy of `value` under `name`: in the storage that is there already, where
    // everybody with its address sees it, else in a new one. The flag makes no difference
    // to what is stored. True when the value is stored, which is always.
    bool setGenericValue(const scString& name, const qx::genericValue& value, bool)
    {
        // A new name where there is room, which is what occurs most, without a call.
        if (mpIndex || mCount == mCapacity || findByWalk(name))
            return storeOtherwise(name, value);
        new (mpEntries + mCount) entry(name, value);
        ++mCount;
        return true;
    }
    // setGenericValue with a value that is emptied.
    void take(const scString& name, qx::genericValue&& value)
    {
        if (entry* const existing = find(name))
            existing->value() = std::move(value);
        else
            insert(name, std::move(value));
    }

    // The storage of `name`, as entry::address() gives it; a null pointer for an unknown
    // name. The other one is for those who only read, and moves the value all the same.
    sharedPtr<qx::genericValue> genericValue(const scString& name);
    const_sharedPtr<qx::genericValue> genericValue(const scString& name) const;

    // The entry of `name`; null for an unknown name. Valid until the set is changed.
    entry* find(const scString& name) noexcept { return isIndexed() ? findIndexed(name) : findByWalk(name); }
    // find for a set that is not indexed: without a call, for those who look into several
    // sets in turn. An indexed set gives the right answer too, slowly.
    entry* findByWalk(const scString& name) noexcept
    {
        entry* e = mpEntries;
        for (uint left = mCount; left != 0; --left, ++e)
            if (e->mName == name)
                return e;
        return nullptr;
    }
    bool isEmpty() const noexcept { return mCount == 0; }
    // A set is indexed from the seventeenth name on.
    bool isIndexed() const noexcept { return mCount > walkedAtMost; }

    // A new entry with a value that is emptied; the name must not be there. Throws
    // std::bad_alloc, and then the set is as before.
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

    // Takes a name out; without effect where it is not there. The value ends last, when the
    // set is in order again, since what it holds may come back here. Storage that others
    // share stays theirs.
    void erase(const scString& name) noexcept;

private:
    // Places by name; see qxGenericSet.cpp.
    class index;

    // What a call of a function usually needs, and what fits a few cache lines.
    static constexpr uint ownEntries = 4;
    static constexpr uint walkedAtMost = 16; // names; beyond, a hash is quicker

    // The set's own room, as entries.
    entry* own() noexcept { return reinterpret_cast<entry*>(mOwn); }
    entry* findIndexed(const scString& name) noexcept;
    // setGenericValue where the name exists or there is no room for one more.
    bool storeOtherwise(const scString& name, const qx::genericValue& value);
    // Makes room for twice as many entries, which moves them.
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
    // Ends all entries and the memory beyond the set's own.
    void end() noexcept;
    // Puts the last entry into the index, which is made when it is missing. Takes the entry
    // back when it throws.
    void enterLast();

    // In order of their storing until one is erased: the last one takes its place.
    entry* mpEntries;
    uint mCount = 0;
    uint mCapacity = ownEntries;
    index* mpIndex = nullptr; // positions by name, made when the set outgrows a walk along its entries
    // Room for the first entries, which makes a set of few names one object.
    alignas(entry) std::byte mOwn[ownEntries * sizeof(entry)];
};

} // namespace qx
