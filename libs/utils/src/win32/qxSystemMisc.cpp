// Clock, modules, environment, user and faults of the Windows system.
#include "qxPlatformSystem.h"

#include "qxWindows.h"

#include <cstdlib>

namespace qx
{

namespace
{

uint64 ticks(const FILETIME& time)
{
    return static_cast<uint64>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// Takes the first visible top-level window of this process that no other window owns.
BOOL CALLBACK visitWindow(HWND window, LPARAM found)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window) || GetWindow(window, GW_OWNER))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

} // namespace

bool platformSystem::modulePath(const string& moduleName, string& directoryName)
{
    const HMODULE module = GetModuleHandleW(moduleName.empty() ? nullptr : moduleName.c_str());
    if (!module)
        return false;
    const string fileName = platform::textOfCall(
        [module](wchar_t* buffer, DWORD size) { return GetModuleFileNameW(module, buffer, size); });
    const std::size_t separator = fileName.rfind(L'\\');
    if (separator == fileName.npos)
        return false;
    // The root of a drive keeps its separator.
    directoryName = fileName.substr(0, separator == 2 ? 3 : separator);
    return true;
}

long long platformSystem::utcNow()
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return platform::fromWindowsTicks(ticks(now));
}

long long platformSystem::localNow()
{
    SYSTEMTIME local;
    FILETIME now;
    GetLocalTime(&local);
    return SystemTimeToFileTime(&local, &now) ? platform::fromWindowsTicks(ticks(now)) : utcNow();
}

uint64 platformSystem::tick()
{
    return GetTickCount64();
}

void* platformSystem::loadLibrary(const string& name)
{
    return platform::isName(name) ? reinterpret_cast<void*>(LoadLibraryW(name.c_str())) : nullptr;
}

bool platformSystem::unloadLibrary(void* library)
{
    return library && FreeLibrary(static_cast<HMODULE>(library)) != 0;
}

bool platformSystem::environmentVariable(const string& name, string& value)
{
    if (!platform::isName(name))
        return false;
    SetLastError(ERROR_SUCCESS);
    string found = platform::textOfCall(
        [&name](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(name.c_str(), buffer, size); });
    if (found.empty() && GetLastError() == ERROR_ENVVAR_NOT_FOUND)
        return false;
    value = std::move(found);
    return true;
}

void* platformSystem::mainHWND()
{
    HWND window = nullptr;
    EnumWindows(visitWindow, reinterpret_cast<LPARAM>(&window));
    return window;
}

int platformSystem::messageBox(void* window, const string& text, const string& caption, uint flags)
{
    return MessageBoxW(static_cast<HWND>(window), text.c_str(), caption.c_str(), flags);
}

void platformSystem::divisionFault()
{
    RaiseException(EXCEPTION_INT_DIVIDE_BY_ZERO, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    std::abort();
}

} // namespace qx
