// Rounding to decimals, comparison with a tolerance, and angles.
//
//     double price = qx::roundImp(1.115, 2);    // 1.12
//     double part = qx::cutOffImp(1.119, 2);    // 1.11
//     double right = qx::angle::fromDegree(90).radians();
#pragma once

#include "qxExport.h"

namespace qx
{

// Round half away from zero, or cut off, at `decimals` decimals; negative ones are tens,
// hundreds and so on. What counts is the shortest decimal form that reads back as `value`:
// 1.115 at 2 is 1.12 although the double lies below it. A value that has no more decimals,
// an infinity and a NaN stay as they are; a zero keeps the sign of `value`. A rounded value
// past the greatest double is an infinity.
QXUTILS_API double roundImp(double value, int decimals);
QXUTILS_API double cutOffImp(double value, int decimals);

// True when the two differ by no more than `tolerance`. False with a NaN, and for two
// infinities.
QXUTILS_API bool dblEq(double a, double b, double tolerance);

// An angle of any size: whole turns are kept.
class QXUTILS_API angle
{
public:
    angle() = default; // 0

    // An angle of so many degrees or radians; a NaN and infinities are kept.
    static angle fromDegree(double degree);
    static angle fromRadians(double radians);

    // Both measures of the same angle; a conversion there and back may differ in the last
    // digit.
    double degree() const;
    double radians() const { return mRadians; }

private:
    double mRadians = 0;
};

} // namespace qx
