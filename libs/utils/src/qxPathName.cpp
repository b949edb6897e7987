// Work on the text of file names: separators, and the parts `.` and `..`. A name that is
// normal already, as most are, is told by one pass without a copy.
#include "qxPathName.h"

#include "qxPlatform.h"

#include <algorithm>

namespace qx
{

namespace
{

// The fast path for most names: true when what follows the root is normalised already, so nothing has to be
// rebuilt.
bool isNormal(std::wstring_view behindRoot)
{
    while (!behindRoot.empty()) {
        const std::size_t end = std::min(behindRoot.find(platform::pathSeparator), behindRoot.size());
        const std::wstring_view part = behindRoot.substr(0, end);
        if (part.empty() || part == L"." || part == L".." || end + 1 == behindRoot.size())
            return false;
        behindRoot.remove_prefix(std::min(end + 1, behindRoot.size()));
    }
    return true;
}

} // namespace

string withPlatformSeparators(const string& name)
{
    string result = name;
    std::replace_if(
        result.begin(), result.end(), [](wchar_t c) { return c == L'/' || c == L'\\'; },
        platform::pathSeparator);
    return result;
}

std::vector<std::wstring_view> normalParts(const string& name)
{
    std::vector<std::wstring_view> parts;
    const std::size_t root = platform::rootLength(name);
    std::wstring_view rest = std::wstring_view(name).substr(root);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(platform::pathSeparator), rest.size());
        const std::wstring_view part = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (part.empty() || part == L".")
            continue;
        if (part != L"..")
            parts.push_back(part);
        else if (!parts.empty() && parts.back() != L"..")
            parts.pop_back();
        else if (root == 0)
            parts.push_back(part);
    }
    return parts;
}

string absoluteName(const string& name)
{
    string complete = platform::completeName(withPlatformSeparators(name));
    const std::size_t root = platform::rootLength(complete);
    if (isNormal(std::wstring_view(complete).substr(root)))
        return complete;
    string result = complete.substr(0, root);
    for (const std::wstring_view part : normalParts(complete)) {
        // A root ends with a separator, or is a network share (longer than a drive) that may lack it.
        if (result.size() > root || (root > 2 && result.back() != platform::pathSeparator))
            result += platform::pathSeparator;
        result += part;
    }
    return result;
}

} // namespace qx
