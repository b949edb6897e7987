// What searches for script files have found. As long as everything stands that a search has looked at, it
// finds the same again, and one question for each directory and one for the file take its place.
#pragma once

#include "qxFile.h"
#include "qxSystem.h"
#include "qxTimestamp.h"

#include <array>
#include <memory>
#include <mutex>
#include <vector>

namespace qx::script
{

struct foundScript
{
    file source;
    timestamp time; // of its last change
};

// The directories in whose listings a search has looked, in vain but for what it has found.
class searchTrail
{
public:
    // `name` leads there from wherever the search began.
    void add(const string& name, const fileStatus& status);
    // For whatever a later look at the same directories could not tell.
    void giveUp() noexcept { mIsUsable = false; }

    bool isUsable() const noexcept { return mIsUsable; }
    // True where each is still the same directory, and unchanged. Asks the system.
    bool stillHolds() const;

private:
    struct listed
    {
        string name;
        uint64 device;
        uint64 node;
        long long time;
    };

    std::vector<listed> mListed;
    bool mIsUsable = true;
};

// Safe from several threads.
class knownSearches
{
public:
    // Those of the process; never destroyed.
    static knownSearches& instance();

    // False where the search has to be made. Asks the system.
    bool find(const string& basePath, const string& fileName, foundScript& found);
    void keep(const string& basePath, const string& fileName, const searchTrail& trail, const file& source);

private:
    struct known
    {
        string basePath;
        string fileName;
        searchTrail trail;
        file source;
    };

    // Two searches of one place take it from each other.
    static constexpr std::size_t placeCount = 256;
    static std::size_t placeOf(const string& basePath, const string& fileName);

    std::mutex mMutex;
    std::array<std::shared_ptr<const known>, placeCount> mPlaces;
};

} // namespace qx::script
