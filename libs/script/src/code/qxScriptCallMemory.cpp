// The memory of calls: a cache of each thread, with one place for each of so many calls. Two calls of one
// place take it from each other.
#include "code/qxScriptCallMemory.h"

#include "contexts/qxScriptEpoch.h"
#include "qxScriptSettings.h"
#include "statements/qxScriptShortCuts.h"

#include "qxHooks.h"
#include "qxSystem.h"

#include <new>
#include <utility>

namespace qx::script
{

// What a call has found. It lives as long as the memory knows it or a run pins it.
class rememberedCall
{
public:
    rememberedCall(const string& basePath, const codeCall& call, uint64 tick)
        : mCall(call.identity()), mEpoch(epoch::current), mTick(tick), mBasePath(basePath),
          mFunction(functionTable::instance().getFunction(basePath, call))
    {
        const string* const home = heldInPlace<string>(mFunction->directoryName());
        mIsAtHome = home && *home == basePath;
    }
    rememberedCall(const rememberedCall&) = delete;
    rememberedCall& operator=(const rememberedCall&) = delete;

    bool isValid(const string& basePath, const codeCall& call, uint64 tick) const
    {
        return mCall == call.identity() && mEpoch == epoch::current && mTick == tick &&
               mBasePath == basePath && !settings::strictFileCheck();
    }
    const function& called() const noexcept { return *mFunction; }
    bool isAtHome() const noexcept { return mIsAtHome; }

    void pin() noexcept { ++mPins; }
    void unpin() noexcept
    {
        if (--mPins == 0)
            delete this;
    }

private:
    ~rememberedCall() = default;

    std::uint64_t mCall;
    std::uint64_t mEpoch; // before the search, which may run code of a host's system
    uint64 mTick;
    string mBasePath;
    sharedPtr<function> mFunction;
    bool mIsAtHome = false;
    unsigned mPins = 0; // of the thread, and one of the memory
};

namespace
{

// The cache of a thread. Its places are made when the thread first calls, and lie on the heap: the room for
// variables of threads is small where the library is loaded late.
class callMemory
{
public:
    // Null where nothing valid is known.
    rememberedCall* lookUp(const string& basePath, const codeCall& call, uint64 tick) const
    {
        rememberedCall* const known = mpPlaces ? *placeOf(call) : nullptr;
        return known && known->isValid(basePath, call, tick) ? known : nullptr;
    }
    // Keeps what a call has found, unless the thread ends or is without memory.
    void remember(const codeCall& call, rememberedCall& found);
    // At the end of the thread; nothing is remembered any more.
    void end() noexcept;

private:
    static constexpr std::size_t placeCount = 256;

    rememberedCall** placeOf(const codeCall& call) const { return mpPlaces + call.identity() % placeCount; }
    bool makePlaces();

    rememberedCall** mpPlaces = nullptr; // owned; null until the first call, and at the end
};

constinit QX_THREAD_LOCAL callMemory memoryOfThread;
// Not a member, where it would take eight bytes.
constinit QX_THREAD_LOCAL bool memoryHasEnded = false;

// Ends the memory with its thread. `memoryOfThread` itself has nothing to destroy, so that whatever runs
// later on a thread that ends still finds it.
struct memoryEnd
{
    void keepWatch() const noexcept {}
    ~memoryEnd() { memoryOfThread.end(); }
};

// Not in a function, where its guard would take eight bytes more of each thread.
thread_local const memoryEnd atThreadEnd;

void callMemory::remember(const codeCall& call, rememberedCall& found)
{
    if (!mpPlaces && !makePlaces())
        return;
    found.pin();
    // The end of an old tree may run scripts, which take the place: the new one stands there by then.
    if (rememberedCall* const old = std::exchange(*placeOf(call), &found))
        old->unpin();
}

bool callMemory::makePlaces()
{
    if (memoryHasEnded)
        return false;
    atThreadEnd.keepWatch(); // the first mention makes it
    mpPlaces = new (std::nothrow) rememberedCall*[placeCount]();
    return mpPlaces != nullptr;
}

void callMemory::end() noexcept
{
    memoryHasEnded = true;
    rememberedCall** const places = std::exchange(mpPlaces, nullptr);
    for (std::size_t i = 0; places && i < placeCount; ++i)
        if (places[i])
            places[i]->unpin();
    delete[] places;
}

// The library below tells when a host's code has run, while this one is loaded.
struct listening
{
    listening() { hooks::set(hooks::foreignCode, epoch::move); }
    ~listening() { hooks::set(hooks::foreignCode, nullptr); }
    listening(const listening&) = delete;
    listening& operator=(const listening&) = delete;
};

const listening whileLoaded;

} // namespace

pinnedFunction pinnedFunction::find(const string& basePath, const codeCall& call)
{
    const uint64 tick = system::current().tick();
    callMemory& memory = memoryOfThread;
    rememberedCall* found = memory.lookUp(basePath, call, tick);
    if (found) {
        found->pin();
        return pinnedFunction(*found);
    }
    found = new rememberedCall(basePath, call, tick);
    found->pin(); // before it is remembered: that may end a tree, which may run scripts
    memory.remember(call, *found);
    return pinnedFunction(*found);
}

pinnedFunction::pinnedFunction(rememberedCall& pinned) noexcept : mFound(pinned) {}

pinnedFunction::~pinnedFunction()
{
    mFound.unpin();
}

const function& pinnedFunction::operator*() const noexcept
{
    return mFound.called();
}

bool pinnedFunction::isAtHome() const noexcept
{
    return mFound.isAtHome();
}

} // namespace qx::script
