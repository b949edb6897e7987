// The search for script files. Code calls come lower-cased, so a file system that tells upper from lower case
// needs a second look at each place, through listings of directories whose names are folded to lower case.
#include "qxScriptFile.h"

#include "qxDirectory.h"
#include "qxException.h"
#include "qxSystem.h"

#include <algorithm>
#include <memory>
#include <mutex>

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
        const std::shared_ptr<const foldedNames> names = listing(directoryName, status.lastModification);
        const auto found = names->find(lowered);
        return found == names->end() ? std::vector<string>() : found->second;
    }

private:
    struct kept
    {
        long long time;
        std::shared_ptr<const foldedNames> names;
    };

    // A change that follows another within the clock's grain leaves the directory's time as it is; so only
    // what was listed when the directory had been still for that long is kept.
    static constexpr long long grain = 2000; // milliseconds
    static constexpr std::size_t most = 256;

    std::shared_ptr<const foldedNames> listing(const string& directoryName, long long time)
    {
        {
            const std::lock_guard<std::mutex> guard(mMutex);
            const auto found = mKept.find(directoryName);
            if (found != mKept.end() && found->second.time == time)
                return found->second.names;
        }
        const bool isStill = system::current().utcNow() - time > grain;
        std::shared_ptr<const foldedNames> names = list(directoryName);
        if (isStill) {
            const std::lock_guard<std::mutex> guard(mMutex);
            if (mKept.size() >= most)
                mKept.clear();
            mKept[directoryName] = kept{time, names};
        }
        return names;
    }

    static std::shared_ptr<const foldedNames> list(const string& directoryName)
    {
        std::vector<directoryEntry> entries;
        system::current().listDirectory(directoryName, entries);
        const auto names = std::make_shared<foldedNames>();
        for (const directoryEntry& entry : entries)
            (*names)[entry.name.lower()].push_back(entry.name);
        for (auto& [lowered, equals] : *names)
            std::sort(equals.begin(), equals.end());
        return names;
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
