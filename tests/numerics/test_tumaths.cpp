// Tests of the TUMaths helpers: saturation, tie rules, interpolation, angles, generator.
#include <PlumvaleBaseCore/numerics/TUMaths.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
const double kPi = 3.14159265358979323846;
} // namespace

TEST(TUMaths, RoundingSaturates) {
    struct Case {
        double x;
        int floor, ceiling, round;
    };
    const Case cases[] = {
        {2.5, 2, 3, 3},
        {-2.5, -3, -2, -2},
        {-0.5, -1, 0, 0},
        {1e10, 2147483647, 2147483647, 2147483647},
        {-1e10, -2147483647 - 1, -2147483647 - 1, -2147483647 - 1},
        {kNaN, 2147483647, 2147483647, 2147483647},
        {kInf, 2147483647, 2147483647, 2147483647},
        {2147483646.7, 2147483646, 2147483647, 2147483647},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TUMaths::ifloor(c.x), c.floor) << c.x;
        EXPECT_EQ(TUMaths::iceiling(c.x), c.ceiling) << c.x;
        EXPECT_EQ(TUMaths::round(c.x), c.round) << c.x;
    }
    EXPECT_DOUBLE_EQ(TUMaths::round(1.2345, 2), 1.23);
    EXPECT_DOUBLE_EQ(TUMaths::round(-1.235, 1), -1.2);
    EXPECT_DOUBLE_EQ(TUMaths::epsilon(), 1e-7);
}

TEST(TUMaths, TiesAndNaNFavourTheSecondArgument) {
    EXPECT_EQ(TUMaths::dmax(kNaN, 1.0), 1.0);
    EXPECT_TRUE(std::isnan(TUMaths::dmax(1.0, kNaN)));
    EXPECT_TRUE(std::signbit(TUMaths::dmax(0.0, -0.0)));  // tie: b
    EXPECT_FALSE(std::signbit(TUMaths::dmin(-0.0, 0.0))); // tie: b
    EXPECT_EQ(TUMaths::sign(kNaN), 1);
    EXPECT_EQ(TUMaths::sign(-0.0), 0);
    EXPECT_EQ(TUMaths::sign(-3), -1);
    EXPECT_EQ(TUMaths::clipToRange(5, 10, 0), 0); // the upper bound is tested first
    EXPECT_TRUE(std::isnan(TUMaths::clipToRange(kNaN, 0.0, 1.0)));
    EXPECT_EQ(TUMaths::length(3, 4), 5);
    EXPECT_EQ(TUMaths::length(40000, 30000), 50000); // sum beyond INT_MAX still right
    EXPECT_TRUE(TUMaths::between(1.0, 1.0, 2.0));
    EXPECT_FALSE(TUMaths::between(kNaN, 0.0, 2.0));
    EXPECT_EQ(TUMaths::abs(-2147483647 - 1), -2147483647 - 1);
}

TEST(TUMaths, Interpolation) {
    EXPECT_EQ(TUMaths::interpolate(1.0, 0.1, 0.7), 0.7); // exactly b
    EXPECT_DOUBLE_EQ(TUMaths::interpolate(0.25, 0.0, 8.0), 2.0);
    EXPECT_EQ(TUMaths::interpolateInverse(5, 5, 5), 0.0);
    EXPECT_EQ(TUMaths::interpolateInverse(3, 1, 1), 0.0);
    EXPECT_EQ(TUMaths::interpolateInverse(7, 1, 7), 1.0);
    EXPECT_DOUBLE_EQ(TUMaths::interpolateInverse(2.5, 0, 10), 0.25);
    EXPECT_EQ(TUMaths::clampedInterpolateInverse(20, 0, 10), 1.0);
    EXPECT_EQ(TUMaths::clampedInterpolateInverse(-5, 0, 10), 0.0);
    EXPECT_EQ(TUMaths::clampedInterpolateInverse(kNaN, 0, 10), 0.0);
    EXPECT_EQ(TUMaths::clampedInterpolateInverse(1, 0, 1e-320), 0.0); // infinite ratio
}

TEST(TUMaths, AngleWrapping) {
    EXPECT_DOUBLE_EQ(TUMaths::wrapAngleToMinusPiToPi(kPi), -kPi);
    EXPECT_DOUBLE_EQ(TUMaths::wrapAngleToMinusPiToPi(-kPi), -kPi);
    EXPECT_NEAR(TUMaths::wrapAngleToMinusPiToPi(7 * kPi / 2), -kPi / 2, 1e-12);
    const double negativeZero = TUMaths::wrapAngleTo0To2Pi(-0.0);
    EXPECT_EQ(negativeZero, 0.0);
    EXPECT_TRUE(std::signbit(negativeZero));
    EXPECT_NEAR(TUMaths::wrapAngleTo0To2Pi(-kPi / 2), 3 * kPi / 2, 1e-12);
    for (double a : {1e300, -1e300, 1e17}) { // must return, inside the range
        const double w = TUMaths::wrapAngleTo0To2Pi(a);
        EXPECT_TRUE(w >= 0 && w < 2 * kPi) << a;
    }
    EXPECT_TRUE(std::isnan(TUMaths::wrapAngleToMinusPiToPi(kNaN)));
    EXPECT_DOUBLE_EQ(TUMaths::convertDegreesToRadians(180), kPi);
    EXPECT_DOUBLE_EQ(TUMaths::convertRadiansToDegrees(kPi / 2), 90);
}

TEST(TUMaths, PowersOfTwo) {
    struct Case {
        int n, next;
        bool isPower;
    };
    const Case cases[] = {{0, 0, true},
                          {1, 1, true},
                          {5, 8, false},
                          {8, 8, true},
                          {1023, 1024, false},
                          {1 << 30, 1 << 30, true},
                          {(1 << 30) + 1, -2147483647 - 1, false},
                          {-5, 0, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(TUMaths::nextPowerOfTwo(c.n), c.next) << c.n;
        EXPECT_EQ(TUMaths::nearestPowerOfTwo(c.n), c.next) << c.n;
        EXPECT_EQ(TUMaths::isPowerOfTwo(c.n), c.isPower) << c.n;
    }
}

TEST(TUMaths, DigitTestAndQuanta) {
    const std::string texts[] = {"", "7", "x", "-", "-3", "-x", "4a", "a4"};
    const bool expected[] = {false, true, false, false, true, false, true, false};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(TUMaths::isDigit(&texts[i]), expected[i]) << texts[i];
    EXPECT_FALSE(TUMaths::isDigit(nullptr));
    EXPECT_DOUBLE_EQ(TUMaths::quantumFloor(7.3, 2.5), 5.0);
    EXPECT_DOUBLE_EQ(TUMaths::quantumCeiling(7.3, 2.5), 7.5);
    EXPECT_DOUBLE_EQ(TUMaths::quantumRound(6.3, 2.5), 7.5);
    EXPECT_DOUBLE_EQ(TUMaths::quantumFloor(-0.1, 1.0), -1.0);
}

// The generator matches the C library's unseeded sequence (srand48(0x1234ABCD) restores it).
TEST(TUMaths, Lrand48MatchesTheStandardGenerator) {
    srand48(0x1234ABCD);
    for (int i = 0; i < 1000; ++i) {
        const long expected = ::lrand48();
        const long got = TUMaths::lrand48();
        ASSERT_EQ(got, expected) << i;
        ASSERT_GE(got, 0);
    }
}
