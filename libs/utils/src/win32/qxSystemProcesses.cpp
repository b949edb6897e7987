// Processes of the Windows system. The handles given out are the system's own.
#include "qxPlatformSystem.h"

#include "qxWindows.h"

namespace qx
{

bool platformSystem::startProcess(const string& exe, const string& params, int flags, ulong32* idOut,
                                  void** firstHandleOut, void** processHandleOut,
                                  const string& workingDirectory)
{
    // A name in quotation marks is taken as one even when it holds blanks, and searched for when it has no
    // path.
    string commandLine = L"\"" + exe + L"\"";
    if (!params.empty()) {
        commandLine += L' ';
        commandLine += params;
    }
    const bool valid = platform::isName(exe) && exe.find(L'"') == exe.npos &&
                       commandLine.find(L'\0') == exe.npos && workingDirectory.find(L'\0') == exe.npos;
    if (!valid)
        return false;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    DWORD creation = 0;
    if ((flags & processHidden) == processHidden) {
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = SW_HIDE;
        creation = CREATE_NO_WINDOW;
    }
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, creation, nullptr,
                        workingDirectory.empty() ? nullptr : workingDirectory.c_str(), &startup, &started))
        return false;
    platform::handle process(started.hProcess);
    platform::handle firstThread(started.hThread);
    if (flags & processWait)
        WaitForSingleObject(process.get(), INFINITE);
    if (idOut)
        *idOut = started.dwProcessId;
    if (firstHandleOut)
        *firstHandleOut = firstThread.release();
    if (processHandleOut)
        *processHandleOut = process.release();
    return true;
}

bool platformSystem::getExitCodeProcess(void* process, long32* code)
{
    // A code of its own stands for a process that runs, so the process itself is asked whether it does.
    DWORD value = 0;
    if (!process || !code || WaitForSingleObject(process, 0) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process, &value))
        return false;
    *code = static_cast<long>(value);
    return true;
}

void platformSystem::closeProcess(void* handle)
{
    if (handle)
        CloseHandle(handle);
}

} // namespace qx
