// Work on the text of file names.
#pragma once

#include "qxString.h"

#include <string_view>
#include <vector>

namespace qx
{

// A copy with the platform's separator for both kinds.
string withPlatformSeparators(const string& name);

// The parts of a name behind its root, without empty ones and "."; ".." takes the part before it away, at the
// root nothing. A name without a root keeps the ".." that lead out of it. The parts borrow from `name`, which
// has the platform's separators only.
std::vector<std::wstring_view> normalParts(const string& name);

// The absolute, normalised form of a name, taken from the current directory where it is relative.
string absoluteName(const string& name);

} // namespace qx
