// Names of files as posix has them: one root, `/`, and names that differ in case are
// different.
#include "qxPlatform.h"
#include "qxSystem.h"

namespace qx::platform
{

const wchar_t pathSeparator = L'/';
const wchar_t* const lineEnd = L"\n";

std::size_t rootLength(std::wstring_view name)
{
    return !name.empty() && name.front() == L'/' ? 1 : 0;
}

string completeName(string name)
{
    if (rootLength(name) > 0)
        return name;
    const string current = system::current().currentDirectory();
    return current.empty() ? std::move(name) : string(current + L'/' + name);
}

int compareNames(std::wstring_view left, std::wstring_view right)
{
    return left.compare(right);
}

} // namespace qx::platform
