// How one line of parameters becomes the parameters of a program; the same on every platform.
#pragma once

#include "qxExport.h"
#include "qxString.h"

#include <string_view>
#include <vector>

namespace qx
{

// Splits at blanks and tabs outside quotation marks. 2n backslashes before a quotation mark give n
// backslashes, and the mark toggles the quoting; 2n + 1 give n backslashes and a plain mark; backslashes
// elsewhere stand for themselves. A pair of marks alone is an empty parameter; quoting that is not closed
// lasts to the end.
QXUTILS_API std::vector<string> splitCommandLine(std::wstring_view line);

} // namespace qx
