// Thread-caching free lists.
#include "qxFreeLists.h"

#include <cstdlib>

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

// The sizes of blocks are those that a heap with a word of its own before each block wastes nothing of.
constexpr std::size_t granule = 16;
constexpr std::size_t smallest = 24;
constexpr std::size_t classes = 16; // up to 264 bytes
constexpr unsigned keptPerClass = 256;

struct block
{
    block* next;
};

// Trivially destructible, so that it outlives every other thread-local object that still frees.
struct cache
{
    block* heads[classes];
    unsigned room[classes]; // for how many more blocks; none before the first and after the end
    bool isRegistered;
};

constinit QX_THREAD_LOCAL cache local = {};

// Gives the lists back when the thread ends; from then on the thread uses the heap.
struct drain
{
    ~drain()
    {
        for (block*& head : local.heads) {
            while (head) {
                block* const next = head->next;
                std::free(head);
                head = next;
            }
        }
        for (unsigned& room : local.room)
            room = 0;
    }
};

constexpr std::size_t classOf(std::size_t size)
{
    return size <= smallest ? 0 : (size - smallest + granule - 1) / granule;
}

constexpr std::size_t sizeOf(std::size_t c)
{
    return smallest + c * granule;
}

} // namespace

void* take(std::size_t size) noexcept
{
    const std::size_t c = classOf(size);
    if (c >= classes)
        return std::malloc(size);
    if (block* const head = local.heads[c]) {
        local.heads[c] = head->next;
        ++local.room[c];
        return head;
    }
    return std::malloc(sizeOf(c));
}

namespace
{

// Gives back what has no room in the lists of the thread; the first time makes the room. Not inline, so that
// `give` saves no registers.
[[gnu::noinline]] void giveElsewhere(void* freed, std::size_t size) noexcept
{
    if (!cached || !freed || classOf(size) >= classes || local.isRegistered)
        return std::free(freed);
    thread_local drain atThreadEnd;
    static_cast<void>(atThreadEnd);
    local.isRegistered = true;
    for (unsigned& room : local.room)
        room = keptPerClass;
    give(freed, size);
}

} // namespace

void give(void* freed, std::size_t size) noexcept
{
    const std::size_t c = classOf(size);
    if (!freed || c >= classes || local.room[c] == 0)
        return giveElsewhere(freed, size);
    --local.room[c];
    auto* const head = static_cast<block*>(freed);
    head->next = local.heads[c];
    local.heads[c] = head;
}

} // namespace qx::freelists
