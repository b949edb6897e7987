// Names of entries, worked out from their text alone, and the operations on files, which go
// to system::current().
#include "qxFile.h"

#include "qxPathName.h"
#include "qxPlatform.h"
#include "qxSystem.h"

#include <algorithm>

namespace qx
{

namespace
{

// A name with the platform's separators, cut into path, base and extension (with its dot).
struct nameParts
{
    explicit nameParts(const string& name) : text(withPlatformSeparators(name))
    {
        const std::wstring_view all(text);
        const std::size_t separator = all.rfind(platform::pathSeparator);
        const std::size_t behind = separator == all.npos ? 0 : separator + 1;
        const std::size_t pathLength = std::max(behind, platform::rootLength(all));
        path = all.substr(0, pathLength);
        base = all.substr(pathLength);
        const std::size_t dot = base.rfind(L'.');
        if (dot != base.npos && dot > 0 && base != L"..") {
            extension = base.substr(dot);
            base.remove_suffix(extension.size());
        }
    }

    string text;
    std::wstring_view path;
    std::wstring_view base;
    std::wstring_view extension;
};

string joined(const string& path, const string& name)
{
    if (path.empty() || name.empty())
        return path.empty() ? name : path;
    string result = path;
    if (result.back() != L'/' && result.back() != L'\\')
        result += platform::pathSeparator;
    return result += name;
}

string entryFullName(const string& name, bool isDirectory)
{
    return name.empty() && !isDirectory ? string() : absoluteName(name);
}

} // namespace

void fsEntryName::setName(const string& name, bool makeAbsolute)
{
    mName = makeAbsolute ? absoluteName(name) : name;
}

string fsEntryName::name(int flags) const
{
    const nameParts parts(mName);
    string result;
    if ((flags & nameWithPath) == nameWithPath)
        result += parts.path;
    result += parts.base;
    if (!(flags & nameWithoutExtension))
        result += parts.extension;
    return result;
}

string fsEntryName::path(int) const
{
    const nameParts parts(mName);
    return string(parts.path);
}

string fsEntryName::extension(int) const
{
    const nameParts parts(mName);
    return parts.extension.empty() ? string() : string(parts.extension.substr(1));
}

string fsEntryName::replaceInvalidChars(const string& name, wchar_t replacement)
{
    constexpr std::wstring_view invalid = L"<>:\"/\\|?*";
    string result = name;
    std::replace_if(
        result.begin(), result.end(),
        [invalid](wchar_t c) {
            return static_cast<unsigned long>(c) < 32 || invalid.find(c) != invalid.npos;
        },
        replacement);
    return result;
}

fsEntry::fsEntry(bool isDirectory) : fsEntry(fsEntryName(), string(), isDirectory) {}

fsEntry::fsEntry(const fsEntryName& name, const string& base, bool isDirectory) : mIsDirectory(isDirectory)
{
    const string& text = name.text();
    const bool underBase = !base.empty() && platform::rootLength(withPlatformSeparators(text)) == 0;
    if (underBase && (isDirectory || !text.empty()))
        mName = fsEntryName(absoluteName(joined(base, text)));
    else
        mName = fsEntryName(entryFullName(text, isDirectory));
}

fsEntry::fsEntry(const string& path, const string& name, bool isDirectory)
    : mName(entryFullName(joined(path, name), isDirectory)), mIsDirectory(isDirectory)
{}

bool fsEntry::exists() const
{
    fileStatus status;
    return system::current().status(fullName(), status);
}

string fsEntry::relativeNameTo(const fsEntryName& base) const
{
    if (fullName().empty())
        return string();
    const string from = absoluteName(base.text());
    const auto rootOf = [](const string& name) {
        return std::wstring_view(name).substr(0, platform::rootLength(name));
    };
    if (platform::compareNames(rootOf(from), rootOf(fullName())) != 0)
        return fullName();
    const std::vector<std::wstring_view> fromParts = normalParts(from);
    const std::vector<std::wstring_view> toParts = normalParts(fullName());
    std::size_t common = 0;
    while (common < fromParts.size() && common < toParts.size() &&
           platform::compareNames(fromParts[common], toParts[common]) == 0)
        ++common;
    string result;
    const auto add = [&result](std::wstring_view part) {
        if (!result.empty())
            result += platform::pathSeparator;
        result += part;
    };
    for (std::size_t i = common; i < fromParts.size(); ++i)
        add(L"..");
    for (std::size_t i = common; i < toParts.size(); ++i)
        add(toParts[i]);
    return result.empty() ? string(L".") : result;
}

int fsEntry::compare(const fsEntry& other) const
{
    return platform::compareNames(fullName(), other.fullName());
}

bool file::exists() const
{
    fileStatus status;
    return system::current().status(fullName(), status) && !status.isDirectory;
}

bool file::remove() const
{
    return system::current().removeFile(fullName());
}

bool file::copy(const file& to, bool overwrite) const
{
    return system::current().copyFile(fullName(), to.fullName(), overwrite);
}

uint64 file::size() const
{
    fileStatus status;
    return system::current().status(fullName(), status) ? status.size : 0;
}

long long file::lastModificationTime() const
{
    fileStatus status;
    return system::current().status(fullName(), status) ? status.lastModification : 0;
}

bool file::appendTextLine(const string& line) const
{
    string text = line;
    text += L'\n';
    text.replace(L"\n", platform::lineEnd);
    system& current = system::current();
    return current.appendToFile(fullName(), current.narrow(text)) != appendResult::notOpened;
}

} // namespace qx
