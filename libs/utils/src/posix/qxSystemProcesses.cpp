// Processes of the posix system.
//
// A child that nobody waits for stays a zombie, so each one is remembered until it has been collected: at
// later starts, when its exit code is asked for, and at exit. Only the ids of these children are ever waited
// for, so those of the host are left alone, and no thread or signal handler is needed.
#include "qxPlatformSystem.h"

#include "qxCommandLine.h"
#include "qxPosix.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace qx
{

using platform::nativeName;
using platform::retry;

namespace
{

struct child
{
    pid_t id = 0;
    bool ended = false;
    bool codeKnown = false; // only once it has ended; somebody else may have collected the code
    bool handedOut = false; // the caller holds its handle
    int code = 0;

    void collect(bool wait)
    {
        if (ended)
            return;
        int status = 0;
        const pid_t result = retry([&] { return ::waitpid(id, &status, wait ? 0 : WNOHANG); });
        if (result == 0)
            return;
        ended = true;
        codeKnown = result == id;
        code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
};

class childTable
{
public:
    // Never destroyed, since a host may start and ask until its very end.
    static childTable& instance()
    {
        static childTable& table = *new childTable;
        static const atExit collector{};
        return table;
    }

    // Makes room first, so that a child that was started can always be remembered.
    child* prepare()
    {
        const std::lock_guard guard(mMutex);
        collectAll();
        mChildren.push_back(std::make_unique<child>());
        return mChildren.back().get();
    }

    void started(child* entry, pid_t id, bool handedOut)
    {
        const std::lock_guard guard(mMutex);
        entry->id = id;
        entry->handedOut = handedOut;
    }

    void drop(child* entry)
    {
        const std::lock_guard guard(mMutex);
        std::erase_if(mChildren, [entry](const auto& known) { return known.get() == entry; });
    }

    bool exitCode(const void* handle, int& code)
    {
        const std::lock_guard guard(mMutex);
        child* entry = find(handle);
        if (!entry)
            return false;
        entry->collect(false);
        code = entry->codeKnown ? entry->code : code;
        return entry->codeKnown;
    }

    void close(const void* handle)
    {
        const std::lock_guard guard(mMutex);
        if (child* entry = find(handle))
            entry->handedOut = false;
        collectAll();
    }

private:
    struct atExit
    {
        ~atExit()
        {
            childTable& table = instance();
            const std::lock_guard guard(table.mMutex);
            table.collectAll();
        }
    };

    child* find(const void* handle)
    {
        const auto found = std::find_if(mChildren.begin(), mChildren.end(), [handle](const auto& known) {
            return known.get() == handle && known->handedOut;
        });
        return found == mChildren.end() ? nullptr : found->get();
    }

    void collectAll()
    {
        std::erase_if(mChildren, [](const auto& known) {
            if (known->id != 0)
                known->collect(false);
            return known->ended && !known->handedOut;
        });
    }

    std::mutex mMutex;
    std::vector<std::unique_ptr<child>> mChildren; // an id of 0 marks one that is about to be started
};

// The plan of a start: what happens in the child before the program runs.
class spawnPlan
{
public:
    spawnPlan()
    {
        ::posix_spawn_file_actions_init(&mActions);
        ::posix_spawnattr_init(&mAttributes);
    }
    spawnPlan(const spawnPlan&) = delete;
    spawnPlan& operator=(const spawnPlan&) = delete;
    ~spawnPlan()
    {
        ::posix_spawnattr_destroy(&mAttributes);
        ::posix_spawn_file_actions_destroy(&mActions);
    }

    // The host's files and blocked signals are its own affair.
    bool isolate(bool hidden)
    {
        sigset_t none;
        sigset_t defaults;
        ::sigemptyset(&none);
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        const int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | (hidden ? POSIX_SPAWN_SETSID : 0);
        return ::posix_spawnattr_setsigmask(&mAttributes, &none) == 0 &&
               ::posix_spawnattr_setsigdefault(&mAttributes, &defaults) == 0 &&
               ::posix_spawnattr_setflags(&mAttributes, static_cast<short>(flags)) == 0 &&
               (!hidden || emptyStandardFiles()) &&
               ::posix_spawn_file_actions_addclosefrom_np(&mActions, 3) == 0;
    }

    bool changeDirectory(const char* name)
    {
        return ::posix_spawn_file_actions_addchdir_np(&mActions, name) == 0;
    }

    bool run(char** arguments, pid_t& id)
    {
        return ::posix_spawnp(&id, arguments[0], &mActions, &mAttributes, arguments, environ) == 0;
    }

private:
    bool emptyStandardFiles()
    {
        return std::all_of(std::begin(standardFiles), std::end(standardFiles), [this](int number) {
            return ::posix_spawn_file_actions_addopen(&mActions, number, "/dev/null", O_RDWR, 0) == 0;
        });
    }

    static constexpr int standardFiles[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};

    posix_spawn_file_actions_t mActions;
    posix_spawnattr_t mAttributes;
};

// The program and its parameters as the system takes them; empty when one holds a zero character.
std::vector<std::string> argumentBytes(const string& exe, const string& params)
{
    std::vector<std::string> bytes;
    string program = exe;
    program.replace(L"\\", L"/");
    bytes.push_back(program.utf8());
    for (const string& param : splitCommandLine(params))
        bytes.push_back(param.utf8());
    const bool valid =
        !exe.empty() && std::all_of(bytes.begin(), bytes.end(), [](const std::string& argument) {
            return argument.find('\0') == argument.npos;
        });
    return valid ? bytes : std::vector<std::string>();
}

// Waits without the table's lock, so that other threads can go on starting and asking.
bool waitForEnd(pid_t id)
{
    siginfo_t info;
    return retry([&] { return ::waitid(P_PID, static_cast<id_t>(id), &info, WEXITED | WNOWAIT); }) == 0;
}

} // namespace

bool platformSystem::startProcess(const string& exe, const string& params, int flags, ulong32* idOut,
                                  void** firstHandleOut, void** processHandleOut,
                                  const string& workingDirectory)
{
    std::vector<std::string> bytes = argumentBytes(exe, params);
    const nativeName directory(workingDirectory);
    spawnPlan plan;
    if (bytes.empty() || !plan.isolate((flags & processHidden) == processHidden) ||
        (!workingDirectory.empty() && (!directory.valid() || !plan.changeDirectory(directory.c_str()))))
        return false;
    std::vector<char*> arguments;
    arguments.reserve(bytes.size() + 1);
    for (std::string& argument : bytes)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);

    childTable& table = childTable::instance();
    child* entry = table.prepare();
    pid_t id = 0;
    if (!plan.run(arguments.data(), id)) {
        table.drop(entry);
        return false;
    }
    if (idOut)
        *idOut = static_cast<uint>(id);
    if (firstHandleOut)
        *firstHandleOut = nullptr;
    if (processHandleOut)
        *processHandleOut = entry;
    table.started(entry, id, processHandleOut != nullptr);
    if (flags & processWait)
        waitForEnd(id);
    return true;
}

bool platformSystem::getExitCodeProcess(void* process, long32* code)
{
    int value = 0;
    if (!process || !code || !childTable::instance().exitCode(process, value))
        return false;
    *code = long32(value);
    return true;
}

void platformSystem::closeProcess(void* handle)
{
    if (handle)
        childTable::instance().close(handle);
}

} // namespace qx
