// Tests of Segment2d against an integer oracle, its meeting records, lines, circles, planes.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace Math;

namespace {

constexpr Constants::Boundary O = Constants::Open;
constexpr Constants::Boundary C = Constants::Closed;

// Independent classification in 64-bit integers: the coordinates are small integers, so
// every product is exact and the end tests are plain integer comparisons.
struct Oracle {
    bool meets = false;
    int type = 0;
    bool receiverTouched = false, argumentTouched = false;
    long long nt = 0, nu = 0, det = 0;
};

Oracle classify(const long long a[4], const long long b[4], bool closed[4]) {
    Oracle o;
    const long long d1x = a[2] - a[0], d1y = a[3] - a[1];
    const long long d2x = b[2] - b[0], d2y = b[3] - b[1];
    const long long wx = a[0] - b[0], wy = a[1] - b[1];
    long long det = d1x * d2y - d1y * d2x;
    if (det == 0) return o;
    long long nt = d2x * wy - d2y * wx, nu = d1x * wy - d1y * wx;
    const int sign = det < 0 ? -1 : 1;
    det *= sign, nt *= sign, nu *= sign;
    int strict = 0;
    for (int end = 0; end < 4; ++end) {
        const long long n = end < 2 ? nt : nu;
        const long long bound = end % 2 == 0 ? 0 : det;
        const bool inside = end % 2 == 0 ? n > 0 : n < det;
        if (inside) {
            ++strict;
        } else if (n == bound && closed[end]) {
            (end < 2 ? o.receiverTouched : o.argumentTouched) = true;
        } else {
            return o;
        }
    }
    o.meets = true;
    o.type = sign * (strict == 2 ? 1 : strict == 3 ? 2 : 4);
    o.nt = nt, o.nu = nu, o.det = det;
    return o;
}

Segment2d make(const long long c[4], bool fromClosed, bool toClosed) {
    return Segment2d(Point2d(double(c[0]), double(c[1])), fromClosed ? C : O,
                     Point2d(double(c[2]), double(c[3])), toClosed ? C : O);
}

TEST(Segment2d, NonColinearAgainstIntegerOracle) {
    std::mt19937_64 rng(1234);
    // A small range makes touches, T-junctions and shared ends frequent.
    std::uniform_int_distribution<int> coord(-4, 4);
    int met = 0, touched = 0;
    for (int i = 0; i < 200000; ++i) {
        long long a[4], b[4];
        bool closed[4];
        for (int k = 0; k < 4; ++k) {
            a[k] = coord(rng);
            b[k] = coord(rng);
            closed[k] = rng() & 1;
        }
        const Oracle o = classify(a, b, closed);
        const Segment2d r = make(a, closed[0], closed[1]), s = make(b, closed[2], closed[3]);
        Segment2d::IntersectionType got;
        got.type = 99;
        ASSERT_EQ(r.GetNonColinearIntersection(s, got), o.meets) << i;
        Segment2d::Intersection first, second;
        const int count = r.GetIntersection(s, first, second);
        if (!o.meets) {
            ASSERT_EQ(got.type, 0);
            ASSERT_TRUE(count == 0 || (count == 2 && r.IsParallel(s))) << i;
            continue;
        }
        ++met;
        touched += o.receiverTouched || o.argumentTouched;
        ASSERT_EQ(got.type, o.type) << i;
        ASSERT_EQ(got.receiverTouched, o.receiverTouched) << i;
        ASSERT_EQ(got.argumentTouched, o.argumentTouched) << i;
        // Exact integers divided once: the correctly rounded ratios, exactly 1 at a to end.
        ASSERT_EQ(got.t, double(o.nt) / double(o.det)) << i;
        ASSERT_EQ(got.u, double(o.nu) / double(o.det)) << i;
        ASSERT_EQ(count, 1);
        ASSERT_EQ(first.ratio, got.t);
        ASSERT_EQ(first.argumentRatio, got.u);
        ASSERT_EQ(first.point, Point2d(got.x, got.y));
        // The backward edge vanishes exactly at ratio 0, the forward one exactly at 1.
        ASSERT_EQ(first.backward.isZero(), o.nt == 0);
        ASSERT_EQ(first.forward.isZero(), o.nt == o.det);
        ASSERT_EQ(first.argumentBackward.isZero(), o.nu == 0);
        ASSERT_EQ(first.argumentForward.isZero(), o.nu == o.det);
    }
    EXPECT_GT(met, 20000);
    EXPECT_GT(touched, 5000);
}

Segment2d S(double x0, double y0, double x1, double y1, Constants::Boundary from = C,
            Constants::Boundary to = C) {
    return Segment2d(Point2d(x0, y0), from, Point2d(x1, y1), to);
}

struct RecordCase {
    const char* name;
    Segment2d r, s;
    int count;
    Point2d start, end; // the overlap's ends for count 2, start alone for 1
    double t0, u0;
};

const RecordCase kRecords[] = {
    {"crossing", S(0, 0, 2, 2), S(0, 2, 2, 0), 1, {1, 1}, {}, 0.5, 0.5},
    {"T-junction", S(0, 0, 4, 0), S(1, 0, 1, 3), 1, {1, 0}, {}, 0.25, 0},
    {"T-junction, open foot", S(0, 0, 4, 0), S(1, 0, 1, 3, O, C), 0, {}, {}, 0, 0},
    {"shared end, closed", S(0, 0, 1, 0), S(1, 0, 1, 1), 1, {1, 0}, {}, 1, 0},
    {"shared end, receiver open", S(0, 0, 1, 0, C, O), S(1, 0, 1, 1), 0, {}, {}, 0, 0},
    {"shared end, argument open", S(0, 0, 1, 0), S(1, 0, 1, 1, O, C), 0, {}, {}, 0, 0},
    {"collinear overlap", S(0, 0, 4, 0), S(2, 0, 6, 0), 2, {2, 0}, {4, 0}, 0.5, 0},
    {"collinear, reversed", S(0, 0, 4, 0), S(6, 0, 1, 0), 2, {1, 0}, {4, 0}, 0.25, 1},
    {"collinear, covered", S(1, 0, 3, 0), S(0, 0, 4, 0), 2, {1, 0}, {3, 0}, 0, 0.25},
    {"collinear end to end", S(0, 0, 2, 0), S(2, 0, 3, 0), 2, {2, 0}, {2, 0}, 1, 0},
    {"collinear end to end, open", S(0, 0, 2, 0), S(2, 0, 3, 0, O, C), 0, {}, {}, 0, 0},
    {"parallel, distinct lines", S(0, 0, 1, 0), S(0, 1, 1, 1), 0, {}, {}, 0, 0},
    {"degenerate argument", S(0, 0, 2, 0), S(1, 0, 1, 0), 0, {}, {}, 0, 0},
};

TEST(Segment2d, RecordTable) {
    for (const RecordCase& c : kRecords) {
        SCOPED_TRACE(c.name);
        Segment2d::Intersection first, second;
        ASSERT_EQ(c.r.GetIntersection(c.s, first, second), c.count);
        EXPECT_EQ(c.r.IsIntersecting(c.s), c.count > 0);
        if (c.count == 0) continue;
        EXPECT_EQ(first.point, c.start);
        EXPECT_EQ(first.ratio, c.t0);
        EXPECT_EQ(first.argumentRatio, c.u0);
        if (c.count == 2) {
            EXPECT_EQ(second.point, c.end);
            EXPECT_EQ(c.r.Interpolate(second.ratio), c.end);
            EXPECT_EQ(c.s.Interpolate(second.argumentRatio), c.end);
            Segment2d::IntersectionType type;
            EXPECT_FALSE(c.r.GetNonColinearIntersection(c.s, type));
        }
    }
}

TEST(Segment2d, RecordsOrderWalkAndSwap) {
    // Two segments crossing at (1, 1): four edges leave the point.
    Segment2d::Intersection x, unused;
    ASSERT_EQ(S(0, 0, 2, 2).GetIntersection(S(2, 0, 0, 2), x, unused), 1);
    using D = Segment2d::Intersection;
    // Counter-clockwise from the forward edge (1, 1): (-1, 1), (-1, -1), (1, -1).
    EXPECT_EQ(x.GetNextDirection(D::ReceiverForward), D::ArgumentForward);
    EXPECT_EQ(x.GetNextDirection(D::ArgumentForward), D::ReceiverBackward);
    EXPECT_EQ(x.GetNextDirection(D::ReceiverBackward), D::ArgumentBackward);
    EXPECT_EQ(x.GetNextDirection(D::ArgumentBackward), D::ReceiverForward);
    EXPECT_EQ(x.computeCotan(), 0); // perpendicular
    EXPECT_EQ(x.GetTurn(), 1);
    D swapped = x;
    swapped.Swap();
    EXPECT_EQ(swapped.GetTurn(), -1);
    EXPECT_EQ(swapped.forward, x.argumentForward);
    EXPECT_EQ(swapped.AddDirection(), 1);
    EXPECT_EQ(swapped.AddDirection(), 2);

    // Overlap from a shared from end: the only other edge points the same way, so it is
    // a full turn away, and the non-aligned walk finds nothing.
    Segment2d::Intersection a, b;
    ASSERT_EQ(S(0, 0, 4, 0).GetIntersection(S(0, 0, 6, 0), a, b), 2);
    EXPECT_EQ(a.GetNextDirection(D::ReceiverForward), D::ArgumentForward);
    EXPECT_EQ(a.GetNextNonAlignedDirection(D::ReceiverForward), D::NoDirection);
    EXPECT_EQ(a.GetNextDirection(D::ReceiverBackward), D::NoDirection); // not an edge here
    EXPECT_TRUE(std::isinf(a.computeCotan()));
    EXPECT_TRUE(a.IsLess(b) && b.IsGreater(a) && a.IsGap(b) && !a.IsGap(a));
    EXPECT_TRUE(Segment2d::IntersectionLess()(a, b));
    EXPECT_TRUE(a.IsLessFrom(b));
}

TEST(Segment2d, MeasuresAndTests) {
    const Segment2d s({0, 0}, C, {4, 0}, O);
    EXPECT_EQ(s.GetInverse().GetFromBoundary(), O);
    EXPECT_EQ(s.GetInverse().GetToPoint(), Point2d(0, 0));
    EXPECT_EQ(s.GetNormal(), Vector2d(0, 1));
    EXPECT_EQ(s.GetClosestPoint({-3, 5}), Point2d(0, 0));
    EXPECT_EQ(s.GetClosestPoint({2, 5}), Point2d(2, 0));
    EXPECT_EQ(s.GetDistance({7, 4}), 5);
    EXPECT_EQ(s.GetProjectedRatio({6, 1}), 1.5);
    EXPECT_TRUE(s.OnSegment({0, 0}));
    EXPECT_FALSE(s.OnSegment({4, 0})); // open end
    EXPECT_FALSE(s.OnSegment({5, 0}));
    EXPECT_EQ(s.GetSide({1, 1}), 1);
    EXPECT_EQ(s.GetSide({1, -1}), -1);
    EXPECT_TRUE(s.LeftOfOrOnSegment({9, 0}) && s.RightOfOrOnSegment({9, 0}));
    EXPECT_EQ(s * Matrix2x3::CreateTranslate({1, 2}), S(1, 2, 5, 2, C, O));

    double distance = -1;
    Point2d p, q;
    EXPECT_TRUE(s.GetGap(S(1, 1, 3, 1), distance, p, q));
    EXPECT_EQ(distance, 1);
    EXPECT_EQ(p.y, 0);
    EXPECT_EQ(q.y, 1);
    // Closer than 1/64 is no gap; exactly 1/64 is not closer.
    EXPECT_FALSE(s.GetGap(S(1, 0.01, 3, 0.01), distance, p, q));
    EXPECT_TRUE(s.GetGap(S(1, 1.0 / 64 + 1e-12, 3, 1), distance, p, q));
    EXPECT_FALSE(s.GetGap(S(1, -1, 1, 1), distance, p, q));
    EXPECT_EQ(distance, 0);

    const Box2d box({0, 0}, {2, 2});
    EXPECT_TRUE(S(1, 1, 1.5, 1.5).isLineIntersectingArea(box));
    EXPECT_FALSE(S(1, 1, 1.5, 1.5).isLineIntersectingLine(box));
    EXPECT_TRUE(S(-1, 1, 3, 1).isLineIntersectingLine(box));
    EXPECT_TRUE(S(2, 1, 3, 1).isLineIntersectingLine(box)); // touches a side
    EXPECT_FALSE(S(-1, 2.5, 2.5, 4).isLineIntersectingArea(box));
    EXPECT_FALSE(S(1.5, 3, 3, 1.5).isLineIntersectingArea(box)); // misses a corner
    EXPECT_FALSE(S(0, 0, 1, 1).isLineIntersectingArea(Box2d()));
}

TEST(Line2d, MeetsLinesAndSegments) {
    const Line2d l({0, 0}, {2, 0});
    Point2d at(-9, -9);
    EXPECT_TRUE(l.getIntersection(Line2d({1, -1}, {1, 5}), at));
    EXPECT_EQ(at, Point2d(1, 0));
    EXPECT_FALSE(l.getIntersection(Line2d({0, 1}, {5, 1}), at));
    EXPECT_TRUE(l.getIntersection(S(7, 3, 7, 0), at));
    EXPECT_EQ(at, Point2d(7, 0));
    EXPECT_FALSE(l.getIntersection(S(7, 3, 7, 0, C, O), at));
    EXPECT_FALSE(l.getIntersection(S(7, 3, 7, 1), at));
    EXPECT_EQ(l.distance({5, -3}), 3);
    EXPECT_EQ(l.getSide({5, -3}), -1);
    EXPECT_TRUE(l.onLine({-8, 0}));
}

TEST(Line3d, ShortestSegmentIsPerpendicularToBoth) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> v(-10, 10);
    for (int i = 0; i < 1000; ++i) {
        const Line3d a({v(rng), v(rng), v(rng)}, {v(rng), v(rng), v(rng)});
        const Line3d b({v(rng), v(rng), v(rng)}, {v(rng), v(rng), v(rng)});
        Segment3d s;
        if (!a.getShortestSegment(b, s)) continue;
        const Vector3d join = s.vector();
        const double scale = join.length() + 1;
        EXPECT_NEAR(join * a.direction() / a.direction().length(), 0, 1e-9 * scale);
        EXPECT_NEAR(join * b.direction() / b.direction().length(), 0, 1e-9 * scale);
        EXPECT_NEAR(a.distance(s.getFromPoint()), 0, 1e-9 * scale);
        EXPECT_NEAR(b.distance(s.getToPoint()), 0, 1e-9 * scale);
    }
    Segment3d untouched({1, 2, 3}, {4, 5, 6});
    // sin^2 of the angle 1e-6 is below the tolerance; 1e-4 is above it.
    EXPECT_FALSE(
        Line3d({0, 0, 0}, {1, 0, 0}).getShortestSegment({{0, 1, 0}, {1, 1e-3, 0}}, untouched));
    EXPECT_EQ(untouched, Segment3d({1, 2, 3}, {4, 5, 6}));
    EXPECT_TRUE(
        Line3d({0, 0, 0}, {1, 0, 0}).getShortestSegment({{0, 1, 0}, {1, 1e-2, 0}}, untouched));
}

TEST(Circle2d, ConstructionsAndLazyRadius) {
    const Circle2d wide({0, 0}, {2, 0});
    EXPECT_EQ(wide.center(), Point2d(1, 0));
    EXPECT_EQ(wide.radiusSq(), 2);
    EXPECT_TRUE(wide.isContaining({2.3, 0}));
    EXPECT_TRUE(wide.isSizeSquared());
    EXPECT_EQ(wide.radius(), std::sqrt(2.0));
    EXPECT_FALSE(wide.isSizeSquared());

    // The centroid's fixed weights are not exactly thirds: the centre is 1 within a rounding.
    const Circle2d line({0, 0}, {1, 0}, {2, 0});
    EXPECT_NEAR(line.center().x, 1, 4e-16);
    EXPECT_EQ(line.center().y, 0);
    EXPECT_TRUE(std::isinf(line.sizeValue()));
    EXPECT_FALSE(line.isSizeSquared());
    const Circle2d twice({3, 4}, {3, 4}, {5, 4});
    EXPECT_EQ(twice.center(), Point2d(4, 4));
    EXPECT_EQ(twice.radiusSq(), 1);
    EXPECT_EQ(Circle2d({0, 0}, {2, 0}, {2, 0}).center(), Point2d(1, 0));

    std::mt19937 rng(3);
    std::uniform_real_distribution<double> v(-100, 100);
    for (int i = 0; i < 1000; ++i) {
        const Point2d a(v(rng), v(rng)), b(v(rng), v(rng)), c(v(rng), v(rng));
        const Circle2d k(a, b, c);
        const double r = k.radius();
        EXPECT_NEAR(a.GetDistance(k.center()), r, 1e-7 * (r + 1));
        EXPECT_NEAR(c.GetDistance(k.center()), r, 1e-7 * (r + 1));
    }
}

TEST(Plane3d, DistancesAndCanonicalForm) {
    Plane3d p({0, 0, 0}, {2, 0, 0}, {0, 2, 0});
    EXPECT_EQ(p.normal(), Vector3d(0, 0, 4));
    EXPECT_EQ(p.signedDistance({5, 5, -3}), -3);
    EXPECT_TRUE(p.isPointInFront({0, 0, 1}));
    EXPECT_FALSE(p.isPointInFront({0, 0, 0}));
    EXPECT_FALSE(p.isCanonical());
    EXPECT_TRUE(p.setToCanonicalForm());
    EXPECT_TRUE(p.isCanonical());
    EXPECT_TRUE(p.isCoplanar(Plane3d(Axis3d::Z)));
    EXPECT_TRUE(p.isCoplanar(Plane3d({0, 0, -7}, {1, 1, 0}))); // opposite normal
    EXPECT_FALSE(p.isCoplanar(Plane3d({0, 0, 1}, {0, 0, 1})));
    EXPECT_TRUE(p.isParallel(Plane3d({0, 0, 1}, {0, 0, 1})));
    Plane3d degenerate({0, 0, 0}, {1, 1, 1}, {2, 2, 2});
    EXPECT_TRUE(degenerate.isDegenerate());
    EXPECT_FALSE(degenerate.setToCanonicalForm());
    EXPECT_FALSE(degenerate.isParallel(p));

    // The frame of a plane maps z = 0 onto it, and a frame's plane is that plane again.
    const Plane3d tilted({1, 2, 2}, {3, 0, 1});
    const Matrix4x4 frame = tilted.toMatrix4x4();
    for (const Point3d& q : {Point3d(0, 0, 0), Point3d(5, -2, 0), Point3d(-1, 7, 0)})
        EXPECT_NEAR(tilted.signedDistance(frame * q), 0, 1e-12);
    const Plane3d back(frame);
    EXPECT_NEAR((back.normal() ^ tilted.normal()).length(), 0, 1e-12);
    EXPECT_GT(back.normal() * tilted.normal(), 0);
}

} // namespace
