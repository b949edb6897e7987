// The table of names: open addressing, read without a lock. Names are added under a mutex
// and never leave, so a reader needs nothing but the order of the stores.
#include "qxScString.h"

#include "qxTextView.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace qx
{

namespace
{

struct entry
{
    string text;
    std::size_t hash;
};

// Nothing ever goes away, so that a look-up needs no lock. A table that is half full makes room for a larger
// one and stays, for those who are reading it.
struct nameTable
{
    using slot = std::atomic<const entry*>;

    nameTable(std::size_t size, const nameTable* before)
        : slots(std::make_unique<slot[]>(size)), mask(size - 1), smaller(before)
    {}

    // The slot of a name, or the empty one where it would be.
    slot& slotOf(std::wstring_view text, std::size_t hash) const noexcept
    {
        for (std::size_t i = hash;; ++i) {
            slot& candidate = slots[i & mask];
            const entry* const name = candidate.load(std::memory_order_acquire);
            if (!name || (name->hash == hash && isSameShort(name->text, text)))
                return candidate;
        }
    }

    std::unique_ptr<slot[]> slots;
    std::size_t mask; // their number is a power of two
    const nameTable* smaller;
};

class nameTables
{
public:
    const string* find(std::wstring_view text, std::size_t hash) const noexcept
    {
        const entry* const name = mCurrent.load(std::memory_order_acquire)->slotOf(text, hash).load();
        return name ? &name->text : nullptr;
    }

    // Not inline, so that a look-up of a known name saves few registers: W9, where each
    // word of a file is looked up.
    [[gnu::noinline]] const string* add(std::wstring_view text, std::size_t hash)
    {
        const std::lock_guard adding(mMutex);
        if (const string* const name = find(text, hash)) // another thread was first
            return name;
        auto made = std::make_unique<const entry>(entry{string(std::wstring(text)), hash});
        if (2 * mCount > mCurrent.load()->mask)
            enlarge();
        mCurrent.load()->slotOf(text, hash).store(made.get(), std::memory_order_release);
        ++mCount;
        return &made.release()->text;
    }

private:
    static constexpr std::size_t firstSize = 1024;

    void enlarge()
    {
        const nameTable* const full = mCurrent.load();
        auto made = std::make_unique<nameTable>(2 * (full->mask + 1), full);
        for (std::size_t i = 0; i <= full->mask; ++i)
            if (const entry* const name = full->slots[i].load())
                made->slotOf(name->text, name->hash).store(name);
        mCurrent.store(made.release(), std::memory_order_release);
    }

    std::atomic<const nameTable*> mCurrent = new nameTable(firstSize, nullptr);
    std::mutex mMutex; // of those who add
    std::size_t mCount = 0;
};

// Never destroyed: names outlive every other static object.
nameTables& names()
{
    static auto* const tables = new nameTables;
    return *tables;
}

std::size_t hashOf(std::wstring_view text) noexcept
{
    std::uint64_t hash = text.size();
    for (const wchar_t c : text) {
        hash = (hash ^ static_cast<std::uint64_t>(c)) * 0x9E37'79B9'7F4A'7C15u;
        hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
}

} // namespace

scString scString::createFrom(const qx::string& text)
{
    return intern(text);
}

scString scString::createFrom(const wchar_t* text)
{
    return intern(text ? std::wstring_view(text) : std::wstring_view());
}

scString scString::intern(std::wstring_view text)
{
    const std::size_t hash = hashOf(text);
    const qx::string* const name = names().find(text, hash);
    return scString(name ? name : names().add(text, hash));
}

} // namespace qx
