// Known searches: each is held against the system before it is given.
#include "code/qxScriptKnownSearches.h"

#include <algorithm>

namespace qx::script
{

// --- searchTrail ---

void searchTrail::add(const string& name, const fileStatus& status)
{
    if (status.device == 0 && status.node == 0)
        giveUp();
    if (isUsable())
        mListed.push_back({name, status.device, status.node, status.lastModification});
}

bool searchTrail::stillHolds() const
{
    return std::all_of(mListed.begin(), mListed.end(), [](const listed& before) {
        fileStatus now;
        return system::current().status(before.name, now) && now.isDirectory && now.device == before.device &&
               now.node == before.node && now.lastModification == before.time;
    });
}

// --- knownSearches ---

knownSearches& knownSearches::instance()
{
    static knownSearches* const searches = new knownSearches;
    return *searches;
}

bool knownSearches::find(const string& basePath, const string& fileName, foundScript& found)
{
    std::shared_ptr<const known> before;
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        before = mPlaces[placeOf(basePath, fileName)];
    }
    fileStatus status;
    if (!before || before->fileName != fileName || before->basePath != basePath ||
        !before->trail.stillHolds() || !system::current().status(before->source.fullName(), status) ||
        status.isDirectory)
        return false;
    found = {before->source, timestamp::fromTimer(status.lastModification)};
    return true;
}

void knownSearches::keep(const string& basePath, const string& fileName, const searchTrail& trail,
                         const file& source)
{
    std::shared_ptr<const known> kept = std::make_shared<known>(known{basePath, fileName, trail, source});
    const std::lock_guard<std::mutex> guard(mMutex);
    mPlaces[placeOf(basePath, fileName)].swap(kept); // the one before ends after the mutex is released
}

std::size_t knownSearches::placeOf(const string& basePath, const string& fileName)
{
    const std::hash<string> hash;
    return (hash(basePath) * 31 + hash(fileName)) % placeCount;
}

} // namespace qx::script
