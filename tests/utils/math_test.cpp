// Rounding, tolerance and angles.
#include "heldValues.h"
#include "support/expectations.h"

#include <qxMath.h>

#include <cmath>
#include <limits>

namespace
{

constexpr double infinite = std::numeric_limits<double>::infinity();

// Equal bit for bit, but for the bits of a NaN.
bool same(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

} // namespace

TEST(math, round_and_cut_as_expected)
{
    expectOutcomes("utils/rounding", [](const qx::string& row) {
        std::vector<qx::string> words;
        row.splitAt(L" at ", words, false);
        double value = 0;
        int decimals = 0;
        EXPECT_TRUE(qx::genericValue(words[0]).getValue(value) &&
                    qx::genericValue(words.at(1)).getValue(decimals));
        EXPECT_PRED2(same, qx::roundImp(-value, decimals), -qx::roundImp(value, decimals));
        EXPECT_PRED2(same, qx::cutOffImp(-value, decimals), -qx::cutOffImp(value, decimals));
        return std::vector<qx::string>{textOf(qx::roundImp(value, decimals)) + L" and " +
                                       textOf(qx::cutOffImp(value, decimals))};
    });
}

// Thousandths, rounded and cut as integers.
TEST(math, round_and_cut_as_counted_in_thousandths)
{
    for (int thousandths = 0; thousandths < 30000; ++thousandths) {
        const double value = thousandths / 1000.0;
        const int hundredths = (thousandths + 5) / 10;
        const int wholeTenths = thousandths / 100;
        ASSERT_EQ(qx::roundImp(value, 2), hundredths / 100.0) << value;
        ASSERT_EQ(qx::cutOffImp(-value, 1), -wholeTenths / 10.0) << value;
    }
}

TEST(math, tolerance_and_angles)
{
    const double nan = std::nan("");
    EXPECT_TRUE(qx::dblEq(1.5, 1, 0.5) && qx::dblEq(1, 1, 0) && qx::dblEq(1, infinite, infinite));
    EXPECT_FALSE(qx::dblEq(1, 1.5, 0.25) || qx::dblEq(1, 1, -1));
    EXPECT_FALSE(qx::dblEq(nan, nan, 1) || qx::dblEq(1, 1, nan) || qx::dblEq(infinite, infinite, 1));
    EXPECT_EQ(qx::angle().radians(), 0);
    EXPECT_DOUBLE_EQ(qx::angle::fromDegree(-1000).degree(), -1000); // whole turns stay
}
