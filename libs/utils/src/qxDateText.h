// Pieces that the text forms of dates and times have in common.
#pragma once

#include "qxString.h"
#include "qxTextView.h"

#include <string_view>

namespace qx
{

// Takes a text apart from its start. Each step gives false where the text is something else.
class textScanner
{
public:
    explicit textScanner(std::wstring_view text) : mRest(text) {}

    // A number of `least` to `most` decimal digits, as many as there are.
    bool number(std::size_t least, std::size_t most, int& value)
    {
        std::size_t count = 0;
        int result = 0;
        while (count < most && count < mRest.size() && isDigit(mRest[count])) {
            result = result * 10 + static_cast<int>(mRest[count] - L'0');
            ++count;
        }
        if (count < least)
            return false;
        mRest.remove_prefix(count);
        value = result;
        return true;
    }

    bool character(wchar_t wanted)
    {
        if (mRest.empty() || mRest.front() != wanted)
            return false;
        mRest.remove_prefix(1);
        return true;
    }

    bool atEnd() const { return mRest.empty(); }

private:
    std::wstring_view mRest;
};

// Appends a number of at most `width` digits with zeros in front.
inline void appendPadded(string& text, int value, int width)
{
    text.append(static_cast<std::size_t>(width), L'0');
    for (auto digit = text.rbegin(); value > 0; ++digit, value /= 10)
        *digit = static_cast<wchar_t>(L'0' + value % 10);
}

} // namespace qx
