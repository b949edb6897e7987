// Names of file system entries, and files.
//
// `/` and `\` both separate the parts of a name; what comes out uses the platform's
// separator. An entry knows its full name: absolute, without ".", ".." and doubled
// separators, worked out from the text alone when the entry is made, so a later change of
// the current directory does not move it. Making an entry does not look at the disk, and
// every look goes through system::current(). All classes here are values.
//
//     qx::file source(L"data/../list.txt");
//     if(source.exists() && source.copy(qx::file(L"/backup", source.entryName().name(0)), false)) ...
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

namespace qx
{

// Flags of fsEntryName::name.
inline constexpr int nameWithoutExtension = 2;
inline constexpr int nameWithPath = 24; // both bits

// A name as somebody wrote it. Nothing is resolved: "a/../b" stays that.
class QXUTILS_API fsEntryName
{
public:
    fsEntryName() = default;
    explicit fsEntryName(const string& name) : mName(name) {}

    // Stores the name; with `makeAbsolute` its absolute, normalised form.
    void setName(const string& name, bool makeAbsolute);

    // The name as it was given.
    const string& text() const { return mName; }

    // The last part: with 0 its name and extension, with nameWithoutExtension without the
    // extension and its dot, with nameWithPath with the path in front.
    string name(int flags) const;

    // What stands before the last part, its separator included; empty where there is none.
    // No flags are defined.
    string path(int flags) const;

    // What stands behind the last dot of the last part; empty where there is none. A dot at
    // the start opens no extension. No flags are defined.
    string extension(int flags) const;

    // A copy of `name` with each character replaced that must not stand in the name of a
    // file: < > : " / \ | ? * and those below 32, on every platform.
    static string replaceInvalidChars(const string& name, wchar_t replacement);

private:
    string mName;
};

// Any entry of the file system: a name, and whether it is meant as a directory.
class QXUTILS_API fsEntry
{
public:
    // The current directory or the file without a name.
    explicit fsEntry(bool isDirectory = false);

    // A relative name is taken from `base`, or from the current directory when that is
    // empty.
    fsEntry(const fsEntryName& name, const string& base, bool isDirectory);

    // `name` within the directory `path`; either may be empty.
    fsEntry(const string& path, const string& name, bool isDirectory);

    bool isDirectory() const { return mIsDirectory; }

    // The full name; it ends with a separator only where it is the root. Empty for a file
    // without a name. Where the process has no current directory a relative name stays
    // relative.
    const fsEntryName& entryName() const { return mName; }
    const string& fullName() const { return mName.text(); }

    // True when there is an entry of this name, of whatever kind.
    bool exists() const;

    // The way from the directory `base` to this entry: "." for itself, the full name where
    // no way leads (another drive), and empty for a file without a name.
    string relativeNameTo(const fsEntryName& base) const;

    // By full name, in the way in which the platform tells names apart.
    friend bool operator==(const fsEntry& left, const fsEntry& right) { return left.compare(right) == 0; }
    friend bool operator<(const fsEntry& left, const fsEntry& right) { return left.compare(right) < 0; }

private:
    int compare(const fsEntry& other) const;

    fsEntryName mName;
    bool mIsDirectory;
};

class QXUTILS_API file : public fsEntry
{
public:
    file() : fsEntry(false) {}
    explicit file(const string& name) : fsEntry(fsEntryName(name), string(), false) {}
    explicit file(const fsEntryName& name) : fsEntry(name, string(), false) {}
    file(const string& path, const string& name) : fsEntry(path, name, false) {}

    // False for a directory.
    bool exists() const;

    // False when there was nothing to delete or it was refused.
    bool remove() const;

    // Copies the content to `to`. Without `overwrite` an existing `to` makes it fail. A
    // failed copy leaves nothing behind. A file is not copied onto itself.
    bool copy(const file& to, bool overwrite) const;

    // In bytes; 0 for a file that does not exist.
    uint64 size() const;

    // Milliseconds since 1970-01-01 00:00 UTC; 0 for a file that does not exist.
    long long lastModificationTime() const;

    // Adds `line` and a line end in one write, in the default ANSI code page; what that
    // lacks is written as '?', and each line feed as the platform's line end. Creates a
    // missing file. False when the file cannot be opened; a failed write goes unnoticed.
    bool appendTextLine(const string& line) const;
};

} // namespace qx
