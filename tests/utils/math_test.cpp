// Rounding, tolerance and angles.
#include <qxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

constexpr double most = std::numeric_limits<double>::max();
constexpr double infinite = std::numeric_limits<double>::infinity();

// Equal bit for bit, but for the bits of a NaN.
bool same(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

} // namespace

TEST(math, round_and_cut)
{
    const struct
    {
        double value;
        int decimals;
        double rounded;
        double cut;
    } rows[] = {
        {1.115, 2, 1.12, 1.11},
        {1.005, 2, 1.01, 1},
        {0.29, 2, 0.29, 0.29}, // nothing to round, whatever the binary form is
        {0.49999999999999994, 0, 0, 0},
        {9.995, 2, 10, 9.99}, // the carry reaches a new digit
        {1250, -2, 1300, 1200},
        {49, -2, 0, 0},
        {9.5e22, -22, 1e23, 9e22},
        {5e-324, 323, 1e-323, 0},
        {2.5e-310, 310, 3e-310, 2e-310},
        {most, -308, infinite, 1e308},
        {most, -309, 0, 0},
        {1.5, std::numeric_limits<int>::max(), 1.5, 1.5},
        {1.5, std::numeric_limits<int>::min(), 0, 0},
        {infinite, 2, infinite, infinite},
        {std::nan(""), 2, std::nan(""), std::nan("")},
    };
    for (const auto& row : rows) {
        for (const double sign : {1.0, -1.0}) {
            SCOPED_TRACE(testing::Message() << sign * row.value << " at " << row.decimals);
            EXPECT_PRED2(same, qx::roundImp(sign * row.value, row.decimals), sign * row.rounded);
            EXPECT_PRED2(same, qx::cutOffImp(sign * row.value, row.decimals), sign * row.cut);
        }
    }
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
