// Tests of the camera chain: round trips, what each setter makes stale, scopes, the scale table.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <random>

using namespace Math;
using Chain = CameraTransformChain;

namespace {

// A perspective camera looking at a tilted, scaled model, in an 800 x 600 window.
Chain perspectiveChain() {
    Chain c;
    c.setViewport(Rect2d(0, 0, 800, 600));
    Matrix4x4 model;
    model.rotateDegrees(25, Axis3d::X);
    model.scale(2, 2, 2);
    Matrix4x4 view;
    view.lookAt({0, 0, 30}, {0, 0, 0}, {0, 1, 0});
    Matrix4x4 projection;
    projection.perspectiveProject(40, 800.0 / 600, 1, 100);
    c.setModelMatrix(model);
    c.setViewMatrix(view);
    c.setProjectionMatrix(projection);
    c.setObjectMatrix(Matrix2x3::CreateRotate(0.3) * Matrix2x3::CreateScale({1.5, 0.5}));
    return c;
}

TEST(CameraTransformChain, DefaultChainFlipsYAroundTheWindowCentre) {
    const Chain c;
    for (const Point2d& p : {Point2d(0, 0), Point2d(0.5, 0.25), Point2d(-1, 1)}) {
        Point2d w;
        ASSERT_TRUE(c.transform(Chain::SourceModel, p, Chain::DestinationWindow, w));
        EXPECT_EQ(w, Point2d(50 + 50 * p.x, 50 - 50 * p.y));
        Point2d back;
        ASSERT_TRUE(c.transform(Chain::SourceWindow, w, Chain::DestinationModel, back));
        EXPECT_EQ(back, p);
    }
}

TEST(CameraTransformChain, OutwardThenInwardRoundTrips) {
    const Chain c = perspectiveChain();
    std::mt19937 rng(9);
    std::uniform_real_distribution<double> v(-3, 3);
    for (int i = 0; i < 200; ++i) {
        const Point3d p(v(rng), v(rng), v(rng));
        for (int s = Chain::SourceObject; s > Chain::SourceWindow; --s)
            for (int d = s - 1; d >= Chain::DestinationWindow; --d) {
                Point3d out, back;
                const auto src = Chain::SourceReferenceFrame_e(s);
                const auto dst = Chain::DestinationReferenceFrame_e(d);
                ASSERT_TRUE(c.transform(src, p, dst, out)) << s << "->" << d;
                ASSERT_TRUE(c.transform(Chain::SourceReferenceFrame_e(d), out,
                                        Chain::DestinationReferenceFrame_e(s), back));
                EXPECT_NEAR(back.distance(p), 0, 1e-9) << s << "->" << d;
            }
        // A point of the model plane seen in the window is found again on the plane.
        Point2d w, onPlane;
        ASSERT_TRUE(c.transform(Chain::SourceObject, p.toPoint2d(), Chain::DestinationWindow, w));
        ASSERT_TRUE(c.transform(Chain::SourceWindow, w, Chain::DestinationObject, onPlane));
        EXPECT_NEAR(onPlane.GetDistance(p.toPoint2d()), 0, 1e-9);
        // The line of sight through that window point passes through the model point.
        Line3d sight;
        ASSERT_TRUE(c.getLine3d(w, Chain::DestinationModel, sight));
        EXPECT_NEAR(sight.distance(Point3d(c.objectMatrix().Transform(p.toPoint2d()), 0)), 0, 1e-9);
    }
}

TEST(CameraTransformChain, SettersMakeStaleOnlyWhatDependsOnThem) {
    Chain c = perspectiveChain();
    Point2d out;
    const auto windowToObject = [&] {
        return c.transform(Chain::SourceWindow, Point2d(400, 300), Chain::DestinationObject, out);
    };
    ASSERT_TRUE(windowToObject());
    EXPECT_EQ(c.cache().stale & 0x7F, 0);
    unsigned before[8];
    const auto snapshot = [&] { std::copy(c.cache().rebuilds, c.cache().rebuilds + 8, before); };
    // Which cache items a setter followed by the same conversion rebuilds, by bit index.
    const auto rebuiltSince = [&] {
        std::vector<int> items;
        for (int i = 0; i < 7; ++i)
            if (c.cache().rebuilds[i] != before[i]) items.push_back(i);
        return items;
    };
    snapshot();
    ASSERT_TRUE(windowToObject());
    EXPECT_EQ(rebuiltSince(), std::vector<int>{}); // nothing stale: nothing rebuilt

    c.setObjectMatrix(Matrix2x3::CreateScale({3, 3}));
    snapshot();
    ASSERT_TRUE(windowToObject());
    EXPECT_EQ(rebuiltSince(), std::vector<int>({0}));

    c.setViewport(Rect2d(0, 0, 640, 480));
    snapshot();
    ASSERT_TRUE(windowToObject());
    EXPECT_EQ(rebuiltSince(), std::vector<int>({6}));

    c.setViewMatrix(c.viewMatrix());
    snapshot();
    ASSERT_TRUE(windowToObject());
    EXPECT_EQ(rebuiltSince(), std::vector<int>({2, 4, 5, 6}));

    // An outward conversion rebuilds the product only; the inverses wait until needed.
    c.applyMatrixToModel(Matrix4x4());
    snapshot();
    ASSERT_TRUE(c.transform(Chain::SourceObject, Point2d(1, 1), Chain::DestinationWindow, out));
    EXPECT_EQ(rebuiltSince(), std::vector<int>({4}));
    snapshot();
    ASSERT_TRUE(windowToObject());
    EXPECT_EQ(rebuiltSince(), std::vector<int>({1, 5, 6}));

    // The clip region is not cached at all.
    c.setClipRegion(Rect2d(0, 0, 10, 10));
    EXPECT_EQ(c.cache().stale & 0x7F, 0);
    EXPECT_FALSE(c.isFullWindow());
}

TEST(CameraTransformChain, SingularViewFailsInwardOnly) {
    Chain c = perspectiveChain();
    Matrix4x4 flat; // squashes depth, then moves everything in front of the eye
    flat.translate(0, 0, -30);
    flat.scale(1, 1, 0);
    c.setViewMatrix(flat);
    Point3d p;
    Point2d q;
    EXPECT_TRUE(c.transform(Chain::SourceModel, Point3d(0.1, 0.2, 0), Chain::DestinationWindow, p));
    EXPECT_TRUE(c.transform(Chain::SourceObject, Point2d(0.1, 0.2), Chain::DestinationEye, q));
    for (int s = Chain::SourceWindow; s <= Chain::SourceCamera; ++s)
        for (int d = Chain::DestinationWorld; d <= Chain::DestinationObject; ++d) {
            EXPECT_FALSE(c.transform(Chain::SourceReferenceFrame_e(s), Point3d(1, 2, 0.5),
                                     Chain::DestinationReferenceFrame_e(d), p));
            EXPECT_FALSE(c.transform(Chain::SourceReferenceFrame_e(s), Point2d(1, 2),
                                     Chain::DestinationReferenceFrame_e(d), q));
        }
    Matrix4x4 m;
    EXPECT_FALSE(c.compoundMatrix(Chain::SourceWindow, Chain::DestinationModel, m));
    EXPECT_TRUE(c.compoundMatrix(Chain::SourceModel, Chain::DestinationWindow, m));
}

TEST(CameraTransformChain, DiscretizationScaleTable) {
    // The window (-1, -1, 1, 1) maps device space with unit magnification, so a model scale of
    // s is a magnification of s.
    const std::pair<double, double> table[] = {{3, 4}, {0.5, 1},         {0.05, 0.0625}, {10, 4},
                                               {4, 8}, {0.0625, 0.0625}, {0.7, 1},       {1.9, 2}};
    for (const auto& row : table) {
        Chain c;
        c.setViewport(Rect2d(-1, -1, 1, 1));
        Matrix4x4 model;
        model.scale(row.first, row.first, 1);
        c.setModelMatrix(model);
        EXPECT_EQ(c.discretizationScale(), row.second) << row.first;
        EXPECT_EQ(c.cache().discretizationScale, row.second);
    }
    // The origin behind the view volume gives the default without caching it.
    Chain behind;
    Matrix4x4 push;
    push.translate(0, 0, 5);
    behind.setModelMatrix(push);
    EXPECT_EQ(behind.discretizationScale(), 0.0625);
    EXPECT_EQ(behind.cache().discretizationScale, -1);
}

TEST(CameraTransformChain, ScopesRestoreInReverseOrder) {
    Chain c;
    c.setViewport(Rect2d(-1, -1, 1, 1));
    const double outer = c.discretizationScale();
    Matrix4x4 twice;
    twice.scale(3, 3, 1);
    {
        Chain::Scope first(c);
        c.setModelMatrix(twice);
        EXPECT_EQ(c.discretizationScale(), 4);
        {
            Chain::Scope second(c);
            EXPECT_EQ(second.modelMatrix(), twice);
            c.setModelMatrix(Matrix4x4());
            c.setClipRegion(Rect2d(1, 2, 3, 4));
            EXPECT_EQ(c.discretizationScale(), outer);
        }
        EXPECT_EQ(c.modelMatrix(), twice);
        EXPECT_TRUE(c.isFullWindow());
        EXPECT_EQ(c.discretizationScale(), 4);
        Point2d w;
        ASSERT_TRUE(c.transform(Chain::SourceModel, Point2d(1, 0), Chain::DestinationWindow, w));
        EXPECT_EQ(w, Point2d(3, 0)); // the restored model matrix is the one used
    }
    EXPECT_EQ(c.modelMatrix(), Matrix4x4());
    EXPECT_EQ(c.cache().discretizationScale, outer);
}

TEST(CameraTransformChain, BoxesClipAndPrint) {
    const Chain c = perspectiveChain();
    const Box2d inFront(Point2d(-1, -1), Point2d(1, 1));
    const Box2d onScreen = c.project(Chain::SourceModel, inFront);
    ASSERT_FALSE(onScreen.IsEmpty());
    for (const Point2d& corner : {Point2d(-1, -1), Point2d(1, 1)}) {
        Point2d w;
        ASSERT_TRUE(c.transform(Chain::SourceModel, corner, Chain::DestinationWindow, w));
        EXPECT_TRUE(Box2d(onScreen).IsContaining(w) || onScreen.GetDistance(w) < 1e-9);
    }
    EXPECT_TRUE(c.modelBoxIntersectsClipRegion(inFront));
    EXPECT_FALSE(c.modelBoxIntersectsClipRegion(Box2d(Point2d(100, 100), Point2d(101, 101))));

    // A box reaching behind the eye keeps only its visible part: finite window coordinates.
    const Box3d deep(Point3d(-1, -1, -1), Point3d(1, 1, 60));
    const Box2d visible = c.project(Chain::SourceWorld, deep);
    ASSERT_FALSE(visible.IsEmpty());
    EXPECT_FALSE(visible.hasNanOrInfinity());
    std::set<Point2d> corners;
    EXPECT_TRUE(c.project(Chain::SourceWorld, deep, corners));
    EXPECT_EQ(corners.size(), 4u); // the far face's corners are behind the eye

    testing::internal::CaptureStdout();
    Chain().print("main");
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out.rfind("CameraTransformChain: main\nwindow: 0.000000 0.000000 100.000000 "
                        "100.000000\nfull: 1\nObject is identity\nModelMatrix::\n",
                        0),
              0u);
}

TEST(PlanarDepthBuffer, MatchesTheDirectTransform) {
    const Chain c = perspectiveChain();
    Matrix4x4 toWindow;
    ASSERT_TRUE(c.compoundMatrix(Chain::SourceModel, Chain::DestinationWindow, toWindow));
    Matrix4x4 plane;
    plane.translate(0, 0, 0.5);
    const PlanarDepthBuffer depth(plane, toWindow, 100, 50);
    for (const Point2d& q : {Point2d(0, 0), Point2d(1, -2), Point2d(-3, 1)}) {
        const Point3d w = toWindow * Point3d(q.x, q.y, 0.5);
        EXPECT_NEAR(depth.getZ(Point2d(w.x - 100, w.y - 50)), w.z, 1e-6);
    }
    // Seen edge-on the plane has no depth anywhere: the far value.
    Matrix4x4 edgeOn;
    edgeOn.rotateDegrees(90, Axis3d::X);
    Matrix4x4 straight;
    straight.orthogonalProject(-10, 10, -10, 10, -10, 10);
    EXPECT_EQ(PlanarDepthBuffer(edgeOn, straight, 0, 0).getZ({0.5, 0.5}), FLT_MAX);
}

} // namespace
