// Directories and the walk over the files in one.
//
//     for(qx::fileIterator it = qx::directory(L"data").fileIt(L"*.txt;*.csv", qx::DI_HIDDEN); it; it.next())
//     {
//         use(it->fullName());
//     }
#pragma once

#include "qxFile.h"

#include <cstddef>
#include <vector>

namespace qx
{

// Attributes of directory::fileIt.
inline constexpr int DI_HIDDEN = 0x2; // lets hidden files into the walk
inline constexpr int DI_SYSTEM = 0x4; // lets system files into the walk

// Stands on one file after the other, in the order of their names. A value; it holds what
// was there when it was made, so files that come or go during the walk make no difference.
// Not locked.
class QXUTILS_API fileIterator
{
public:
    fileIterator() = default;
    // Stands on the first of these, which are walked as they come.
    explicit fileIterator(std::vector<file> files) : mFiles(std::move(files)) {}

    // True while it stands on a file.
    bool valid() const { return mPosition < mFiles.size(); }
    explicit operator bool() const { return valid(); }

    // Moves on; without effect at the end.
    void next();

    // The current file; throws false at the end. Valid until the iterator is assigned to or
    // ends.
    const file& operator*() const;
    const file* operator->() const { return &**this; }

private:
    std::vector<file> mFiles;
    std::size_t mPosition = 0;
};

// A directory by name; that it exists is not required. A value, and immutable but for
// assignment.
class QXUTILS_API directory : public fsEntry
{
public:
    // The current directory.
    directory() : fsEntry(true) {}

    // An empty name is the current directory.
    explicit directory(const string& name) : fsEntry(fsEntryName(name), string(), true) {}
    explicit directory(const fsEntryName& name) : fsEntry(name, string(), true) {}
    directory(const string& path, const string& name) : fsEntry(path, name, true) {}

    // False for what is no directory.
    bool exists() const;

    // Makes this the current directory of the process; false when it cannot be entered.
    bool makeCurrent() const;

    // The files, not directories nor links that lead nowhere, directly in this directory.
    // `filter` is a list of patterns with `*` and `?`, split by `;`, compared without
    // regard to case; blanks and tabs around a pattern do not count; null or empty admits
    // all. `attributes` is an or of DI_HIDDEN and DI_SYSTEM. A directory that cannot be
    // read has no files.
    fileIterator fileIt(const wchar_t* filter, int attributes) const;
};

} // namespace qx
