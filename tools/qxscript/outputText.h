// How qxscript shows a value.
#pragma once

#include <qxGenericValue.h>

// Follows references to variables. False, with `text` unchanged, for a null value. Numbers, texts, dates and
// the like are shown as their conversion to text; arrays and maps as compact JSON; what has no text by its
// kind, as `<object>`.
bool outputText(const qx::genericValue& value, qx::string& text);
