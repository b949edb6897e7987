// UTF-8 at the edges of the system; what the two do with bytes and units that stand alone is told at
// string::utf8.
#pragma once

#include "qxString.h"

namespace qx
{

std::string encodedUtf8(std::wstring_view text);
string decodedUtf8(std::string_view bytes);

} // namespace qx
