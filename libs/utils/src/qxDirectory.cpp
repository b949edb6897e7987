// The walk over a directory: listed at once, filtered by the patterns, and sorted by name.
#include "qxDirectory.h"

#include "qxSystem.h"
#include "qxTextView.h"

#include <algorithm>

namespace qx
{

namespace
{

std::vector<string> patternsOf(const wchar_t* filter)
{
    std::vector<string> patterns;
    if (filter)
        string(filter).lower().splitAt(L";", patterns, false);
    for (string& pattern : patterns)
        pattern = std::wstring(trimmed(pattern, L" \t"));
    patterns.erase(std::remove(patterns.begin(), patterns.end(), string()), patterns.end());
    return patterns;
}

bool admits(const std::vector<string>& patterns, const string& name)
{
    const string folded = name.lower();
    return patterns.empty() ||
           std::any_of(patterns.begin(), patterns.end(),
                       [&folded](const string& pattern) { return fitsPattern(folded, pattern); });
}

} // namespace

void fileIterator::next()
{
    if (valid())
        ++mPosition;
}

const file& fileIterator::operator*() const
{
    if (!valid())
        throw false;
    return mFiles[mPosition];
}

bool directory::exists() const
{
    fileStatus status;
    return system::current().status(fullName(), status) && status.isDirectory;
}

bool directory::makeCurrent() const
{
    return system::current().setCurrentDirectory(fullName());
}

fileIterator directory::fileIt(const wchar_t* filter, int attributes) const
{
    std::vector<directoryEntry> entries;
    system::current().listDirectory(fullName(), entries);
    const std::vector<string> patterns = patternsOf(filter);
    std::vector<string> names;
    for (directoryEntry& entry : entries) {
        const bool wanted = !entry.isDirectory && !entry.leadsNowhere &&
                            (!entry.isHidden || (attributes & DI_HIDDEN)) &&
                            (!entry.isSystem || (attributes & DI_SYSTEM));
        // Posix allows a backslash in a name; here it separates, so the full name would be that of another
        // file.
        const bool nameable = entry.name.find(L'\\') == entry.name.npos;
        if (wanted && nameable && admits(patterns, entry.name))
            names.push_back(std::move(entry.name));
    }
    std::sort(names.begin(), names.end());
    std::vector<file> files;
    files.reserve(names.size());
    for (const string& name : names)
        files.emplace_back(fullName(), name);
    return fileIterator(std::move(files));
}

} // namespace qx
