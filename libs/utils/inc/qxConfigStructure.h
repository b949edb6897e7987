// A store of texts under section and key, in the order in which they came.
//
// Names of sections and keys keep the case in which they were first stored. A look-up with
// `caseSensitive` false takes the first that matches in that order. Look-ups are hashed.
// All classes here are values.
//
//     qx::configStructure store;
//     const int mode = qx::configCreate | qx::configReplace;
//     store.section(L"Window", true, true).setValue(L"width", L"80", true, mode);
//     qx::string width;
//     store.section(L"window", false, false).getValue(L"WIDTH", width, false);
#pragma once

#include "qxExport.h"
#include "qxString.h"

#include <cstddef>
#include <deque>
#include <unordered_map>
#include <vector>

namespace qx
{

// Modes of configSet::setValue, to be or-ed. Other bits mean nothing.
inline constexpr int configCreate = 1;  // store a key that is missing
inline constexpr int configReplace = 2; // replace the value of a key that exists

// Places of names, found with and without regard to case. Names are never taken out, so a
// place stays that of its name. Sections of a store and keys of a section are kept by one
// each; hosts have no need of it.
class QXUTILS_API configNames
{
public:
    static constexpr std::size_t notFound = static_cast<std::size_t>(-1);

    // The place of `name`, of several that match without case the first.
    std::size_t find(const string& name, bool caseSensitive) const;

    // Adds `name` at the next place and returns that.
    std::size_t add(const string& name);

    // The number of names, and the name at a place below that. The reference is valid until
    // a name is added.
    std::size_t size() const { return mNames.size(); }
    const string& operator[](std::size_t place) const { return mNames[place]; }

private:
    // By place, as they were added.
    std::vector<string> mNames;
    std::unordered_map<string, std::size_t> mExact; // filled only once there are many names
    std::unordered_map<string, std::size_t> mFolded;
};

// Values under keys. The base of what has a name; only those are made. Not locked: while
// one thread stores, no other may look.
class QXUTILS_API configSet
{
public:
    // Stores a copy of `value` as the mode (configCreate, configReplace, or both) tells. A
    // new key keeps the case that it has here. False, with nothing changed, when the mode
    // did not allow it. Throws std::bad_alloc alone.
    bool setValue(const string& key, const string& value, bool caseSensitive, int mode);

    // The number of keys, and the key at a place below that, in the order in which they
    // came. The reference is valid until a key is stored.
    std::size_t size() const { return mKeys.size(); }
    const string& key(std::size_t place) const { return mKeys[place]; }

protected:
    // Only what derives from it is made, copied and ended.
    configSet() = default;
    configSet(const configSet&) = default;
    configSet& operator=(const configSet&) = default;
    ~configSet() = default;

    // The value of a key; null when it is missing. Valid until a value is stored.
    const string* find(const string& key, bool caseSensitive) const;

private:
    // Key and value have the same place.
    configNames mKeys;
    std::vector<string> mValues;
};

// A set with a name. Sections of a configStructure belong to it; one that a host makes by
// itself stands alone.
class QXUTILS_API configSection : public configSet
{
public:
    explicit configSection(const string& name) : mName(name) {}
    configSection(const configSection&) = default;
    configSection& operator=(const configSection&) = default;

    // Copies the value of `key` into `value`. False, with `value` unchanged, when the key
    // is missing.
    virtual bool getValue(const string& key, string& value, bool caseSensitive) const;

    virtual ~configSection();

    // As the section was first asked for.
    const string& name() const { return mName; }

private:
    string mName;
};

// The store: sections in the order in which they were made. Copying copies everything. Not
// locked.
class QXUTILS_API configStructure
{
public:
    static constexpr std::size_t notFound = configNames::notFound;

    // Holds the section with the empty name, at index 0.
    configStructure();

    // The section of this name. A missing one is made when `create` is true, else the bool
    // value false is thrown. References stay valid until the structure ends or is assigned
    // to.
    configSection& section(const string& name, bool caseSensitive, bool create);

    // The section at an index below sectionCount(); throws the bool value false for
    // another.
    configSection& section(std::size_t index);
    const configSection& section(std::size_t index) const;

    // The index of a section, which stays its own. notFound, all bits set, for a missing
    // one.
    std::size_t sectionIdx(const string& name, bool caseSensitive) const;

    std::size_t sectionCount() const { return mSections.size(); }

private:
    // Name and section have the same place. A deque, so that sections stay where they are.
    configNames mNames;
    std::deque<configSection> mSections;
};

} // namespace qx
