// Thread-caching free lists.
//
// Each thread has one singly linked list for each size class, found through a pointer of
// its own, so the fast path of taking and giving is a handful of instructions without a
// lock. A block may be given back on another thread than the one that took it: it then
// serves that one. Whatever is too large, or finds its list full, is the heap's.
#include "qxFreeLists.h"

#include <cstdlib>
#include <utility>

namespace qx::freelists
{

namespace
{

// Address sanitizer finds use after free only if freed blocks really go.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool cached = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool cached = false;
#else
constexpr bool cached = true;
#endif
#else
constexpr bool cached = true;
#endif

// Block sizes for which malloc allocates nothing in vain: it keeps one word in front of each block, so they
// are 8, 24, 40 and so on.
constexpr std::size_t granule = 16;
constexpr std::size_t smallest = 8;
constexpr std::size_t classes = 17;
constexpr std::size_t largest = smallest + (classes - 1) * granule;
constexpr unsigned keptPerClass = 256;

struct block
{
    block* next;
};

// The lists of a thread.
struct cache
{
    block* heads[classes];
    unsigned room[classes]; // for how many more blocks
};

// Empty caches, shared by all threads: `before` is that of a thread until it frees its first block,
// `behind` that of one which has ended. They hold no block and have no room, so nobody writes them.
constinit cache before = {};
constinit cache behind = {};

// A pointer, since the room for variables of threads is small where the library is loaded late.
constinit QX_THREAD_LOCAL cache* local = &before;

// Gives the lists back when the thread ends; from then on the thread uses the heap. `local` outlives every
// other thread-local object that still frees.
struct drain
{
    void keepWatch() const noexcept {}
    ~drain()
    {
        cache* const ended = std::exchange(local, &behind);
        for (block* head : ended->heads) {
            while (head) {
                block* const next = head->next;
                std::free(head);
                head = next;
            }
        }
        std::free(ended);
    }
};

// Not in a function, where its guard would take eight bytes more of each thread.
thread_local const drain atThreadEnd;

// Of a size up to `largest`.
constexpr std::size_t classOf(std::size_t size)
{
    return (size + granule - 1 - smallest) / granule;
}

constexpr std::size_t sizeOf(std::size_t c)
{
    return smallest + c * granule;
}
static_assert(sizeOf(classOf(largest)) == largest && sizeOf(classOf(1)) == smallest &&
              sizeOf(classOf(smallest + 1)) == smallest + granule);

} // namespace

void* take(std::size_t size) noexcept
{
    if (size > largest)
        return std::malloc(size);
    const std::size_t c = classOf(size);
    cache& own = *local;
    if (block* const head = own.heads[c]) {
        own.heads[c] = head->next;
        ++own.room[c];
        return head;
    }
    return std::malloc(sizeOf(c));
}

namespace
{

// The slow path of `give`: frees what the thread's cache has no room for, and on the first call of a thread
// allocates its cache. Not inline, so that `give` saves no registers: W4, whose
// texts come and go in holders.
[[gnu::noinline]] void giveElsewhere(void* freed, std::size_t size) noexcept
{
    if (!cached || !freed || size > largest || local != &before)
        return std::free(freed);
    auto* const made = static_cast<cache*>(std::calloc(1, sizeof(cache)));
    if (!made)
        return std::free(freed);
    atThreadEnd.keepWatch(); // the first mention makes it
    for (unsigned& room : made->room)
        room = keptPerClass;
    local = made;
    give(freed, size);
}

} // namespace

void give(void* freed, std::size_t size) noexcept
{
    if (!freed || size > largest)
        return giveElsewhere(freed, size);
    const std::size_t c = classOf(size);
    cache& own = *local;
    if (own.room[c] == 0)
        return giveElsewhere(freed, size);
    --own.room[c];
    auto* const head = static_cast<block*>(freed);
    head->next = own.heads[c];
    own.heads[c] = head;
}

} // namespace qx::freelists
