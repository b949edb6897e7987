// Files and directories of the posix system.
#include "qxPlatformSystem.h"

#include "qxPosix.h"

#include <csignal>
#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace qx
{

using platform::descriptor;
using platform::nativeName;
using platform::retry;

namespace
{

int openFile(const nativeName& name, int flags, mode_t mode = 0)
{
    return name.valid() ? retry([&] { return ::open(name.c_str(), flags | O_CLOEXEC, mode); }) : -1;
}

// A write beyond the limit that the process has for files, or into a pipe that nobody reads, raises a signal
// that ends the process by default. As long as one of these lives, such a write of this thread fails and does
// no more.
class failingWrites
{
public:
    failingWrites()
    {
        ::sigemptyset(&mSignals);
        ::sigaddset(&mSignals, SIGXFSZ);
        ::sigaddset(&mSignals, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &mSignals, &mBefore);
    }
    failingWrites(const failingWrites&) = delete;
    failingWrites& operator=(const failingWrites&) = delete;
    ~failingWrites()
    {
        const timespec noTime{};
        while (::sigtimedwait(&mSignals, nullptr, &noTime) > 0) {
        }
        ::pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
    }

private:
    sigset_t mSignals;
    sigset_t mBefore;
};

// Opens a file for reading; what is no regular file gives -1.
int openRegularFile(const nativeName& name, struct stat& data)
{
    constexpr int flags = O_RDONLY | O_NOCTTY;
    int number = openFile(name, flags | O_NONBLOCK); // else the opening of a pipe waits for its other end
    if (number < 0 && errno == EWOULDBLOCK)
        number = openFile(name, flags); // waits for a lease, which only regular files have
    descriptor source(number);
    return source && ::fstat(source.number(), &data) == 0 && S_ISREG(data.st_mode) ? source.release() : -1;
}

bool writeAll(int target, const char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = retry([&] { return ::write(target, bytes, size); });
        if (written <= 0)
            return false;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

// Reads to the end; false for a failure or when `take(bytes, size)` gives false.
template <class Take>
bool readAll(int source, Take take)
{
    char buffer[16 * 1024];
    for (;;) {
        const ssize_t count = retry([&] { return ::read(source, buffer, sizeof buffer); });
        if (count <= 0)
            return count == 0;
        if (!take(buffer, static_cast<std::size_t>(count)))
            return false;
    }
}

// Writes the rest of `source` into a file that must not exist yet, and takes that away again when it fails.
bool copyToNewFile(int source, const char* to, mode_t mode)
{
    descriptor target(retry([&] { return ::open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); }));
    if (!target)
        return false;
    const bool copied = readAll(
        source, [&](const char* bytes, std::size_t size) { return writeAll(target.number(), bytes, size); });
    if (!target.close() || !copied) {
        ::unlink(to);
        return false;
    }
    return true;
}

// Copies beside `to` first, so that `to` changes in one step or not at all.
bool replaceByCopy(int source, const std::string& to, mode_t mode)
{
    std::string beside;
    int attempt = 0;
    do {
        beside = to + "." + std::to_string(::getpid()) + "-" + std::to_string(attempt++) + ".tmp";
        if (copyToNewFile(source, beside.c_str(), mode)) {
            if (::rename(beside.c_str(), to.c_str()) == 0)
                return true;
            ::unlink(beside.c_str());
            return false;
        }
    } while (errno == EEXIST && attempt < 100);
    return false;
}

// Tells what an entry is, or what a link leads to.
void tellKind(int directory, const dirent& entry, directoryEntry& told)
{
    told.isDirectory = entry.d_type == DT_DIR;
    if (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) {
        struct stat data;
        told.leadsNowhere = ::fstatat(directory, entry.d_name, &data, 0) != 0;
        told.isDirectory = !told.leadsNowhere && S_ISDIR(data.st_mode);
    }
}

} // namespace

bool platformSystem::status(const string& name, fileStatus& status)
{
    const nativeName native(name);
    struct stat data;
    if (!native.valid() || ::stat(native.c_str(), &data) != 0)
        return false;
    status.isDirectory = S_ISDIR(data.st_mode);
    status.size = static_cast<uint64>(data.st_size);
    status.lastModification = data.st_mtim.tv_sec * 1000LL + data.st_mtim.tv_nsec / 1000000;
    status.device = data.st_dev;
    status.node = data.st_ino;
    return true;
}

bool platformSystem::readFile(const string& name, byteSink& sink)
{
    struct stat data;
    const descriptor source(openRegularFile(nativeName(name), data));
    return source && readAll(source.number(),
                             [&sink](const char* bytes, std::size_t size) { return sink.take(bytes, size); });
}

appendResult platformSystem::appendToFile(const string& name, std::string_view bytes)
{
    const failingWrites guard;
    descriptor target(openFile(nativeName(name), O_WRONLY | O_APPEND | O_CREAT, 0666));
    if (!target)
        return appendResult::notOpened;
    const ssize_t written = retry([&] { return ::write(target.number(), bytes.data(), bytes.size()); });
    const bool all = written >= 0 && static_cast<std::size_t>(written) == bytes.size();
    return target.close() && all ? appendResult::written : appendResult::notWritten;
}

bool platformSystem::copyFile(const string& from, const string& to, bool overwrite)
{
    const failingWrites guard;
    const nativeName target(to);
    struct stat sourceData;
    const descriptor source(openRegularFile(nativeName(from), sourceData));
    if (!source || !target.valid())
        return false;
    const mode_t mode = sourceData.st_mode & 0777;
    struct stat targetData;
    if (!overwrite || ::stat(target.c_str(), &targetData) != 0)
        return copyToNewFile(source.number(), target.c_str(), mode);
    const bool same = sourceData.st_dev == targetData.st_dev && sourceData.st_ino == targetData.st_ino;
    return !same && S_ISREG(targetData.st_mode) && replaceByCopy(source.number(), target.c_str(), mode);
}

bool platformSystem::removeFile(const string& name)
{
    const nativeName native(name);
    return native.valid() && ::unlink(native.c_str()) == 0;
}

bool platformSystem::listDirectory(const string& name, std::vector<directoryEntry>& entries)
{
    entries.clear();
    const nativeName native(name);
    const std::unique_ptr<DIR, int (*)(DIR*)> handle(native.valid() ? ::opendir(native.c_str()) : nullptr,
                                                     ::closedir);
    if (!handle)
        return false;
    errno = 0;
    while (const dirent* entry = ::readdir(handle.get())) {
        const std::string_view entryName = entry->d_name;
        if (entryName != "." && entryName != "..") {
            directoryEntry& added = entries.emplace_back();
            added.name = string::fromUtf8(entryName);
            tellKind(::dirfd(handle.get()), *entry, added);
            added.isHidden = entryName.front() == '.';
        }
        errno = 0; // readdir tells its end from a failure by this alone
    }
    if (errno != 0) {
        entries.clear();
        return false;
    }
    return true;
}

string platformSystem::currentDirectory()
{
    const std::unique_ptr<char, void (*)(void*)> name(::getcwd(nullptr, 0), std::free);
    // A directory outside the process's root is told with a prefix that is no name.
    return name && *name == '/' ? string::fromUtf8(name.get()) : string();
}

bool platformSystem::setCurrentDirectory(const string& name)
{
    const nativeName native(name);
    return native.valid() && ::chdir(native.c_str()) == 0;
}

} // namespace qx
