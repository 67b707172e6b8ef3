// Tests of the box rules: open and closed sides, union ties, measures, and Box2di cells.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <limits>

using namespace Math;
using Constants::Boundary;
using Constants::Closed;
using Constants::Open;

namespace {

// The box [0, 10] x [0, 10] with the given max x kind and everything else closed.
Box2d unitBox(Boundary maxX) {
    Box2d b;
    b.AddClosed(Point2d(0, 0));
    b.AddClosed(Point2d(maxX == Open ? 9 : 10, 10));
    if (maxX == Open) b.AddOpen(Point2d(10, 5));
    return b;
}

} // namespace

TEST(Box2d, AddClosedAndAddOpenSideRules) {
    Box2d open;
    open.AddOpen(Point2d(1, 1));
    EXPECT_FALSE(open.IsEmpty());
    EXPECT_FALSE(open.IsContaining(Point2d(1, 1)));
    EXPECT_EQ(open.GetMinXBoundary(), Open);

    Box2d closed;
    closed.AddClosed(Point2d(1, 1));
    EXPECT_TRUE(closed.IsContaining(Point2d(1, 1)));

    // A tie with AddClosed turns an open side closed; a tie with AddOpen changes nothing.
    open.AddOpen(Point2d(3, 3));
    open.AddOpen(Point2d(3, 2));
    EXPECT_EQ(open.GetMaxXBoundary(), Open);
    open.AddClosed(Point2d(3, 2));
    EXPECT_EQ(open.GetMaxXBoundary(), Closed);
    EXPECT_EQ(open.GetMaxYBoundary(), Open);
    closed.AddClosed(Point2d(4, 4));
    closed.AddOpen(Point2d(4, 0));
    EXPECT_EQ(closed.GetMaxXBoundary(), Closed); // equal: unchanged
    EXPECT_EQ(closed.GetMinYBoundary(), Open);
    closed.Add(Point2d(0, 2), Open);
    EXPECT_EQ(closed.GetMinXBoundary(), Open);
    closed.Add(Point2d(0, 2), Closed);
    EXPECT_EQ(closed.GetMinXBoundary(), Closed);
}

TEST(Box2d, UnionTakesTheFurtherSideAndClosedWinsTies) {
    struct Case {
        double otherMaxX;
        Boundary otherKind, ownKind;
        double wantMaxX;
        Boundary wantKind;
    };
    const Case cases[] = {
        {10, Closed, Open, 10, Closed}, {10, Open, Closed, 10, Closed}, {10, Open, Open, 10, Open},
        {11, Open, Closed, 11, Open},   {9, Closed, Open, 10, Open},
    };
    for (const Case& c : cases) {
        Box2d own = unitBox(c.ownKind);
        Box2d other;
        other.AddClosed(Point2d(2, 2));
        if (c.otherKind == Closed)
            other.AddClosed(Point2d(c.otherMaxX, 3));
        else
            other.AddOpen(Point2d(c.otherMaxX, 3));
        own.Add(other);
        EXPECT_EQ(own.GetMaxPoint().x, c.wantMaxX) << c.otherMaxX;
        EXPECT_EQ(own.GetMaxXBoundary(), c.wantKind) << c.otherMaxX;
    }
    Box2d empty;
    Box2d b = unitBox(Closed);
    empty.Add(b);
    EXPECT_EQ(empty, b);
    EXPECT_FALSE(empty.IsEmpty());
    Box2d before = b;
    b.Add(Box2d());
    EXPECT_EQ(b, before);
}

TEST(Box2d, ContainmentAndIntersectionTieTable) {
    const Box2d closed = unitBox(Closed);
    const Box2d open = unitBox(Open);
    EXPECT_TRUE(closed.IsContaining(Point2d(10, 5)));
    EXPECT_FALSE(open.IsContaining(Point2d(10, 5)));
    EXPECT_TRUE(closed.IsContaining(open));  // reaches as far
    EXPECT_FALSE(open.IsContaining(closed)); // open must reach strictly further
    EXPECT_TRUE(open.IsContaining(open));
    EXPECT_FALSE(closed.IsContaining(Box2d()));

    Box2d touching;
    touching.AddClosed(Point2d(10, 0));
    touching.AddClosed(Point2d(20, 10));
    EXPECT_TRUE(closed.IsIntersecting(touching));
    EXPECT_FALSE(open.IsIntersecting(touching)); // equality needs both sides closed
    EXPECT_FALSE(closed.IsIntersecting(Box2d()));
}

TEST(Box2d, MeasuresPerimeterCapAndDistances) {
    Box2d big(Point2d(0, 0), Point2d(1e7, 1e7));
    EXPECT_EQ(big.GetPerimeter(), 0.0);
    Box2d under(Point2d(0, 0), Point2d(9.9e6, 1e7));
    EXPECT_EQ(under.GetPerimeter(), 3.98e7);
    Box2d empty;
    EXPECT_EQ(empty.GetWidth(), 0.0);
    EXPECT_EQ(empty.GetDistance(Point2d(5, 5)), 0.0);
    EXPECT_EQ(empty.GetClip(Point2d(-3, 4)), Point2d(-3, 4));

    const Box2d b(Point2d(0, 0), Point2d(4, 2));
    struct Case {
        Point2d p;
        double distSq;
    };
    const Case cases[] = {{{1, 1}, 0}, {{-3, 1}, 9}, {{6, 1}, 4},   {{2, -1}, 1},
                          {{2, 5}, 9}, {{7, 6}, 25}, {{-3, -4}, 25}};
    for (const Case& c : cases) {
        EXPECT_EQ(b.GetDistanceSq(c.p), c.distSq) << c.p.x << "," << c.p.y;
        EXPECT_DOUBLE_EQ(b.GetDistance(c.p), std::sqrt(c.distSq));
    }
    EXPECT_EQ(b.GetClip(Point2d(9, -9)), Point2d(4, 0));

    const Rect2d none = b.GetIntersectingRect(Box2d(Point2d(5, 5), Point2d(6, 6)));
    EXPECT_EQ(none, Rect2d(Point2d(2, 1), Point2d(2, 1)));
    EXPECT_EQ(b.GetIntersectingRect(Box2d(Point2d(3, 1), Point2d(6, 6))), Rect2d(3, 1, 4, 2));

    Box2d grow = b;
    grow.Enlarge(-1);
    EXPECT_EQ(grow, b);
    grow.Enlarge(1, 0);
    EXPECT_EQ(grow.GetMinPoint(), Point2d(-1, 0));

    Box2d r(Point2d(0.3, -0.3), Point2d(1.1, 0.2));
    r.Round(0.5);
    EXPECT_EQ(r.GetMinPoint(), Point2d(0, -0.5));
    EXPECT_EQ(r.GetMaxPoint(), Point2d(1.5, 0.5));
    EXPECT_EQ(Box2d(Point2d(-0.5, 0.5), Point2d(2.5, 3)).toBox2di(), Box2di(-1, 0, 4, 3));

    Point2d corners[4];
    EXPECT_FALSE(empty.asArray(corners));
    EXPECT_FALSE(b.asArray(nullptr));
    ASSERT_TRUE(b.asArray(corners));
    EXPECT_EQ(corners[1], Point2d(0, 2));
    EXPECT_EQ(corners[3], Point2d(4, 0));
}

TEST(Box2d, EqualityIgnoresTheEmptyFlagAndResetKeepsCoordinates) {
    Box2d a(Point2d(1, 1), Point2d(2, 2));
    Box2d b = a;
    b.Reset();
    EXPECT_TRUE(b.IsEmpty());
    EXPECT_EQ(a, b);
    EXPECT_EQ(b.GetMaxPoint(), Point2d(2, 2));
    EXPECT_TRUE(Box2d::BoxLessXY()(Box2d(Point2d(0, 5), Point2d(1, 6)),
                                   Box2d(Point2d(1, 0), Point2d(2, 1))));
    EXPECT_FALSE(Box2d::BoxLessYX()(Box2d(Point2d(0, 5), Point2d(1, 6)),
                                    Box2d(Point2d(1, 0), Point2d(2, 1))));
}

TEST(Box2di, CellRules) {
    EXPECT_FALSE(Box2di(0, 0, 10, 10).isContaining(10, 0));
    EXPECT_TRUE(Box2di(0, 0, 10, 10).isContaining(9, 9));
    const Box2di negative(0, 0, -3, 5);
    EXPECT_EQ(negative.width(), 0);
    EXPECT_TRUE(negative.hasNullArea());

    Box2di grow(0, 0, 2, 2);
    grow.add(5, 1);
    EXPECT_EQ(grow, Box2di(0, 0, 6, 2));
    grow.add(-2, -1);
    EXPECT_EQ(grow, Box2di(-2, -1, 8, 3));
    Box2di single;
    single.add(4, 7);
    EXPECT_EQ(single, Box2di(4, 7, 1, 1));

    Box2di emptyButPlaced(3, 4, 0, 0);
    emptyButPlaced.intersect(Box2di(0, 0, 100, 100));
    EXPECT_EQ(emptyButPlaced, Box2di(3, 4, 0, 0));
    Box2di cleared(0, 0, 5, 5);
    cleared.intersect(Box2di(1, 1, 0, 3));
    EXPECT_EQ(cleared, Box2di());
    EXPECT_EQ(Box2di(0, 0, 5, 5).getIntersection(Box2di(5, 0, 5, 5)), Box2di());
    EXPECT_EQ(Box2di(0, 0, 5, 5).getIntersection(Box2di(3, -2, 5, 4)), Box2di(3, 0, 2, 2));
    EXPECT_EQ(Box2di(0, 0, 0, 5).getUnion(Box2di(1, 1, 1, 1)), Box2di(1, 1, 1, 1));
    EXPECT_EQ(Box2di(0, 0, 2, 2).getUnion(Box2di(5, 5, 1, 1)), Box2di(0, 0, 6, 6));

    EXPECT_EQ(Box2di(Point2di(5, 1), Point2di(2, 4)), Box2di(2, 1, 3, 3));
    EXPECT_EQ(Box2di(0, 0, 4, 4).getEnlarged(-3), Box2di(3, 3, 0, 0));
    EXPECT_EQ(Box2di::emptyBox(), Box2di());
    EXPECT_EQ(Box2d(Box2di(1, 2, 3, 4)), Box2d(Point2d(1, 2), Point2d(4, 6)));
    EXPECT_TRUE(Box2d(Box2di(1, 2, 0, 4)).IsEmpty());
    EXPECT_EQ(Rect2d(Box2di(1, 2, 3, 4)).height(), 4.0);
}

TEST(Box3d, ClosedRulesAndCorners) {
    Box3d b;
    EXPECT_TRUE(b.isEmpty());
    b.add(Point3d(1, 2, 3));
    b.add(Point3d(-1, 0, 5));
    EXPECT_TRUE(b.isContaining(Point3d(1, 2, 5)));
    EXPECT_EQ(b.depth(), 2.0);
    Point3d corners[8];
    ASSERT_TRUE(b.asArray(corners));
    EXPECT_EQ(corners[0], b.minPoint());
    EXPECT_EQ(corners[7], b.maxPoint());
    EXPECT_EQ(Box3d(Box2d(Point2d(0, 0), Point2d(1, 1))).depth(), 0.0);
    EXPECT_TRUE(Box3d(Box2d()).isEmpty());
    EXPECT_TRUE(b.asBox2d().IsContaining(Point2d(-1, 0)));
}

TEST(NanChecks, AngleBox3dRect) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 4; ++i) {
        Rect2d r(1, 2, 3, 4);
        (&r.left)[i] = nan;
        EXPECT_TRUE(r.hasNan() && !r.hasInfinity() && r.hasNanOrInfinity());
        (&r.left)[i] = -inf;
        EXPECT_TRUE(!r.hasNan() && r.hasInfinity() && r.hasNanOrInfinity());
    }
    for (int i = 0; i < 3; ++i) {
        Angle3d a;
        a(static_cast<Axis3d>(i)) = inf;
        EXPECT_TRUE(a.hasInfinity() && !a.hasNan());
        Point3d p(1, 2, 3);
        p(static_cast<Axis3d>(i)) = nan;
        EXPECT_TRUE(Box3d(p).hasNan() && !Box3d(p).hasInfinity());
    }
    EXPECT_FALSE(Rect2d(1, 2, 3, 4).hasNanOrInfinity() || Angle3d(1, 2, 3).hasNanOrInfinity() ||
                 Box3d(Point3d(1, 2, 3)).hasNanOrInfinity());
}
