// Names of files as Windows has them: drives, shares and a root on each, compared without
// regard to case.
#include "qxPlatform.h"
#include "qxSystem.h"

#include <windows.h>

namespace qx::platform
{

namespace
{

bool hasDrive(std::wstring_view name)
{
    return name.size() >= 2 && name[1] == L':' &&
           ((name[0] >= L'A' && name[0] <= L'Z') || (name[0] >= L'a' && name[0] <= L'z'));
}

// The length of the first `parts` parts of `name` behind `start`, each with its separator.
std::size_t partsLength(std::wstring_view name, std::size_t start, int parts)
{
    for (; parts > 0; --parts) {
        const std::size_t separator = name.find(L'\\', start);
        if (separator == name.npos)
            return name.size();
        start = separator + 1;
    }
    return start;
}

} // namespace

const wchar_t pathSeparator = L'\\';
const wchar_t* const lineEnd = L"\r\n";

std::size_t rootLength(std::wstring_view name)
{
    if (hasDrive(name))
        return name.size() > 2 && name[2] == L'\\' ? 3 : 2;
    if (name.starts_with(L"\\\\"))
        return partsLength(name, 2, 2);
    return name.starts_with(L'\\') ? 1 : 0;
}

string completeName(string name)
{
    const std::size_t root = rootLength(name);
    if (root > 2)
        return name;
    const string current = system::current().currentDirectory();
    if (current.empty())
        return name;
    if (root == 1)
        return string(current.substr(0, rootLength(current)) + name);
    if (root == 2) {
        // A drive without a root: its own current directory is known only when it is the process's.
        const bool sameDrive = compareNames(name.substr(0, 2), current.substr(0, 2)) == 0;
        return string((sameDrive ? current : string(name.substr(0, 2))) + L'\\' + name.substr(2));
    }
    return string(current + L'\\' + name);
}

int compareNames(std::wstring_view left, std::wstring_view right)
{
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) -
           CSTR_EQUAL;
}

} // namespace qx::platform
