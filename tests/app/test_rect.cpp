// Tests of UT_Point and UT_Rect: conversions, geometry and the deliberate asymmetries.
#include <PlumvaleBaseCore/app/UT_Rect.h>

#include <gtest/gtest.h>

TEST(UT_Point, ConversionsRoundNegativeHalvesDifferently) {
    struct Case {
        double x, y;
        int px, py; // fromPoint2d: + 0.5, truncated
        int vx, vy; // fromVector2d: + 0.5, floored
    };
    const Case cases[] = {
        {-1.5, 2.5, -1, 3, -1, 3},
        {-1.7, 0, -1, 0, -2, 0},
        {-0.5, -2.5, 0, -2, 0, -2},
        {0.49, 1.5, 0, 2, 0, 2},
        {-2.6, 3.2, -2, 3, -3, 3},
        {1e12, -1e12, 2147483647, -2147483647 - 1, 2147483647, -2147483647 - 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(UT_Point::fromPoint2d({c.x, c.y}), UT_Point(c.px, c.py)) << c.x << "," << c.y;
        EXPECT_EQ(UT_Point::fromVector2d({c.x, c.y}), UT_Point(c.vx, c.vy)) << c.x << "," << c.y;
    }
    UT_Point p(3, 4);
    p += UT_Point(1, -1);
    EXPECT_EQ(p - UT_Point(4, 3), UT_Point());
    EXPECT_EQ(-p, UT_Point(-4, -3));
    EXPECT_TRUE(UT_Point(9, 1) < UT_Point(0, 2)); // y first
}

TEST(UT_Rect, ConstructionOrdersAndConversions) {
    const UT_Rect r(1, 2, 3, 4); // top, left, bottom, right
    EXPECT_EQ(r.Left(), 2);
    EXPECT_EQ(r.Top(), 1);
    EXPECT_EQ(r.Right(), 4);
    EXPECT_EQ(r.Bottom(), 3);
    UT_Rect s;
    s.SetRect(2, 1, 4, 3); // left, top, right, bottom
    EXPECT_EQ(s, r);

    const UT_Rect box(Math::Box2d(Math::Point2d(0.2, 0.2), Math::Point2d(3.1, 3.0)));
    EXPECT_EQ(box, UT_Rect(UT_Point(0, 0), UT_Point(4, 3)));
    const UT_Rect fromRect(Math::Rect2d(3.1, -0.5, -1.2, 2.0)); // corners in any order
    EXPECT_EQ(fromRect, UT_Rect(UT_Point(-2, -1), UT_Point(4, 2)));
    EXPECT_EQ(UT_Rect(Math::Point2d(-1.5, 0.5), Math::Point2d(2.5, 2.4)),
              UT_Rect(UT_Point(-1, 1), UT_Point(3, 2)));
    EXPECT_EQ(r.toRect2d(), Math::Rect2d(2, 1, 4, 3));
}

TEST(UT_Rect, Geometry) {
    UT_Rect r(UT_Point(-3, 0), UT_Point(2, 4));
    EXPECT_EQ(r.Width(), 5);
    EXPECT_EQ(r.Height(), 4);
    EXPECT_EQ(r.CenterPoint(), UT_Point(0, 2)); // (-1) / 2 truncates toward zero
    EXPECT_TRUE(r.PtInRect(UT_Point(-3, 0)));
    EXPECT_FALSE(r.PtInRect(UT_Point(2, 4))); // the bottom-right corner is outside
    EXPECT_FALSE(r.PtInRect(UT_Point(1, 4)));

    r.OffsetRect(1, -1);
    EXPECT_EQ(r, UT_Rect(UT_Point(-2, -1), UT_Point(3, 3)));
    r.InflateRect(1, 2);
    EXPECT_EQ(r, UT_Rect(UT_Point(-3, -3), UT_Point(4, 5)));
    r.DeflateRect(1, 2);
    EXPECT_EQ(r, UT_Rect(UT_Point(-2, -1), UT_Point(3, 3)));

    // An inverted rectangle grows under InflateRect, but DeflateRect has no such care.
    UT_Rect inverted(UT_Point(5, 5), UT_Point(1, 1));
    inverted.InflateRect(1, 1);
    EXPECT_EQ(inverted, UT_Rect(UT_Point(6, 6), UT_Point(0, 0)));
    inverted.DeflateRect(1, 1);
    EXPECT_EQ(inverted, UT_Rect(UT_Point(7, 7), UT_Point(-1, -1)));
    inverted.NormalizeRect();
    EXPECT_EQ(inverted, UT_Rect(UT_Point(-1, -1), UT_Point(7, 7)));

    inverted.SetRectEmpty();
    EXPECT_EQ(inverted, UT_Rect(UT_Point(-1, -1), UT_Point(-1, -1)));
}

TEST(UT_Rect, IntersectRectNeedsACornerStrictlyInside) {
    const UT_Rect a(UT_Point(0, 0), UT_Point(10, 10));
    struct Case {
        UT_Rect b;
        bool expected;
    };
    const Case cases[] = {
        {a, false},                                           // no edge strictly inside
        {UT_Rect(UT_Point(1, 1), UT_Point(11, 11)), true},    // shifted one pixel
        {UT_Rect(UT_Point(-5, -5), UT_Point(20, 20)), false}, // encloses a
        {UT_Rect(UT_Point(10, 0), UT_Point(20, 10)), false},  // touches on the right
        {UT_Rect(UT_Point(2, 2), UT_Point(4, 4)), true},      // inside
        {UT_Rect(UT_Point(-5, 3), UT_Point(20, 4)), false},   // crosses, no corner inside
    };
    const UT_Rect unused;
    for (const Case& c : cases)
        EXPECT_EQ(unused.IntersectRect(a, c.b), c.expected)
            << c.b.Left() << "," << c.b.Top() << "," << c.b.Right() << "," << c.b.Bottom();
}
