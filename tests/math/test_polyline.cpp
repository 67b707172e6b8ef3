// Tests of the polylines: the view-volume clip on random polygons, conversions, append rules.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace Math;

namespace {

bool onSomePlane(const Point4d& p) {
    for (double v : {p.x, p.y, p.z})
        if (v == p.w || v == -p.w) return true;
    return false;
}

TEST(Polyline4d, ClipRandomPolygons) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> weight(0.5, 2), unit(-2.5, 2.5);
    std::uniform_int_distribution<int> count(1, 9);
    int nonEmpty = 0, crossed = 0;
    for (int i = 0; i < 3000; ++i) {
        Polyline4d poly(i % 3 != 0);
        const int n = count(rng);
        for (int k = 0; k < n; ++k) {
            const double w = weight(rng);
            poly.append(Point4d(unit(rng) * w, unit(rng) * w, unit(rng) * w, w));
        }
        const std::vector<Point4d> before = poly.points();
        bool allInside = true;
        for (const Point4d& p : before)
            allInside = allInside && !p.isClipped();
        poly.clip();
        EXPECT_EQ(poly.isClosed(), i % 3 != 0);
        if (allInside) {
            EXPECT_EQ(poly.points(), before);
            continue;
        }
        nonEmpty += poly.numPoints() > 0;
        for (const Point4d& p : poly.points()) {
            const double slack = 1e-12 * p.w;
            for (double v : {p.x, p.y, p.z}) {
                EXPECT_LE(v, p.w + slack) << i;
                EXPECT_GE(v, -p.w - slack) << i;
            }
            // A point the clip made lies exactly on one of the planes.
            if (std::find(before.begin(), before.end(), p) == before.end()) {
                ++crossed;
                EXPECT_TRUE(onSomePlane(p)) << i;
            }
        }
    }
    EXPECT_GT(nonEmpty, 300);
    EXPECT_GT(crossed, 1000);
}

TEST(Polyline4d, ClipTableCases) {
    Polyline4d inside(true), outside(true);
    for (const Point2d& p : {Point2d(-0.5, -0.5), Point2d(0.5, -0.5), Point2d(0.5, 0.5)}) {
        inside.append(p);
        outside.append(Point2d(p.x + 3, p.y));
    }
    const Polyline4d kept = inside;
    inside.clip();
    EXPECT_EQ(inside.points(), kept.points());
    outside.clip();
    EXPECT_EQ(outside.numPoints(), 0);

    // An open piece crossing x = w keeps its inside end and gains the crossing on the plane.
    for (bool insideFirst : {true, false}) {
        Polyline4d open;
        const Point4d in(0.25, 0.1, 0, 1), out(3, 0.4, 0, 1);
        open.append(insideFirst ? in : out);
        open.append(insideFirst ? out : in);
        open.clip(Axis4d::X);
        ASSERT_EQ(open.numPoints(), 2);
        const Point4d& crossing = open[insideFirst ? 1 : 0];
        EXPECT_EQ(open[insideFirst ? 0 : 1], in);
        EXPECT_EQ(crossing.x, crossing.w);
        EXPECT_NEAR(crossing.y, 0.1 + 0.3 * (0.75 / 2.75), 1e-15);
    }

    // An edge lying on the plane (da = db) takes t = 0.5 instead of dividing by zero.
    Polyline4d onPlane;
    onPlane.append(Point4d(1, 0, 0, 1));
    onPlane.append(Point4d(1, 0.5, 0, 1));
    onPlane.clip();
    EXPECT_EQ(onPlane.numPoints(), 2);
    EXPECT_FALSE(onPlane[1].hasNanOrInfinity());
}

TEST(TexturedPolyline4d, TextureFollowsTheSameRatio) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> v(-3, 3);
    for (int i = 0; i < 500; ++i) {
        TexturedPolyline4d poly(true);
        for (int k = 0; k < 5; ++k) {
            const Point4d p(v(rng), v(rng), v(rng), 1 + std::fabs(v(rng)));
            poly.append({p, Point2d(p.y, p.w)}); // texture linear in what x clipping keeps
        }
        poly.clip(Axis4d::X);
        for (int k = 0; k < poly.numPoints(); ++k) {
            EXPECT_NEAR(poly[k].texture.x, poly[k].point.y, 1e-12);
            EXPECT_NEAR(poly[k].texture.y, poly[k].point.w, 1e-12);
        }
    }
}

TEST(Polyline, ConversionsBoxesAppendAndReverse) {
    const Polyline4d outline(Box2d(Point2d(1, 2), Point2d(3, 5)));
    EXPECT_TRUE(outline.isClosed());
    ASSERT_EQ(outline.numPoints(), 4);
    EXPECT_EQ(outline[2], Point4d(3, 5, 0, 1));
    EXPECT_EQ(Polyline4d(Box2d()).numPoints(), 0);

    Matrix4x4 m;
    m.scale(2, 2, 2);
    m(3, 3) = 2; // w doubles too: division undoes the scale
    const Polyline4d scaled(outline, m);
    EXPECT_EQ(scaled[1], Point4d(2, 10, 0, 2));
    EXPECT_EQ(scaled.box2d(), outline.box2d());
    const Polyline3d divided(scaled);
    EXPECT_EQ(divided[1], Point3d(1, 5, 0));
    Polyline4d direction;
    direction.append(Point4d(4, 6, 8, 0)); // |w| < 1e-07: taken undivided
    EXPECT_EQ(direction.box3d().maxPoint(), Point3d(4, 6, 8));

    Polyline2d a, b;
    a.append({0, 0});
    a.append({1, 0});
    b.append({1, 0});
    b.append({1, 1});
    a.append(b);
    ASSERT_EQ(a.numPoints(), 3); // the shared end appears once
    a.append(b);
    EXPECT_EQ(a.numPoints(), 5); // (1, 1) then (1, 0) again: not shared
    a.reverse();
    EXPECT_EQ(a[0], Point2d(1, 1));
    EXPECT_EQ(a[4], Point2d(0, 0));

    TexturedPolyline2d t, u;
    t.append({{0, 0}, {0, 0}});
    u.append({{0, 0}, {1, 0}}); // same position, other texture: not shared
    t.append(u);
    EXPECT_EQ(t.numPoints(), 2);
    const TexturedPolyline4d lifted(t, Matrix4x4());
    EXPECT_EQ(TexturedPolyline2d(lifted)[1], t[1]);
}

} // namespace
