// Files and directories of the Windows system.
#include "qxPlatformSystem.h"

#include "qxWindows.h"

namespace qx
{

using platform::handle;
using platform::isName;

namespace
{

long long milliseconds(const FILETIME& time)
{
    const uint64 ticks = static_cast<uint64>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return platform::fromWindowsTicks(ticks);
}

} // namespace

bool platformSystem::status(const string& name, fileStatus& status)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!isName(name) || !GetFileAttributesExW(name.c_str(), GetFileExInfoStandard, &data))
        return false;
    status.isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    status.size = static_cast<uint64>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    status.lastModification = milliseconds(data.ftLastWriteTime);
    return true;
}

bool platformSystem::readFile(const string& name, byteSink& sink)
{
    if (!isName(name))
        return false;
    const handle source(CreateFileW(name.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!source || GetFileType(source.get()) != FILE_TYPE_DISK)
        return false;
    char buffer[16 * 1024];
    for (;;) {
        DWORD count = 0;
        if (!ReadFile(source.get(), buffer, sizeof buffer, &count, nullptr))
            return false;
        if (count == 0)
            return true;
        if (!sink.take(buffer, count))
            return false;
    }
}

appendResult platformSystem::appendToFile(const string& name, std::string_view bytes)
{
    if (!isName(name))
        return appendResult::notOpened;
    const handle target(CreateFileW(name.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target)
        return appendResult::notOpened;
    DWORD written = 0;
    const DWORD size = static_cast<DWORD>(bytes.size());
    const bool all = size == bytes.size() &&
                     WriteFile(target.get(), bytes.data(), size, &written, nullptr) != 0 && written == size;
    return all ? appendResult::written : appendResult::notWritten;
}

bool platformSystem::copyFile(const string& from, const string& to, bool overwrite)
{
    // CopyFileW takes away what it wrote when it fails, but would first have emptied a file that was there.
    if (!isName(from) || !isName(to))
        return false;
    if (!overwrite || GetFileAttributesW(to.c_str()) == INVALID_FILE_ATTRIBUTES)
        return CopyFileW(from.c_str(), to.c_str(), TRUE) != 0;
    const string beside = to + L"." + std::to_wstring(GetCurrentProcessId()) + L"-" +
                          std::to_wstring(GetCurrentThreadId()) + L".tmp";
    if (lstrcmpiW(from.c_str(), to.c_str()) == 0 || !CopyFileW(from.c_str(), beside.c_str(), TRUE))
        return false;
    if (!MoveFileExW(beside.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(beside.c_str());
        return false;
    }
    return true;
}

bool platformSystem::removeFile(const string& name)
{
    return isName(name) && DeleteFileW(name.c_str()) != 0;
}

bool platformSystem::listDirectory(const string& name, std::vector<directoryEntry>& entries)
{
    entries.clear();
    if (!isName(name))
        return false;
    string pattern = name;
    if (pattern.back() != L'\\' && pattern.back() != L'/')
        pattern += L'\\';
    pattern += L'*';
    WIN32_FIND_DATAW data;
    const HANDLE search = FindFirstFileW(pattern.c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    do {
        const std::wstring_view entryName = data.cFileName;
        if (entryName != L"." && entryName != L"..") {
            directoryEntry& added = entries.emplace_back();
            added.name = string(entryName);
            added.isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            added.isHidden = (data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
            added.isSystem = (data.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) != 0;
        }
    } while (FindNextFileW(search, &data));
    const bool complete = GetLastError() == ERROR_NO_MORE_FILES;
    FindClose(search);
    if (!complete)
        entries.clear();
    return complete;
}

string platformSystem::currentDirectory()
{
    return platform::textOfCall(
        [](wchar_t* buffer, DWORD size) { return GetCurrentDirectoryW(size, buffer); });
}

bool platformSystem::setCurrentDirectory(const string& name)
{
    return isName(name) && SetCurrentDirectoryW(name.c_str()) != 0;
}

} // namespace qx
