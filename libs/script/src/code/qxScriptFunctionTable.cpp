// Loaded functions: the shared table, and the memory of each thread.
#include "code/qxScriptFunctionTable.h"

#include "code/qxScriptFile.h"
#include "contexts/qxScriptEpoch.h"
#include "qxScriptException.h"
#include "qxScriptSettings.h"
#include "statements/qxScriptShortCuts.h"

#include "qxHooks.h"
#include "qxSystem.h"

#include <atomic>
#include <memory>
#include <new>
#include <utility>

namespace qx::script
{

namespace
{

timestamp modificationTime(const file& scriptFile)
{
    return timestamp::fromTimer(scriptFile.lastModificationTime());
}

// The definitions of the file from which a function was loaded last, kept from its second function on:
// without them, loading all functions of a file costs the square of their number. They hold as long as the
// file has the time that it had before and after it was read.
class recentFile
{
public:
    // Null for another file and where they are not kept.
    std::shared_ptr<const definitionTable> definitions(const file& source, const timestamp& time)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        return mTable && isThis(source, time) ? mTable : nullptr;
    }
    // Remembers that the file has been read for one function. True when it is the second time.
    bool isReadAgain(const file& source, const timestamp& time)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        if (isThis(source, time))
            return true;
        mName = source.fullName();
        mTime = time;
        mTable.reset();
        return false;
    }
    void keep(const file& source, const timestamp& time, std::shared_ptr<const definitionTable> table)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        if (isThis(source, time))
            mTable.swap(table); // the one before ends behind the lock
    }

    static recentFile& instance()
    {
        static recentFile* const file = new recentFile; // never destroyed: scripts may run to the end
        return *file;
    }

private:
    bool isThis(const file& source, const timestamp& time) const
    {
        return mTime == time && mName == source.fullName();
    }

    std::mutex mMutex;
    string mName;
    timestamp mTime;
    std::shared_ptr<const definitionTable> mTable;
};

sharedPtr<function> parseDefinition(const scriptDefinition& definition, const file& source,
                                    const timestamp& time)
{
    return function::parse(definition.body, definition.parameters, source, time);
}

sharedPtr<function> parseFrom(const definitionTable& definitions, const string& name, const file& source,
                              const timestamp& time)
{
    const auto found = definitions.find(name);
    return found == definitions.end() ? sharedPtr<function>() : parseDefinition(found->second, source, time);
}

// Loads one function. A null pointer when the file does not define it, or without a statement.
sharedPtr<function> loadFunction(const file& source, const string& name)
{
    recentFile& recent = recentFile::instance();
    const timestamp before = modificationTime(source);
    if (const auto kept = recent.definitions(source, before))
        return parseFrom(*kept, name, source, before);

    binaryBuffer text;
    const bool isRead = readScriptText(source, text); // a file that cannot be read defines nothing
    scrdefReader reader(std::move(text));
    const timestamp time = modificationTime(source);
    if (isRead && time == before && recent.isReadAgain(source, time)) {
        const auto all = std::make_shared<definitionTable>();
        readDefinitions(reader, *all);
        recent.keep(source, time, all);
        return parseFrom(*all, name, source, time);
    }
    scriptDefinition definition;
    const bool isFound = findDefinition(reader, name, definition);
    reader.clear();
    return isFound ? parseDefinition(definition, source, time) : sharedPtr<function>();
}

// Told by the library below while this one is loaded.
struct listening
{
    listening() { hooks::set(hooks::foreignCode, epoch::move); }
    ~listening() { hooks::set(hooks::foreignCode, nullptr); }
    listening(const listening&) = delete;
    listening& operator=(const listening&) = delete;
};

const listening whileLoaded;

std::uint64_t nextIdentity() noexcept
{
    static constinit std::atomic<std::uint64_t> last = 0;
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

} // namespace

// --- codeCall ---

codeCall::codeCall(const string& call) : mIdentity(nextIdentity())
{
    // REQUIRED: a malformed call goes on and finds no file.
    codeManager::instance()->parseCodeCall(call, mType, mFile, mFunction);
    mKey = mFile + L"." + mFunction;
}

// --- functionTable ---

functionTable& functionTable::instance()
{
    static functionTable* const table = new functionTable;
    return *table;
}

sharedPtr<function> functionTable::getFunction(const string& basePath, const codeCall& call)
{
    const file source = findScriptFile(basePath, call.file());
    const timestamp time = modificationTime(source);
    if (sharedPtr<function> cached = find(call.key()); cached && !(cached->time() < time))
        return cached;
    const sharedPtr<function> loaded = loadFunction(source, call.function());
    epoch::move(); // the parser asks the modules of hosts
    if (!loaded)
        throw scriptFunctionNotFoundException(call.function().c_str(), source);
    return cacheFunction(call.key(), loaded);
}

sharedPtr<function> functionTable::find(const string& key)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    const auto found = mFunctions.find(key);
    return found == mFunctions.end() ? sharedPtr<function>() : found->second;
}

// Gives what is in the table afterwards: of two functions that are equally new the one that came first.
sharedPtr<function> functionTable::cacheFunction(const string& key, const sharedPtr<function>& loaded)
{
    sharedPtr<function> kept = loaded; // what it replaces ends after the mutex is released
    const std::lock_guard<std::mutex> guard(mMutex);
    sharedPtr<function>& entry = mFunctions[key];
    if (entry && !(entry->time() < loaded->time()))
        return entry;
    entry.swap(kept);
    return entry;
}

// --- pinnedFunction ---

// What a call has found. It lives as long as the memory knows it or a run pins it.
struct pinnedFunction::remembered
{
    std::uint64_t call = 0;
    std::uint64_t epoch = 0;
    uint64 tick = 0;
    string basePath;
    sharedPtr<function> found;
    bool isAtHome = false;
    unsigned pins = 0; // of the thread, and one of the memory

    void unpin() noexcept
    {
        if (--pins == 0)
            delete this;
    }
};

// Lets go of what the memory knew, at the end of the scope; null is nothing.
class pinnedFunction::unpinning
{
public:
    explicit unpinning(remembered* known) noexcept : mpKnown(known) {}
    unpinning(const unpinning&) = delete;
    unpinning& operator=(const unpinning&) = delete;
    ~unpinning()
    {
        if (mpKnown)
            mpKnown->unpin();
    }

private:
    remembered* mpKnown;
};

// A place for each of so many calls; two calls of one place take it from each other.
struct pinnedFunction::memory
{
    static constexpr std::size_t placeCount = 256;
    remembered* places[placeCount] = {};

    memory() = default;
    memory(const memory&) = delete;
    memory& operator=(const memory&) = delete;
    ~memory()
    {
        for (remembered*& place : places)
            const unpinning end(std::exchange(place, nullptr));
    }

    // The calling thread's; null for one that ends, or without memory. Made when the thread first calls.
    static memory* own() { return current || ended ? current : make(); }

private:
    struct keeper;

    static memory* make();

    static constinit QX_THREAD_LOCAL memory* current;
    static constinit QX_THREAD_LOCAL bool ended;
    static thread_local const keeper atThreadEnd;
};

struct pinnedFunction::memory::keeper
{
    void keepWatch() const noexcept {}
    ~keeper()
    {
        const autoPtr<memory> kept(std::exchange(current, nullptr));
        ended = true;
    }
};

constinit QX_THREAD_LOCAL pinnedFunction::memory* pinnedFunction::memory::current = nullptr;
constinit QX_THREAD_LOCAL bool pinnedFunction::memory::ended = false;

// Not in a function, where its guard would take eight bytes more of each thread.
thread_local const pinnedFunction::memory::keeper pinnedFunction::memory::atThreadEnd;

pinnedFunction::memory* pinnedFunction::memory::make()
{
    atThreadEnd.keepWatch(); // the first mention makes it
    return current = new (std::nothrow) memory;
}

pinnedFunction pinnedFunction::find(const string& basePath, const codeCall& call)
{
    memory* const own = memory::own();
    remembered* none = nullptr;
    remembered*& place = own ? own->places[call.identity() % memory::placeCount] : none;
    const uint64 tick = system::current().tick();
    if (place && place->call == call.identity() && place->epoch == epoch::current && place->tick == tick &&
        place->basePath == basePath && !settings::strictFileCheck())
        return pinnedFunction(*place);

    autoPtr<remembered> made(new remembered);
    made->epoch = epoch::current; // as it is before the search, which may run code of a host's system
    made->found = functionTable::instance().getFunction(basePath, call);
    made->call = call.identity();
    made->tick = tick;
    made->basePath = basePath;
    const string* const home = heldInPlace<string>(made->found->directoryName());
    made->isAtHome = home && *home == basePath;
    if (!own)
        return pinnedFunction(*made.release());
    made->pins = 1;
    // The end of an old tree may run scripts, which take the place: the new one is pinned by then.
    const unpinning end(std::exchange(place, made.get()));
    return pinnedFunction(*made.release());
}

pinnedFunction::pinnedFunction(remembered& found) noexcept : mFound(found)
{
    ++mFound.pins;
}

pinnedFunction::~pinnedFunction()
{
    mFound.unpin();
}

const function& pinnedFunction::operator*() const noexcept
{
    return *mFound.found;
}

bool pinnedFunction::isAtHome() const noexcept
{
    return mFound.isAtHome;
}

} // namespace qx::script
