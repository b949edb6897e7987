// Clock, modules, environment, user and faults of the posix system.
#include "qxPlatformSystem.h"

#include "qxPosix.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>
#include <link.h>

namespace qx
{

namespace
{

// Where a search through the loaded modules stands.
struct moduleSearch
{
    std::string_view wanted;
    std::string found;
};

int visitModule(dl_phdr_info* info, std::size_t, void* data)
{
    moduleSearch& search = *static_cast<moduleSearch*>(data);
    const std::string_view name = info->dlpi_name ? info->dlpi_name : "";
    const std::size_t slash = name.rfind('/');
    if (slash == name.npos || (name != search.wanted && name.substr(slash + 1) != search.wanted))
        return 0;
    search.found = name;
    return 1;
}

std::string programFile()
{
    std::string name(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", name.data(), name.size());
        if (length < 0)
            return std::string();
        if (static_cast<std::size_t>(length) < name.size()) {
            name.resize(static_cast<std::size_t>(length));
            return name;
        }
        name.resize(name.size() * 2);
    }
}

} // namespace

bool platformSystem::modulePath(const string& moduleName, string& directoryName)
{
    std::string fileName;
    if (moduleName.empty()) {
        fileName = programFile();
    } else {
        const std::string wanted = moduleName.utf8();
        moduleSearch search{wanted, std::string()};
        ::dl_iterate_phdr(visitModule, &search);
        fileName = search.found;
    }
    const std::size_t slash = fileName.rfind('/');
    if (slash == fileName.npos)
        return false;
    directoryName = string::fromUtf8(std::string_view(fileName).substr(0, slash == 0 ? 1 : slash));
    return true;
}

long long platformSystem::utcNow()
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

long long platformSystem::localNow()
{
    const long long utc = utcNow();
    const std::time_t seconds = static_cast<std::time_t>(utc / 1000);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return utc + local.tm_gmtoff * 1000LL;
}

uint64 platformSystem::tick()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<uint64>(now.tv_sec) * 1000000000 + static_cast<uint64>(now.tv_nsec);
}

void* platformSystem::loadLibrary(const string& name)
{
    const platform::nativeName native(name);
    return native.valid() ? ::dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
}

bool platformSystem::unloadLibrary(void* library)
{
    return library && ::dlclose(library) == 0;
}

bool platformSystem::environmentVariable(const string& name, string& value)
{
    const platform::nativeName native(name);
    const char* found = native.valid() ? std::getenv(native.c_str()) : nullptr;
    if (!found)
        return false;
    value = string::fromUtf8(found);
    return true;
}

void* platformSystem::mainHWND()
{
    return nullptr;
}

int platformSystem::messageBox(void*, const string& text, const string& caption, uint flags)
{
    const std::string line = caption.utf8() + ": " + text.utf8() + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    return messageBoxButtons(flags).front();
}

void platformSystem::divisionFault()
{
    std::raise(SIGFPE);
    std::abort();
}

} // namespace qx
