// The generated tables behind string::toLower and toUpper.
#pragma once

#include <cstddef>

namespace qx::unicode
{

// The characters first, first + step, ..., last map to themselves plus delta. Ranges are in ascending order.
struct caseRange
{
    unsigned short first;
    unsigned short last;
    unsigned short step;
    int delta;
};

extern const caseRange toLowerRanges[];
extern const std::size_t toLowerRangesCount;
extern const caseRange toUpperRanges[];
extern const std::size_t toUpperRangesCount;

} // namespace qx::unicode
