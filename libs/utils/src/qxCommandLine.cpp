// Splits a line of parameters in one pass. `open` tells an empty parameter in quotation
// marks from none.
#include "qxCommandLine.h"

#include <utility>

namespace qx
{

std::vector<string> splitCommandLine(std::wstring_view line)
{
    std::vector<string> parts;
    string part;
    bool open = false; // a parameter has begun; it may be empty so far
    bool quoted = false;
    for (std::size_t i = 0; i < line.size();) {
        std::size_t backslashes = 0;
        while (i < line.size() && line[i] == L'\\') {
            ++backslashes;
            ++i;
        }
        const bool beforeMark = i < line.size() && line[i] == L'"';
        if (backslashes > 0) {
            part.append(beforeMark ? backslashes / 2 : backslashes, L'\\');
            open = true;
        }
        if (i == line.size())
            break;
        const wchar_t c = line[i++];
        if (beforeMark && backslashes % 2 == 0) {
            quoted = !quoted;
            open = true;
        } else if ((c == L' ' || c == L'\t') && !quoted) {
            if (open) {
                parts.push_back(std::exchange(part, string()));
                open = false;
            }
        } else {
            part += c;
            open = true;
        }
    }
    if (open)
        parts.push_back(std::move(part));
    return parts;
}

} // namespace qx
