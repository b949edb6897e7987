// Values and the life of their holders.
//
// The word of a value is the address of its holder, 0 for null. It is read and exchanged under a lock striped
// by the value's address, except to see whether it is 0; nothing else is done under that lock. A holder's
// block begins with a header that carries the use counter.
#include "qxHolder.h"

#include "qxFreeLists.h"
#include "qxHeldTypes.h"

#include <thread>

namespace qx
{

namespace
{

struct blockHeader
{
    ulong32 counter;
    uint size;         // of the whole block
    blockHeader* next; // in the work list of holders that end
};
static_assert(sizeof(blockHeader) % alignof(std::max_align_t) == 0);

blockHeader* headerOf(void* storage) noexcept
{
    return static_cast<blockHeader*>(storage) - 1;
}

// Guards the word of one value.
class wordLock
{
public:
    explicit wordLock(const void* value) noexcept : mFlag(stripes[stripeOf(value)].flag)
    {
        constexpr int spinsBeforeYield = 64;
        for (int spins = 0; __atomic_exchange_n(&mFlag, true, __ATOMIC_ACQUIRE);)
            if (++spins > spinsBeforeYield)
                std::this_thread::yield();
    }
    ~wordLock() { __atomic_store_n(&mFlag, false, __ATOMIC_RELEASE); }
    wordLock(const wordLock&) = delete;
    wordLock& operator=(const wordLock&) = delete;

private:
    static constexpr std::size_t stripeCount = 256;
    struct alignas(64) stripe // a cache line each, so that neighbours do not slow each other
    {
        bool flag = false;
    };
    static stripe stripes[stripeCount];

    static std::size_t stripeOf(const void* value) noexcept
    {
        const auto address = reinterpret_cast<std::uintptr_t>(value);
        return (address >> 3 ^ address >> 12) % stripeCount;
    }

    bool& mFlag;
};

constinit wordLock::stripe wordLock::stripes[wordLock::stripeCount] = {};

genericValue::holderbase* holderIn(std::uintptr_t word) noexcept
{
    return reinterpret_cast<genericValue::holderbase*>(word); // NOLINT(performance-no-int-to-ptr)
}

// Takes over one count of the holder in `word`.
sharedPtr<genericValue::holderbase> attached(std::uintptr_t word) noexcept
{
    if (word == 0)
        return {};
    genericValue::holderbase* const holder = holderIn(word);
    return sharedPtr<genericValue::holderbase>::attach(holder, &headerOf(holder)->counter);
}

} // namespace

genericValue::holderbase::~holderbase() = default;

void* genericValue::holderbase::allocate(std::size_t size) noexcept
{
    const std::size_t whole = sizeof(blockHeader) + size;
    void* const storage = freelists::take(whole);
    if (!storage)
        return nullptr;
    return new (storage) blockHeader{ulong32(0u), static_cast<uint>(whole), nullptr} + 1;
}

void genericValue::holderbase::deallocate(void* storage) noexcept
{
    if (!storage)
        return;
    blockHeader* const header = headerOf(storage);
    freelists::give(header, header->size);
}

ulong32* counterPlace<genericValue::holderbase>::obtain(genericValue::holderbase* holder) noexcept
{
    return &headerOf(holder)->counter;
}

void deleteObj<genericValue::holderbase>::destroy(genericValue::holderbase* holder) noexcept
{
    // Values end nested in each other only so far; what lies deeper waits in a list, which the deepest level
    // works off.
    constexpr int nestedAtMost = 32;
    static thread_local int nesting = 0;
    static thread_local blockHeader* waiting = nullptr;
    if (nesting == nestedAtMost) {
        blockHeader* const header = headerOf(holder);
        header->next = waiting;
        waiting = header;
        return;
    }
    ++nesting;
    delete holder;
    while (nesting == nestedAtMost && waiting) {
        blockHeader* const next = waiting;
        waiting = next->next;
        delete reinterpret_cast<genericValue::holderbase*>(next + 1);
    }
    --nesting;
}

genericValue::genericValue(const genericValue& other)
{
    if (const sharedPtr<holderbase> shared = other.holderCopy())
        adopt(sharedPtr<holderbase>(shared->clone()));
}

genericValue& genericValue::operator=(const genericValue& other)
{
    if (this == &other)
        return *this;
    sharedPtr<holderbase> replacement;
    if (const sharedPtr<holderbase> shared = other.holderCopy())
        replacement = sharedPtr<holderbase>(shared->clone());
    swapHolder(replacement);
    return *this;
}

genericValue& genericValue::operator=(genericValue&& other) noexcept
{
    if (this == &other)
        return *this;
    sharedPtr<holderbase> moved;
    other.swapHolder(moved);
    swapHolder(moved);
    return *this;
}

genericValue::~genericValue()
{
    attached(mWord);
}

bool genericValue::isNull() const noexcept
{
    return __atomic_load_n(&mWord, __ATOMIC_RELAXED) == 0;
}

void genericValue::clear() noexcept
{
    sharedPtr<holderbase> none;
    swapHolder(none);
}

sharedPtr<genericValue::holderbase> genericValue::holderCopy() const noexcept
{
    if (isNull())
        return {};
    const wordLock guard(this);
    if (mWord == 0)
        return {};
    interlockedIncrement(&headerOf(holderIn(mWord))->counter);
    return attached(mWord);
}

void genericValue::adopt(sharedPtr<holderbase> first) noexcept
{
    mWord = reinterpret_cast<std::uintptr_t>(first.detach());
}

void genericValue::swapHolder(sharedPtr<holderbase>& other) noexcept
{
    const auto replacement = reinterpret_cast<std::uintptr_t>(other.detach());
    std::uintptr_t previous = 0;
    {
        const wordLock guard(this);
        previous = mWord;
        __atomic_store_n(&mWord, replacement, __ATOMIC_RELAXED); // isNull reads without the lock
    }
    other = attached(previous);
}

} // namespace qx
