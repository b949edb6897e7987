// Values and the life of their holders.
//
// The word of a value (qxCell.h) is read without a lock. Small values and null are replaced by
// compare-exchange; a holder is counted up and replaced under a lock striped by the value's address, so that
// nobody ends it in between. Nothing else is done under that lock. A holder's block begins with a header that
// carries the use counter.
#include "qxCell.h"
#include "qxHolder.h"

#include "qxFreeLists.h"
#include "qxHeldTypes.h"
#include "qxStack.h"

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
static_assert(sizeof(blockHeader) == counterPlace<genericValue::holderbase>::headSize &&
              offsetof(blockHeader, counter) == 0);

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

genericValue::holderbase* holderIn(cell::word word) noexcept
{
    return reinterpret_cast<genericValue::holderbase*>(word); // NOLINT(performance-no-int-to-ptr)
}

// Takes over one count of the holder in `word`; null for a word that names none.
sharedPtr<genericValue::holderbase> attached(cell::word word) noexcept
{
    if (!cell::isHolder(word))
        return {};
    genericValue::holderbase* const holder = holderIn(word);
    return sharedPtr<genericValue::holderbase>::attach(holder, &headerOf(holder)->counter);
}

// A new holder of a small value; null without memory.
genericValue::holderbase* promoted(cell::word word) noexcept
{
    return cell::visit(word, []<class T>(const T& value) -> genericValue::holderbase* {
        return genericValue::valueholder<T>::make(value);
    });
}

// Destructors of nested values recurse to this depth. Holders below it are queued on a work list of the
// thread, which the deepest level drains.
constexpr int nestedAtMost = 32;
constinit QX_THREAD_LOCAL int nesting = 0;
constinit QX_THREAD_LOCAL blockHeader* waiting = nullptr;

} // namespace

genericValue::holderbase::~holderbase() = default;

void* genericValue::holderbase::allocate(std::size_t size) noexcept
{
    const std::size_t whole = sizeof(blockHeader) + size;
    void* const storage = freelists::take(whole);
    if (!storage)
        return nullptr;
    if (!cell::isHolder(reinterpret_cast<cell::word>(storage))) { // an address that does not fit into a word
        freelists::give(storage, whole);
        return nullptr;
    }
    return new (storage) blockHeader{ulong32(0u), static_cast<uint>(whole), nullptr} + 1;
}

void genericValue::holderbase::deallocate(void* storage) noexcept
{
    if (!storage)
        return;
    blockHeader* const header = headerOf(storage);
    freelists::give(header, header->size);
}

void deleteObj<genericValue::holderbase>::destroy(genericValue::holderbase* holder) noexcept
{
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

ulong32* counterPlace<genericValue>::obtain(genericValue*)
{
    void* const storage = freelists::take(sizeof(variableCount));
    if (!storage)
        throw std::bad_alloc();
    return &(new (storage) variableCount{ulong32(0u), variableCount::apart})->counter;
}

void counterPlace<genericValue>::endCount(ulong32* counter) noexcept
{
    freelists::give(counter, sizeof(variableCount));
}

void counterPlace<genericValue>::endShared(genericValue* value, ulong32* counter) noexcept
{
    value->~genericValue();
    freelists::give(counter, sizeof(sharedVariable));
}

void genericValue::copyHolder(const genericValue& other)
{
    mWord = cell::null;
    *this = other;
}

genericValue& genericValue::operator=(const genericValue& other)
{
    if (this == &other)
        return *this;
    const cell::word source = cell::access::load(other);
    if (!cell::isHolder(source)) {
        exchange(source);
        return *this;
    }
    sharedPtr<holderbase> replacement;
    stack::check(); // copying what a holder holds may come back here for each level of nesting
    if (const sharedPtr<holderbase> shared = other.holderCopy())
        replacement = sharedPtr<holderbase>(shared->clone());
    exchange(reinterpret_cast<cell::word>(replacement.detach()));
    return *this;
}

genericValue& genericValue::operator=(genericValue&& other) noexcept
{
    if (this != &other)
        exchange(std::exchange(other.mWord, cell::null)); // nobody else is to see what may be moved from
    return *this;
}

void genericValue::clear() noexcept
{
    exchange(cell::null);
}

sharedPtr<genericValue::holderbase> genericValue::holderCopy() const noexcept
{
    for (;;) {
        const cell::word w = cell::access::load(*this);
        if (w == cell::null)
            return {};
        if (cell::isHolder(w)) {
            const wordLock guard(this);
            const cell::word locked = __atomic_load_n(&mWord, __ATOMIC_ACQUIRE);
            if (!cell::isHolder(locked))
                continue;
            interlockedIncrement(&headerOf(holderIn(locked))->counter);
            return attached(locked);
        }
        sharedPtr<holderbase> made(promoted(w));
        if (!made)
            return {};
        // One count for this value, one for the caller.
        const sharedPtr<holderbase> own = made;
        const auto address = reinterpret_cast<cell::word>(own.get());
        if (cell::access::storeIf(const_cast<genericValue&>(*this), w, address)) {
            sharedPtr<holderbase>(own).detach();
            return made;
        }
    }
}

void genericValue::adopt(sharedPtr<holderbase> first) noexcept
{
    mWord = reinterpret_cast<cell::word>(first.detach());
}

void genericValue::swapHolder(sharedPtr<holderbase>& other) noexcept
{
    const cell::word previous = exchanged(reinterpret_cast<cell::word>(other.detach()));
    other = cell::isSmall(previous) ? sharedPtr<holderbase>(promoted(previous)) : attached(previous);
}

void genericValue::end(std::uint64_t word) noexcept
{
    attached(word);
}

void genericValue::exchange(std::uint64_t word) noexcept
{
    attached(exchanged(word));
}

std::uint64_t genericValue::exchanged(std::uint64_t word) noexcept
{
    for (;;) {
        const cell::word previous = cell::access::load(*this);
        if (!cell::isHolder(previous)) {
            if (cell::access::storeIf(*this, previous, word))
                return previous;
            continue;
        }
        const wordLock guard(this);
        // Small values come and go without the lock, so what is here may be one by now.
        return __atomic_exchange_n(&mWord, word, __ATOMIC_ACQ_REL);
    }
}

} // namespace qx
