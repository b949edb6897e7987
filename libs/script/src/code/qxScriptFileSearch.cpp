// The search for script files. Code calls come lower-cased, so a file system that tells upper from lower case
// needs a second look at each place, through listings of directories whose names are folded to lower case.
#include "code/qxScriptFileSearch.h"

#include "qxDirectory.h"
#include "qxException.h"
#include "qxSystem.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace qx::script
{

namespace
{

using foldedNames = std::unordered_map<string, std::vector<string>>;

// Listings of directories by lower-cased name, each name in code-unit order.
class foldedListings
{
public:
    // The entries of the directory that read `lowered` in lower case.
    std::vector<string> matches(const string& directoryName, const string& lowered)
    {
        fileStatus status;
        if (!system::current().status(directoryName, status) || !status.isDirectory)
            return {};
        const long long time = status.lastModification;
        std::shared_ptr<const foldedNames> names = known(directoryName, time);
        if (!names) {
            const bool isStill = system::current().utcNow() - time > grainOf(time);
            std::vector<directoryEntry> entries;
            const bool isComplete = system::current().listDirectory(directoryName, entries);
            if (!isStill || !isComplete)
                return matchesIn(entries, lowered); // may be another listing at the next look
            names = folded(entries);
            keep(directoryName, time, names);
        }
        const auto found = names->find(lowered);
        return found == names->end() ? std::vector<string>() : found->second;
    }

private:
    struct kept
    {
        long long time;
        std::shared_ptr<const foldedNames> names;
    };

    static constexpr std::size_t most = 256;

    // A change that follows another within the grain of the file system's times leaves the directory's time
    // as it is; so a listing is kept only when the directory had been still for longer than that. There are
    // file systems with grains of one and two seconds. Where the time shows a part of a second the grain is
    // that of the clock that stamps changes, at most 16 ms, and up to 10 ms of a file system which cuts that.
    static long long grainOf(long long time) // milliseconds
    {
        return time % 1000 == 0 ? 2000 : 32;
    }

    std::shared_ptr<const foldedNames> known(const string& directoryName, long long time)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        const auto found = mKept.find(directoryName);
        return found != mKept.end() && found->second.time == time ? found->second.names : nullptr;
    }

    void keep(const string& directoryName, long long time, const std::shared_ptr<const foldedNames>& names)
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        if (mKept.size() >= most)
            mKept.clear();
        mKept[directoryName] = kept{time, names};
    }

    static std::shared_ptr<const foldedNames> folded(const std::vector<directoryEntry>& entries)
    {
        const auto names = std::make_shared<foldedNames>();
        for (const directoryEntry& entry : entries)
            (*names)[entry.name.lower()].push_back(entry.name);
        for (auto& [lowered, equals] : *names)
            std::sort(equals.begin(), equals.end());
        return names;
    }

    // What `matches` gives, for one name alone: nothing but that is folded. Folding changes no length.
    static std::vector<string> matchesIn(const std::vector<directoryEntry>& entries, const string& lowered)
    {
        std::vector<string> equals;
        for (const directoryEntry& entry : entries)
            if (entry.name.size() == lowered.size() && entry.name.lower() == lowered)
                equals.push_back(entry.name);
        std::sort(equals.begin(), equals.end());
        return equals;
    }

    std::mutex mMutex;
    std::unordered_map<string, kept> mKept;
};

foldedListings& listings()
{
    static foldedListings* const kept =
        new foldedListings; // never destroyed: a host may call while the process ends
    return *kept;
}

bool tellsCaseApart()
{
    static const bool answer = !(file(L"/a") == file(L"/A"));
    return answer;
}

// Follows the parts of a name from `directoryName` without regard to case; the first file in code-unit order
// wins.
bool findFolded(const string& directoryName, const std::vector<string>& parts, std::size_t next, file& found)
{
    const string& part = parts[next];
    const bool isLast = next + 1 == parts.size();
    if (part == L"..")
        return !isLast && findFolded(directory(directoryName, part).fullName(), parts, next + 1, found);
    for (const string& name : listings().matches(directoryName, part.lower())) {
        if (!isLast) {
            if (findFolded(directory(directoryName, name).fullName(), parts, next + 1, found))
                return true;
            continue;
        }
        const file candidate(directoryName, name);
        if (candidate.exists()) {
            found = candidate;
            return true;
        }
    }
    return false;
}

// One candidate: `name` in `path`, or the name as it stands with an empty path.
bool findCandidate(const string& path, const string& name, file& found)
{
    const file exact(path, name);
    if (exact.exists()) {
        found = exact;
        return true;
    }
    if (name.empty() || !tellsCaseApart())
        return false;
    const bool isRooted = path.empty() && (name.front() == L'/' || name.front() == L'\\');
    const directory base(isRooted ? string(L"/") : path);
    std::vector<string> parts;
    exact.relativeNameTo(base.entryName()).splitAt(L"/", parts, false);
    return findFolded(base.fullName(), parts, 0, found);
}

bool findWithExtensions(const string& path, const string& name, file& found)
{
    return findCandidate(path, name + L".qxscr", found) || findCandidate(path, name + L".qxsscr", found);
}

} // namespace

file findScriptFile(const string& basePath, const string& fileName)
{
    file found;
    if (findCandidate(string(), fileName, found))
        return found;
    if (!basePath.empty() && findWithExtensions(basePath, fileName, found))
        return found;
    directory program;
    if (getModulePath(string(), program) && findWithExtensions(program.fullName(), fileName, found))
        return found;
    if (findWithExtensions(L".", fileName, found))
        return found;
    throw fileNotFoundException(file(L".", fileName + L".qxsscr"));
}

} // namespace qx::script
