// Which system is in force, and what does not differ from platform to platform: the buttons
// of message boxes, and the short ways to the system.
#include "qxSystem.h"

#include "qxDirectory.h"
#include "qxPlatformSystem.h"

#include <atomic>

namespace qx
{

namespace
{

std::atomic<system*> sReplacement{nullptr};

} // namespace

byteSink::~byteSink() = default;

system::~system() = default;

uint64 system::tick()
{
    return static_cast<uint64>(utcNow());
}

platformSystem::~platformSystem() = default;

system& system::current()
{
    system* replacement = sReplacement.load(std::memory_order_acquire);
    return replacement ? *replacement : platform();
}

void system::setCurrent(system* replacement)
{
    sReplacement.store(replacement, std::memory_order_release);
}

system& system::platform()
{
    static platformSystem& own = *new platformSystem;
    return own;
}

std::vector<eMessageBoxButton> messageBoxButtons(uint flags)
{
    switch (flags & 0xF) {
    case 1:
        return {buttonOk, buttonCancel};
    case 2:
        return {buttonAbort, buttonRetry, buttonIgnore};
    case 3:
        return {buttonYes, buttonNo, buttonCancel};
    case 4:
        return {buttonYes, buttonNo};
    case 5:
        return {buttonRetry, buttonCancel};
    case 6:
        return {buttonCancel, buttonTryAgain, buttonContinue};
    default:
        return {buttonOk};
    }
}

bool getModulePath(const string& name, directory& out)
{
    string directoryName;
    if (!system::current().modulePath(name, directoryName))
        return false;
    out = directory(directoryName);
    return true;
}

bool startProcess(const string& exe, const string& params, int flags, ulong32* idOut, void** firstHandleOut,
                  void** processHandleOut, const directory& workingDirectory)
{
    return system::current().startProcess(exe, params, flags, idOut, firstHandleOut, processHandleOut,
                                          workingDirectory.fullName());
}

bool getExitCodeProcess(void* process, long32* code)
{
    return system::current().getExitCodeProcess(process, code);
}

void* mainHWND()
{
    return system::current().mainHWND();
}

} // namespace qx
