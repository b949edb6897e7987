// The store of settings. Names are found by a walk while they are few, beyond by two maps,
// one of them by lower-case names; a deque keeps references to sections valid.
#include "qxConfigStructure.h"

namespace qx
{

namespace
{

// Up to here a walk over the names is as fast as hashing one, and a section of few keys stays small.
constexpr std::size_t walkLimit = 8;

} // namespace

std::size_t configNames::find(const string& name, bool caseSensitive) const
{
    const string& wanted = caseSensitive ? name : name.lower();
    if (mNames.size() > walkLimit) {
        const auto& places = caseSensitive ? mExact : mFolded;
        const auto found = places.find(wanted);
        return found == places.end() ? notFound : found->second;
    }
    for (std::size_t place = 0; place < mNames.size(); ++place)
        if (caseSensitive ? mNames[place] == wanted : mNames[place].lower() == wanted)
            return place;
    return notFound;
}

std::size_t configNames::add(const string& name)
{
    const std::size_t place = mNames.size();
    mNames.push_back(name);
    if (mNames.size() > walkLimit) {
        // The first one stays in place, for names that are equal without case. The maps catch up at the
        // limit.
        for (std::size_t missing = mExact.empty() ? 0 : place; missing <= place; ++missing) {
            mExact.emplace(mNames[missing], missing);
            mFolded.emplace(mNames[missing].lower(), missing);
        }
    }
    return place;
}

bool configSet::setValue(const string& key, const string& value, bool caseSensitive, int mode)
{
    const std::size_t place = mKeys.find(key, caseSensitive);
    if (place != configNames::notFound) {
        if (mode & configReplace)
            mValues[place] = value;
        return (mode & configReplace) != 0;
    }
    if (mode & configCreate) {
        mKeys.add(key);
        mValues.push_back(value);
    }
    return (mode & configCreate) != 0;
}

const string* configSet::find(const string& key, bool caseSensitive) const
{
    const std::size_t place = mKeys.find(key, caseSensitive);
    return place == configNames::notFound ? nullptr : &mValues[place];
}

configSection::~configSection() = default;

bool configSection::getValue(const string& key, string& value, bool caseSensitive) const
{
    const string* found = find(key, caseSensitive);
    if (found)
        value = *found;
    return found != nullptr;
}

configStructure::configStructure()
{
    section(string(), true, true);
}

configSection& configStructure::section(const string& name, bool caseSensitive, bool create)
{
    const std::size_t index = mNames.find(name, caseSensitive);
    if (index != notFound)
        return mSections[index];
    if (!create)
        throw false;
    mSections.emplace_back(name);
    mNames.add(name);
    return mSections.back();
}

configSection& configStructure::section(std::size_t index)
{
    if (index >= mSections.size())
        throw false;
    return mSections[index];
}

const configSection& configStructure::section(std::size_t index) const
{
    return const_cast<configStructure*>(this)->section(index);
}

std::size_t configStructure::sectionIdx(const string& name, bool caseSensitive) const
{
    return mNames.find(name, caseSensitive);
}

} // namespace qx
