// Tests of the exact segment meeting statics of Point2d, Segment3d and textured points.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <random>

using namespace Math;

namespace {

struct MeetingCase {
    const char* name;
    Point2d a, b, c, d;
    bool closed;      // GetClosedIntersection
    Point2d at;       // its meeting point when closed is true
    bool nonColinear; // GetNonColinearClosedIntersection
    bool open;        // GetNonColinearOpenIntersection
};

const MeetingCase kMeetings[] = {
    {"cross at midpoints", {0, 0}, {2, 2}, {0, 2}, {2, 0}, true, {1, 1}, true, true},
    {"argument reversed", {0, 0}, {2, 2}, {2, 0}, {0, 2}, true, {1, 1}, true, true},
    {"shared end", {0, 0}, {1, 0}, {1, 0}, {1, 1}, true, {1, 0}, true, false},
    {"T-junction", {0, 0}, {2, 0}, {1, 0}, {1, 1}, true, {1, 0}, true, false},
    {"lines meet outside", {0, 0}, {1, 0}, {2, -1}, {2, 1}, false, {}, false, false},
    {"parallel, distinct lines", {0, 0}, {1, 0}, {0, 1}, {1, 1}, false, {}, false, false},
    {"collinear overlap", {0, 0}, {4, 0}, {2, 0}, {6, 0}, true, {2, 0}, false, false},
    {"collinear, argument reversed", {0, 0}, {4, 0}, {6, 0}, {1, 0}, true, {1, 0}, false, false},
    {"collinear, argument covers", {2, 0}, {4, 0}, {0, 0}, {6, 0}, true, {2, 0}, false, false},
    {"collinear, shared end", {0, 0}, {2, 0}, {2, 0}, {3, 0}, true, {2, 0}, false, false},
    {"collinear, apart", {0, 0}, {1, 0}, {2, 0}, {3, 0}, false, {}, false, false},
    {"degenerate receiver", {1, 1}, {1, 1}, {0, 0}, {2, 2}, false, {}, false, false},
    {"degenerate argument", {0, 0}, {2, 2}, {1, 1}, {1, 1}, false, {}, false, false},
    // The end test is exact even where the coordinates are not representable: the meeting
    // point is b itself, not b plus rounding.
    {"touch at an inexact end",
     {0, 0},
     {0.1, 0.3},
     {0.1, 0.3},
     {1, -1},
     true,
     {0.1, 0.3},
     true,
     false},
};

TEST(Point2dIntersection, Table) {
    for (const MeetingCase& m : kMeetings) {
        SCOPED_TRACE(m.name);
        Point2d p(-99, -99);
        EXPECT_EQ(Point2d::GetClosedIntersection(m.a, m.b, m.c, m.d, p), m.closed);
        if (m.closed) {
            EXPECT_EQ(p, m.at);
        }
        EXPECT_EQ(Point2d::GetNonColinearClosedIntersection(m.a, m.b, m.c, m.d, p), m.nonColinear);
        EXPECT_EQ(Point2d::GetNonColinearOpenIntersection(m.a, m.b, m.c, m.d, p), m.open);
    }
}

// Orientation of r against the line pq, in exact integer arithmetic.
int orientation(const Point2d& p, const Point2d& q, const Point2d& r) {
    const long long v = static_cast<long long>((q.x - p.x) * (r.y - p.y)) -
                        static_cast<long long>((q.y - p.y) * (r.x - p.x));
    return (v > 0) - (v < 0);
}

bool between(double v, double e1, double e2) {
    return v >= std::min(e1, e2) && v <= std::max(e1, e2);
}

// Small integer coordinates make every product exact and produce many touching, collinear
// and degenerate configurations; the classic orientation tests are the reference.
TEST(Point2dIntersection, AgreesWithOrientationTestsOnIntegerPoints) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coordinate(-3, 3);
    const auto point = [&] { return Point2d(coordinate(rng), coordinate(rng)); };
    int proper = 0, touching = 0, collinear = 0;
    for (int n = 0; n < 20000; ++n) {
        const Point2d a = point(), b = point(), c = point(), d = point();
        const int o1 = orientation(a, b, c), o2 = orientation(a, b, d);
        const int o3 = orientation(c, d, a), o4 = orientation(c, d, b);
        const bool degenerate = a == b || c == d;
        const bool parallel = (b - a).GetDeterminant(d - c) == 0;
        const bool crossClosed = !parallel && o1 * o2 <= 0 && o3 * o4 <= 0;
        const bool crossOpen = !parallel && o1 * o2 < 0 && o3 * o4 < 0;
        bool meets = crossClosed;
        if (!degenerate && parallel && o1 == 0 && o2 == 0) {
            // Collinear: overlap of the closed ranges along the shared line.
            const bool alongX = a.x != b.x;
            const double a1 = alongX ? a.x : a.y, b1 = alongX ? b.x : b.y;
            const double c1 = alongX ? c.x : c.y, d1 = alongX ? d.x : d.y;
            meets = std::max(std::min(a1, b1), std::min(c1, d1)) <=
                    std::min(std::max(a1, b1), std::max(c1, d1));
            collinear += meets;
        }
        proper += crossOpen;
        touching += crossClosed && !crossOpen;
        Point2d p, q;
        ASSERT_EQ(Point2d::GetClosedIntersection(a, b, c, d, p), meets) << n;
        ASSERT_EQ(Point2d::GetNonColinearClosedIntersection(a, b, c, d, q), crossClosed) << n;
        ASSERT_EQ(Point2d::GetNonColinearClosedIntersection(c, d, a, b, q), crossClosed) << n;
        ASSERT_EQ(Point2d::GetNonColinearOpenIntersection(a, b, c, d, q), crossOpen) << n;
        ASSERT_EQ(Point2d::GetNonColinearOpenIntersection(c, d, a, b, q), crossOpen) << n;
        if (meets) {
            // The point lies on both segments.
            EXPECT_NEAR((b - a).GetDeterminant(p - a), 0, 1e-12) << n;
            EXPECT_NEAR((d - c).GetDeterminant(p - c), 0, 1e-12) << n;
            EXPECT_TRUE(between(p.x, a.x, b.x) && between(p.y, a.y, b.y)) << n;
            EXPECT_TRUE(between(p.x, c.x, d.x) && between(p.y, c.y, d.y)) << n;
        }
    }
    // The draw must reach every kind of configuration for the comparison to mean anything.
    EXPECT_GT(proper, 100);
    EXPECT_GT(touching, 100);
    EXPECT_GT(collinear, 20);
}

TEST(Segment3d, AccessorsAndTransform) {
    const Segment3d s({1, 2, 3}, {4, 6, 3});
    EXPECT_EQ(s.vector(), Vector3d(3, 4, 0));
    EXPECT_EQ(s.length(), 5);
    EXPECT_EQ(s.interpolate(0.5), Point3d(2.5, 4, 3));
    EXPECT_FALSE(s.isDegenerate());
    EXPECT_TRUE(Segment3d({1, 1, 1}, {1, 1, 1}).isDegenerate());
    EXPECT_EQ(s.getInverse().getFromPoint(), s.getToPoint());

    Matrix4x4 m;
    m.translate(1, 0, 0);
    m.scale(2, 2, 2);
    const Segment3d moved = m * s;
    EXPECT_EQ(moved.getFromPoint(), m * s.getFromPoint());
    EXPECT_EQ(moved.getToPoint(), Point3d(9, 12, 6));
    // A perspective divides both ends by their own w.
    Matrix4x4 p;
    p.perspectiveProject(90, 1, 1, 10);
    const Segment3d projected = p * Segment3d({1, 1, -2}, {1, 1, -4});
    EXPECT_EQ(projected.getFromPoint(), p * Point3d(1, 1, -2));
    EXPECT_EQ(projected.getToPoint(), p * Point3d(1, 1, -4));
    EXPECT_EQ(Matrix4x4() * s, s);
}

TEST(TexturedPoint, InterpolateAndTransformKeepTheTexture) {
    const TexturedPoint4d a({0, 0, 0, 1}, {0, 0});
    const TexturedPoint4d b({4, 2, -2, 3}, {1, 0.5});
    const TexturedPoint4d mid = TexturedPoint4d::interpolate(0.5, a, b);
    EXPECT_EQ(mid, TexturedPoint4d({2, 1, -1, 2}, {0.5, 0.25}));
    EXPECT_NE(mid, TexturedPoint4d({2, 1, -1, 2}, {0.5, 0.2500001}));

    Matrix4x4 p;
    p.perspectiveProject(60, 1.5, 0.5, 100);
    const TexturedPoint4d t = p * b;
    EXPECT_EQ(t.point, p * b.point); // homogeneous, not divided
    EXPECT_EQ(t.texture, b.texture);

    const TexturedPoint2d c({1, 1}, {0, 1}), e({3, 5}, {1, 0});
    EXPECT_EQ(TexturedPoint2d::interpolate(0.25, c, e), TexturedPoint2d({1.5, 2}, {0.25, 0.75}));
}

} // namespace
