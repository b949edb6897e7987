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
    // The entries of the directory that read `lowered` in lower case. `isCurrent` for the current one.
    std::vector<string> matches(const string& directoryName, const string& lowered, bool isCurrent,
                                searchTrail& trail)
    {
        fileStatus status;
        if (!system::current().status(directoryName, status) || !status.isDirectory) {
            trail.giveUp();
            return {};
        }
        const long long time = status.lastModification;
        std::shared_ptr<const foldedNames> names = known(directoryName, time);
        if (!names) {
            const bool isStill = system::current().utcNow() - time > grainOf(time);
            std::vector<directoryEntry> entries;
            const bool isComplete = system::current().listDirectory(directoryName, entries);
            if (!isStill || !isComplete) {
                trail.giveUp();
                return matchesIn(entries, lowered); // may be another listing at the next look
            }
            names = folded(entries);
            keep(directoryName, time, names);
        }
        trail.add(isCurrent ? string(L".") : directoryName, status);
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

bool isFile(const file& candidate, foundScript& found)
{
    fileStatus status;
    if (!system::current().status(candidate.fullName(), status) || status.isDirectory)
        return false;
    found = {candidate, timestamp::fromTimer(status.lastModification)};
    return true;
}

// Follows the parts of a name from a directory without regard to case; the first file in code-unit order
// wins.
class foldedSearch
{
public:
    foldedSearch(const std::vector<string>& parts, foundScript& found, searchTrail& trail)
        : mParts(parts), mFound(found), mTrail(trail)
    {}

    // `isCurrent` for the current directory.
    bool run(const string& directoryName, bool isCurrent, std::size_t next = 0)
    {
        const string& part = mParts[next];
        const bool isLast = next + 1 == mParts.size();
        if (part == L"..") {
            mTrail.giveUp();
            return !isLast && run(directory(directoryName, part).fullName(), false, next + 1);
        }
        for (const string& name : listings().matches(directoryName, part.lower(), isCurrent, mTrail)) {
            if (isLast ? isFile(file(directoryName, name), mFound)
                       : run(directory(directoryName, name).fullName(), false, next + 1))
                return true;
            mTrail.giveUp(); // what is behind the entry may change, and leave the directory as it is
        }
        return false;
    }

private:
    const std::vector<string>& mParts;
    foundScript& mFound;
    searchTrail& mTrail;
};

bool isRooted(const string& name)
{
    return !name.empty() && (name.front() == L'/' || name.front() == L'\\');
}

// A search in the order of its candidates.
class scriptSearch
{
public:
    bool run(const string& basePath, const string& fileName)
    {
        if (findCandidate(string(), fileName) ||
            (!basePath.empty() && findWithExtensions(basePath, fileName)))
            return true;
        if (&system::current() != &system::platform())
            mTrail.giveUp(); // it may tell another directory of the program each time
        directory program;
        return (getModulePath(string(), program) && findWithExtensions(program.fullName(), fileName)) ||
               findWithExtensions(L".", fileName);
    }

    const foundScript& found() const noexcept { return mFound; }
    const searchTrail& trail() const noexcept { return mTrail; }

private:
    // One candidate: `name` in `path`, or the name as it stands with an empty path.
    bool findCandidate(const string& path, const string& name)
    {
        const bool isFound = findIn(path, name);
        // The full name of what lies in the current directory changes with that of the directory.
        if ((isFound || !path.empty()) && !isRooted(path.empty() ? name : path))
            mTrail.giveUp();
        return isFound;
    }
    bool findIn(const string& path, const string& name)
    {
        const file exact(path, name);
        if (isFile(exact, mFound))
            return true;
        if (name.empty() || !tellsCaseApart()) {
            mTrail.giveUp(); // nothing tells when it comes to be
            return false;
        }
        const bool isCurrent = path.empty() && !isRooted(name);
        const directory base(path.empty() && !isCurrent ? string(L"/") : path);
        std::vector<string> parts;
        exact.relativeNameTo(base.entryName()).splitAt(L"/", parts, false);
        return foldedSearch(parts, mFound, mTrail).run(base.fullName(), isCurrent);
    }
    bool findWithExtensions(const string& path, const string& name)
    {
        return findCandidate(path, name + L".qxscr") || findCandidate(path, name + L".qxsscr");
    }

    foundScript mFound;
    searchTrail mTrail;
};

} // namespace

foundScript findScriptFile(const string& basePath, const string& fileName)
{
    foundScript known;
    if (knownSearches::instance().find(basePath, fileName, known))
        return known;
    scriptSearch search;
    if (!search.run(basePath, fileName))
        throw fileNotFoundException(file(L".", fileName + L".qxsscr"));
    if (search.trail().isUsable())
        knownSearches::instance().keep(basePath, fileName, search.trail(), search.found().source);
    return search.found();
}

} // namespace qx::script
