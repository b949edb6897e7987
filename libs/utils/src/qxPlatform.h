// What differs from platform to platform and is not for a host to govern. The build picks one implementation,
// from src/posix or from src/win32.
#pragma once

#include "qxString.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qx
{

// The lowest and the highest address of the calling thread's machine stack; both 0 when they are not to be
// had. Costs as much as reading a small file on some platforms: ask once per thread.
void threadStackBounds(std::uintptr_t& low, std::uintptr_t& high);

namespace platform
{

// The separator in names that come out, and the line end of text files.
extern const wchar_t pathSeparator;
extern const wchar_t* const lineEnd;

// The number of leading characters that name the root or drive of `name`, which has the platform's separators
// only:
// `/` on posix; `C:\`, `C:`, `\` or `\\server\share\` on Windows.
std::size_t rootLength(std::wstring_view name);

// `name`, which has the platform's separators only, with what it needs in front to be independent of the
// current directory, which system::current() tells. Parts like ".." stay. Without a current directory a
// relative name stays.
string completeName(string name);

// Order of two full names as the platform tells names apart: negative, 0 or positive.
int compareNames(std::wstring_view left, std::wstring_view right);

} // namespace platform

} // namespace qx
