// Cuts the parameter text of a call at its commas.
#pragma once

#include "qxTextSlice.h"

#include <vector>

namespace qx::script
{

class parameterSplitter
{
public:
    // Cuts `text`, which lies within `buffer`.
    parameterSplitter(const textSlice& buffer, std::wstring_view text);

    // The parameters, trimmed. One that is a string literal has every \" exchanged for a plain quotation
    // mark; its outer quotation marks stay.
    const std::vector<textSlice>& params() const noexcept { return mParams; }

    // What was left open at the end: brackets and angle brackets (negative when more were closed), a string.
    long depth() const noexcept { return mDepth; }
    long angle() const noexcept { return mAngle; }
    bool inString() const noexcept { return mInString; }

private:
    void step(wchar_t c);
    void stepInString(wchar_t c);
    void emit(const textSlice& buffer, std::wstring_view token, bool evenIfEmpty);

    std::vector<textSlice> mParams;
    bool mInString = false;
    bool mEscaped = false;
    bool mAtStart =
        true; // only blanks since the last comma or opening bracket: a quotation mark opens a string here
    long mDepth = 0;
    long mAngle = 0;
};

} // namespace qx::script
