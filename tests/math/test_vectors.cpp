// Tests of the vector and point types: guards, rounding, weights, clipping and orderings.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace Math;

namespace {

const double kPi = std::acos(-1.0);

} // namespace

TEST(Vector2d, ZeroVectorGuardsAndTheDeliberate3dAsymmetry) {
    Vector2d zero;
    EXPECT_EQ(zero.GetRadian(), 0.0);
    EXPECT_EQ(zero.GetDegree(), 0.0);
    EXPECT_EQ(zero.GetCos(Vector2d(1, 0)), 0.0);
    EXPECT_EQ(zero.GetSignedSinSq(Vector2d(1, 0)), 0.0);
    EXPECT_EQ(Vector2d(3, 4).GetProjectedRatio(zero), 0.0);
    zero.Normalize();
    EXPECT_EQ(zero, Vector2d(0, 0));
    zero.SetLength(5);
    EXPECT_EQ(zero, Vector2d(0, 0));
    EXPECT_EQ(Vector2d().GetNormalizedVector(), Vector2d(0, 0));
    Vector2d u(3, 4);
    u.Project(Vector2d());
    EXPECT_EQ(u, Vector2d(0, 0));

    Vector3d z3;
    z3.normalize();
    EXPECT_TRUE(std::isnan(z3.x) && std::isnan(z3.y) && std::isnan(z3.z));
}

TEST(Vector2d, MeasuresAgainstHandComputedValues) {
    const Vector2d u(3, 4), v(-4, 3);
    EXPECT_EQ(u.GetLength(), 5.0);
    EXPECT_EQ(u.GetDeterminant(v), 25.0);
    EXPECT_DOUBLE_EQ(u.GetSin(v), 1.0);
    EXPECT_EQ(u.GetCos(v), 0.0);
    EXPECT_DOUBLE_EQ(Vector2d(0, 1).GetDegree(), 90.0);
    EXPECT_DOUBLE_EQ(Vector2d(1, 1).GetSignedCosSq(Vector2d(-1, 0)), -0.5);
    EXPECT_DOUBLE_EQ(Vector2d(1, 1).GetSignedSinSq(Vector2d(1, 0)), -0.5);
    EXPECT_DOUBLE_EQ(Vector2d(2, 2).GetProjectedRatio(Vector2d(4, 0)), 0.5);
    EXPECT_TRUE(std::isinf(Vector2d(1, 0).GetTan(Vector2d(0, 1)))); // no guard, by design
    EXPECT_TRUE(Vector2d(1, 0).IsLeftTurn(Vector2d(0, 1)));
    EXPECT_TRUE(Vector2d(1, 0).IsAntiAligned(Vector2d(-2, 0)));
    EXPECT_TRUE(Vector2d(1, 0).IsAligned(Vector2d(2, 0)));
    EXPECT_TRUE(Vector2d(1, 0).IsRightTurnOrParallel(Vector2d(2, 0)));
    EXPECT_EQ(Vector2d(1, 2).GetRotated90(), Vector2d(-2, 1));
    EXPECT_EQ(Vector2d(1, 2).GetRotated270(), Vector2d(2, -1));
    Vector2d r(1, 0);
    r.RotateDegree(90);
    EXPECT_NEAR(r.x, 0, 1e-15);
    EXPECT_NEAR(r.y, 1, 1e-15);
    Vector2d s(3, 4);
    s.SetDegree(180);
    EXPECT_NEAR(s.x, -5, 1e-12);
    EXPECT_NEAR(s.y, 0, 1e-12);
}

TEST(Rounding, QuantumRulesPerCoordinate) {
    struct Case {
        double v, q, nearest, up, down;
    };
    const Case cases[] = {
        {1.25, 0.5, 1.5, 1.5, 1.0}, {-1.25, 0.5, -1.0, -1.0, -1.5}, {2.0, 0.5, 2.0, 2.0, 2.0},
        {0.75, 0.5, 1.0, 1.0, 0.5}, {-0.25, 0.5, 0.0, -0.0, -0.5},  {7.0, 3.0, 6.0, 9.0, 6.0},
    };
    for (const Case& c : cases) {
        Point2d p(c.v, c.v);
        p.Round(c.q);
        EXPECT_EQ(p.x, c.nearest) << c.v;
        Vector2d v(c.v, c.v);
        v.Round(c.q);
        EXPECT_EQ(v.y, c.nearest) << c.v;
        Point2d d(c.v, c.v);
        d.Round(Vector2d(1, 0), c.q); // x up, y (component 0) down
        EXPECT_EQ(d.x, c.up) << c.v;
        EXPECT_EQ(d.y, c.down) << c.v;
    }
}

TEST(Point4d, WeightThresholdAndClipBoundary) {
    EXPECT_EQ(Point4d(2, 4, 6, 1e-08).toPoint2d(), Point2d(2, 4));
    EXPECT_EQ(Point4d(2, 4, 6, 2).toPoint2d(), Point2d(1, 2));
    EXPECT_EQ(Point4d(2, 4, 6, 2).toPoint3d(), Point3d(1, 2, 3));
    EXPECT_EQ(Point4d(2, 4, 6, -1e-07).toPoint3d(), Point3d(-2e7, -4e7, -6e7));
    EXPECT_TRUE(Point4d(1, 1, 1, 9.9e-8).isVector());
    EXPECT_FALSE(Point4d(1, 1, 1, 1e-7).isVector());
    Point4d n(2, 4, 6, 2);
    n.normalize();
    EXPECT_EQ(n, Point4d(1, 2, 3, 1));
    Point4d keep(2, 4, 6, 1e-9);
    keep.normalize();
    EXPECT_EQ(keep, Point4d(2, 4, 6, 1e-9));
    EXPECT_EQ(Point4d(), Point4d(0, 0, 0, 0));
    EXPECT_EQ(Point4d(Point2d(1, 2)), Point4d(1, 2, 0, 1));
    EXPECT_EQ(Point4d(Vector3d(1, 2, 3)), Point4d(1, 2, 3, 0));

    EXPECT_FALSE(Point4d(1, 0, 0, 1).isClipped(Axis4d::X));
    EXPECT_TRUE(Point4d(1.0000001, 0, 0, 1).isClipped(Axis4d::X));
    EXPECT_FALSE(Point4d(-1, 0, 0, 1).isClipped(Axis4d::X));
    EXPECT_TRUE(Point4d(0, 0, -1.5, 1).isClipped());
    EXPECT_FALSE(Point4d(0.5, -1, 1, 1).isClipped());
    EXPECT_TRUE(Point4d(0, 0, -1, 1).isInFront());
    EXPECT_FALSE(Point4d(0, 0, -1.5, 1).isInFront());
}

TEST(Vector2d, AngularOrderingsAgreeWithAtan2) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coord(-3, 3);
    std::vector<Vector2d> vs;
    for (int i = 0; i < 400; ++i)
        vs.emplace_back(coord(rng), coord(rng));
    std::vector<Vector2d> sorted = vs;
    std::stable_sort(sorted.begin(), sorted.end(), Vector2d::VectorLessSignedAngle());
    auto angle = [](const Vector2d& v) { return v.isZero() ? -10.0 : std::atan2(v.y, v.x); };
    for (size_t i = 1; i < sorted.size(); ++i)
        ASSERT_LE(angle(sorted[i - 1]), angle(sorted[i]));

    std::stable_sort(sorted.begin(), sorted.end(), Vector2d::VectorLessUnsignedAngle());
    auto folded = [&](const Vector2d& v) {
        const double a = angle(v);
        return a < 0 && a > -4 ? a + kPi : (a == kPi ? 0.0 : a);
    };
    for (size_t i = 1; i < sorted.size(); ++i)
        ASSERT_LE(folded(sorted[i - 1]), folded(sorted[i]) + 1e-12);

    const Vector2d east(1, 0), north(0, 1), west(-1, 0), south(0, -1);
    EXPECT_TRUE(Vector2d::VectorInBetweenAngle(east, north, west));
    EXPECT_FALSE(Vector2d::VectorInBetweenAngle(east, south, west));
    EXPECT_TRUE(Vector2d::VectorInBetweenAngle(west, south, east));
    EXPECT_TRUE(Vector2d::VectorInBetweenAngle(north, Vector2d(-1, -1), east));
    EXPECT_TRUE(Vector2d::VectorInBetweenAngle(east, east, west));
}

TEST(Point2d, OrderingsAndInterpolation) {
    EXPECT_TRUE(Point2d(1, 5) < Point2d(2, 0));
    EXPECT_TRUE(Point2d::PointLessYX()(Point2d(2, 0), Point2d(1, 5)));
    EXPECT_FALSE(Point2d::PointLessX()(Point2d(1, 0), Point2d(1, 5)));
    EXPECT_TRUE(Vector2d(2, 0) < Vector2d(1, 5));
    EXPECT_EQ(Point2d::Interpolate(0.25, Point2d(0, 0), Point2d(4, 8)), Point2d(1, 2));
    EXPECT_EQ(Point2d::Interpolate(Point2d(1, 0), 0.5, Point2d(0, 1), 0.25, Point2d(0, 0)),
              Point2d(0.5, 0.25));
    EXPECT_EQ(Angle3d::interpolate(0.5, Angle3d(0, 0, 350), Angle3d(2, 4, 10)),
              Angle3d(1, 2, 180)); // no wrapping
    EXPECT_EQ(Vector3d(Point3d(1, 1, 1), Point3d(2, 3, 4)), Vector3d(1, 2, 3));
    EXPECT_EQ(Vector3d(1, 0, 0) ^ Vector3d(0, 1, 0), Vector3d(0, 0, 1));
    EXPECT_DOUBLE_EQ(Vector3d(1, 0, 0).getSin(Vector3d(1, 1, 0)), std::sqrt(0.5));
}
