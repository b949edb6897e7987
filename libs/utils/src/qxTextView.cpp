// Patterns with `*` and `?`, without recursion.
#include "qxTextView.h"

namespace qx
{

// On a mismatch only the last `*` ever has to take more.
bool fitsPattern(std::wstring_view text, std::wstring_view pattern)
{
    std::size_t at = 0;
    std::size_t wanted = 0;
    std::size_t star = pattern.npos; // the place behind the last star,
    std::size_t taken = 0;           // and where the text goes on behind what it takes
    while (at < text.size()) {
        if (wanted < pattern.size() && pattern[wanted] == L'*') {
            star = ++wanted;
            taken = at;
        } else if (wanted < pattern.size() && (pattern[wanted] == L'?' || pattern[wanted] == text[at])) {
            ++wanted;
            ++at;
        } else if (star != pattern.npos) {
            wanted = star;
            at = ++taken;
        } else
            return false;
    }
    return pattern.find_first_not_of(L'*', wanted) == pattern.npos;
}

} // namespace qx
