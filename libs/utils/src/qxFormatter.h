// The one interpreter of printf-style formats.
#pragma once

#include "qxString.h"

#include <span>

namespace qx
{

// Appends `format`, with its directives filled from `arguments` in order, to `text`.
void appendFormatted(string& text, std::wstring_view format, std::span<const formatArgument> arguments);

} // namespace qx
