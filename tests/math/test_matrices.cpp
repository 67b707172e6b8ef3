// Tests of Matrix2x2, Matrix2x3 and Matrix4x4: storage order, identity short cuts, inverses.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

using namespace Math;

namespace {

Matrix4x4 randomMatrix(std::mt19937& rng) {
    std::uniform_real_distribution<double> d(-10, 10);
    double v[16];
    for (double& x : v)
        x = d(rng);
    return Matrix4x4(v);
}

double maxDeviationFromIdentity(const Matrix4x4& m) {
    double worst = 0;
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 4; ++c)
            worst = std::fmax(worst, std::fabs(m(r, c) - (r == c ? 1.0 : 0.0)));
    return worst;
}

// Condition-aware tolerance: random matrices are mostly well conditioned, and the few that are
// not are still inverted to a residual far below this bound.
constexpr double kInverseTolerance = 1e-9;

} // namespace

TEST(Matrix4x4, StorageIsColumnMajorWithPointsAsColumns) {
    Matrix4x4 t;
    t.translate(5, 0, 0);
    EXPECT_EQ(t(0, 3), 5.0);
    EXPECT_EQ(t.asArray()[12], 5.0);
    EXPECT_FALSE(t.isIdentityFlag());
    EXPECT_EQ(t * Point3d(1, 2, 3), Point3d(6, 2, 3));
    EXPECT_EQ(t * Vector3d(1, 2, 3), Vector3d(1, 2, 3));
    EXPECT_EQ(t * Point4d(1, 2, 3, 0), Point4d(1, 2, 3, 0));

    const Matrix4x4 reading(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    EXPECT_EQ(reading(0, 1), 2.0);
    EXPECT_EQ(reading.asArray()[1], 5.0);
    EXPECT_EQ(reading.getTranspose().asArray()[1], 2.0);

    // Builders post-multiply: scale applies to the point before the translation.
    Matrix4x4 ts;
    ts.translate(1, 0, 0);
    ts.scale(2, 2, 2);
    EXPECT_EQ(ts * Point3d(1, 1, 1), Point3d(3, 2, 2));
    Matrix4x4 r;
    r.rotateDegrees(90, Axis3d::Z);
    const Point3d p = r * Point3d(1, 0, 0);
    EXPECT_NEAR(p.x, 0, 1e-15);
    EXPECT_NEAR(p.y, 1, 1e-15);
}

TEST(Matrix4x4, IdentityFlagShortCuts) {
    std::mt19937 rng(1);
    const Matrix4x4 b = randomMatrix(rng);
    const Matrix4x4 id;
    EXPECT_TRUE(id.isIdentityFlag());

    Matrix4x4 a;
    a *= b;
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a.isIdentityFlag());
    Matrix4x4 c = b;
    c *= id;
    EXPECT_EQ(c, b);
    EXPECT_EQ(id * b, b);
    EXPECT_EQ(b * id, b);

    // An identity-flagged operand short-cuts even a value-identical unflagged one.
    Matrix4x4 idCopy(Matrix4x4::_identityPattern);
    EXPECT_FALSE(idCopy.isIdentityFlag());
    EXPECT_TRUE(idCopy.isIdentity());
    EXPECT_FALSE(idCopy.isSingular());
    EXPECT_FALSE(id.isSingular());

    Matrix4x4 flagged;
    flagged.inverse(); // nothing to do
    EXPECT_TRUE(flagged.isIdentityFlag());
    EXPECT_EQ(id * Point2d(3, 4), Point3d(3, 4, 0));
}

TEST(Matrix4x4, ProductMatchesTheDefinition) {
    std::mt19937 rng(2);
    for (int n = 0; n < 50; ++n) {
        const Matrix4x4 a = randomMatrix(rng), b = randomMatrix(rng);
        const Matrix4x4 p = a * b;
        for (unsigned r = 0; r < 4; ++r)
            for (unsigned c = 0; c < 4; ++c) {
                double want = 0;
                for (unsigned k = 0; k < 4; ++k)
                    want += a(r, k) * b(k, c);
                ASSERT_NEAR(p(r, c), want, 1e-12);
            }
        Matrix4x4 q = a;
        q *= b;
        ASSERT_EQ(q, p);
        // (a b) x = a (b x)
        const Point4d x(1, -2, 3, 1);
        const Point4d lhs = p * x, rhs = a * (b * x);
        ASSERT_NEAR(lhs.x, rhs.x, 1e-10);
        ASSERT_NEAR(lhs.w, rhs.w, 1e-10);
    }
}

TEST(Matrix4x4, InverseTimesMatrixIsIdentity) {
    std::mt19937 rng(3);
    for (int n = 0; n < 1000; ++n) {
        const Matrix4x4 m = randomMatrix(rng);
        ASSERT_FALSE(m.isSingular());
        Matrix4x4 inv = m;
        inv.inverse();
        ASSERT_LT(maxDeviationFromIdentity(m * inv), kInverseTolerance) << n;
        ASSERT_LT(maxDeviationFromIdentity(inv * m), kInverseTolerance) << n;
    }
    // Every row order the pivoting can meet: scaled permutation matrices, whose inverses are
    // exact (powers of two) and reach every row exchange at every step.
    int order[4] = {0, 1, 2, 3};
    const double factor[4] = {2, -0.5, 8, 0.25};
    do {
        double entries[16] = {}, expected[16] = {};
        for (int c = 0; c < 4; ++c) {
            entries[order[c] + 4 * c] = factor[c];
            expected[c + 4 * order[c]] = 1 / factor[c];
        }
        const Matrix4x4 m(entries);
        EXPECT_EQ(m.getInverse(), Matrix4x4(expected))
            << order[0] << order[1] << order[2] << order[3];
    } while (std::next_permutation(order, order + 4));
}

TEST(Matrix4x4, SingularMatricesRaise) {
    const Matrix4x4 zeroRow(1, 2, 3, 4, 0, 0, 0, 0, 5, 6, 7, 8, 9, 1, 2, 3);
    const Matrix4x4 tiny(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1e-17, 0, 0, 0, 0, 1);
    const Matrix4x4 dependent(1, 2, 3, 4, 2, 4, 6, 8, 0, 1, 0, 1, 1, 0, 1, 0);
    Matrix4x4 empty;
    empty.clear();
    for (const Matrix4x4& m : {zeroRow, tiny, dependent, empty}) {
        EXPECT_TRUE(m.isSingular());
        Matrix4x4 copy = m;
        EXPECT_THROW(copy.inverse(), Matrix4x4::Singularity);
        EXPECT_EQ(copy, m); // untouched
    }
    // A scaled but regular diagonal is not singular: the pivot test is on magnitude only.
    const Matrix4x4 small(1e-15, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_FALSE(small.isSingular());
}

TEST(Matrix4x4, ProjectionBuildersAndQueries) {
    Matrix4x4 p;
    p.perspectiveProject(90, 2, 1, 10);
    EXPECT_FALSE(p.isIdentityFlag());
    EXPECT_NEAR(p(0, 0), 0.5, 1e-15);
    EXPECT_NEAR(p(1, 1), 1.0, 1e-15);
    EXPECT_DOUBLE_EQ(p(2, 2), -11.0 / 9);
    EXPECT_DOUBLE_EQ(p(2, 3), -20.0 / 9);
    EXPECT_EQ(p(3, 2), -1.0);
    EXPECT_EQ(p(3, 3), 0.0);
    EXPECT_TRUE(p.isPerspectiveProjection());
    // Near and far planes land on -1 and 1.
    EXPECT_NEAR((p * Point3d(0, 0, -1)).z, -1, 1e-12);
    EXPECT_NEAR((p * Point3d(0, 0, -10)).z, 1, 1e-12);

    Matrix4x4 f;
    f.perspectiveProject(-1, 1, -0.5, 0.5, 1, 10);
    EXPECT_NEAR((f * Point3d(1, 0.5, -1)).x, 1, 1e-12);
    EXPECT_NEAR((f * Point3d(1, 0.5, -1)).y, 1, 1e-12);

    Matrix4x4 o;
    o.orthogonalProject(0, 4, 0, 2, 1, 3);
    const Point3d corner = o * Point3d(4, 2, -3);
    EXPECT_NEAR(corner.x, 1, 1e-15);
    EXPECT_NEAR(corner.y, 1, 1e-15);
    EXPECT_NEAR(corner.z, 1, 1e-15);

    Matrix4x4 v;
    v.lookAt(Point3d(0, 0, 5), Point3d(0, 0, 0), Vector3d(0, 1, 0));
    const Point3d eyeSpace = v * Point3d(1, 2, 0);
    EXPECT_NEAR(eyeSpace.x, 1, 1e-15);
    EXPECT_NEAR(eyeSpace.y, 2, 1e-15);
    EXPECT_NEAR(eyeSpace.z, -5, 1e-15);

    Matrix4x4 two(Matrix2x3(2, 0, 1, 3, 5, 6));
    EXPECT_TRUE(two.isTransform2d());
    EXPECT_TRUE(two.isConstantZ());
    EXPECT_FALSE(two.hasQuadmap());
    EXPECT_EQ(two.getTransform2d(), Matrix2x3(2, 0, 1, 3, 5, 6));
    EXPECT_DOUBLE_EQ(two.scaleFactor(), std::sqrt(6.0));
    EXPECT_FALSE(p.isTransform2d());
    EXPECT_EQ(two.getE(), 5.0);
    EXPECT_EQ(two.origin(), Point3d(5, 6, 0));
    EXPECT_EQ(two.rotation().origin(), Point3d(0, 0, 0));
}

TEST(Matrix4x4, PlaneFrameMapsTheXYPlaneOntoThePlane) {
    const Vector3d normal(1, 2, 2);
    const Point3d point(1, 1, 1);
    const Matrix4x4 frame(normal, point);
    EXPECT_EQ(frame * Point3d(0, 0, 0), point);
    for (const Point2d& q : {Point2d(1, 0), Point2d(0, 3), Point2d(-2, 5)}) {
        const Point3d onPlane = frame * q;
        EXPECT_NEAR((onPlane - point) * normal, 0, 1e-12);
    }
    const Vector3d z = frame * Vector3d(0, 0, 1);
    EXPECT_NEAR(z.x, 1.0 / 3, 1e-15);
    EXPECT_NEAR(z.z, 2.0 / 3, 1e-15);
}

TEST(Matrix4x4, ExtractParametersRebuildsTheMatrix) {
    std::mt19937 rng(4);
    std::uniform_real_distribution<double> d(-1, 1);
    for (int n = 0; n < 200; ++n) {
        const Vector3d t(d(rng) * 10, d(rng) * 10, d(rng) * 10);
        const Angle3d a(d(rng), d(rng) * 1.4, d(rng) * 3);
        const Vector3d s(0.5 + std::fabs(d(rng)), 0.5 + std::fabs(d(rng)), (n % 2 ? -1 : 1) * 2.0);
        const Vector3d h(d(rng), d(rng), d(rng));
        Matrix4x4 m;
        m.translate(t);
        Matrix4x4 rot;
        Quat(a, false).matrix(rot);
        m *= rot;
        Matrix4x4 shear(1, h.x, h.y, 0, 0, 1, h.z, 0, 0, 0, 1, 0, 0, 0, 0, 1);
        m *= shear;
        m.scale(s.x, s.y, s.z);

        Vector3d t2, s2, h2;
        Angle3d a2;
        ASSERT_TRUE(m.extractParameters(t2, a2, s2, h2));
        Matrix4x4 rebuilt;
        rebuilt.translate(t2);
        Matrix4x4 rot2;
        Quat(a2, false).matrix(rot2);
        rebuilt *= rot2;
        rebuilt *= Matrix4x4(1, h2.x, h2.y, 0, 0, 1, h2.z, 0, 0, 0, 1, 0, 0, 0, 0, 1);
        rebuilt.scale(s2.x, s2.y, s2.z);
        for (int i = 0; i < 16; ++i)
            ASSERT_NEAR(rebuilt.asArray()[i], m.asArray()[i], 1e-9) << n;
        if (n % 2 == 0) {
            EXPECT_NEAR(s2.x, s.x, 1e-9);
            EXPECT_NEAR(a2.y, a.y, 1e-9);
        }
    }
    Matrix4x4 p;
    p.perspectiveProject(60, 1, 1, 10);
    Vector3d t, s;
    Angle3d a;
    EXPECT_FALSE(p.extractParameters(t, a, s));
    Matrix4x4 flat;
    flat.scale(1, 1, 0);
    EXPECT_FALSE(flat.extractParameters(t, a, s));
}

TEST(Matrix2x3, InverseProductAndByteOrder) {
    const Matrix2x3 m(2, 1, -1, 3, 4, -5);
    Matrix2x3 inv;
    ASSERT_TRUE(inv.MatrixInverse(m));
    const Matrix2x3 id = m * inv;
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(id.AsArray()[i], Matrix2x3().AsArray()[i], 1e-15);
    const Point2d p(7, -3);
    EXPECT_EQ(m.Transform(p), Point2d(2 * 7 + -1 * -3 + 4, 1 * 7 + 3 * -3 - 5));
    EXPECT_EQ(p * m, m.Transform(p));
    EXPECT_EQ(m(0, 2), 4.0);
    EXPECT_EQ(m(1, 0), 1.0);

    Matrix2x3 keep(1, 2, 3, 4, 5, 6);
    EXPECT_FALSE(keep.MatrixInverse(Matrix2x3(1, 2, 2, 4, 0, 0)));
    EXPECT_EQ(keep, Matrix2x3(1, 2, 3, 4, 5, 6));

    // The order is the unsigned byte order of the storage: -1 sorts after 1.
    EXPECT_TRUE(Matrix2x3(1, 0, 0, 1, 0, 0) < Matrix2x3(-1, 0, 0, 1, 0, 0));
    EXPECT_FALSE(Matrix2x3(-1, 0, 0, 1, 0, 0) < Matrix2x3(1, 0, 0, 1, 0, 0));

    Matrix2x3 t;
    t.Translate(Vector2d(1, 0));
    t.Rotate(std::acos(-1.0) / 2);
    const Point2d q = t.Transform(Point2d(1, 0));
    EXPECT_NEAR(q.x, 1, 1e-15);
    EXPECT_NEAR(q.y, 1, 1e-15);
    EXPECT_EQ(Matrix2x3::CreateShearX(2).Transform(Point2d(1, 1)), Point2d(3, 1));
    EXPECT_EQ(Matrix2x3::CreateShearY(2).Transform(Point2d(1, 1)), Point2d(1, 3));

    Box2d b(Point2d(0, 0), Point2d(1, 1));
    EXPECT_NEAR(Matrix2x3::CreateRotate(std::acos(-1.0)).Transform(b).GetMinPoint().x, -1.0, 1e-15);
    EXPECT_TRUE(m.Transform(Box2d()).IsEmpty());
    EXPECT_EQ(Matrix2x3::CreateScale(Vector2d(0.5, 2)).Transform(Box2di(1, 1, 3, 1)),
              Box2di(0, 2, 2, 2));
}

TEST(Matrix2x2, InverseAndRotation) {
    Matrix2x2 m(Vector2d(2, 1), Vector2d(1, 1));
    ASSERT_TRUE(m.inverse());
    EXPECT_EQ(m * Vector2d(2, 1), Vector2d(1, 0));
    Matrix2x2 singular(Vector2d(1, 2), Vector2d(2, 4));
    EXPECT_TRUE(singular.isSingular());
    EXPECT_FALSE(singular.inverse());
    EXPECT_EQ(singular, Matrix2x2(Vector2d(1, 2), Vector2d(2, 4)));
    Matrix2x2 r;
    r.rotateDegrees(90);
    const Vector2d v = r * Vector2d(1, 0);
    EXPECT_NEAR(v.x, 0, 1e-15);
    EXPECT_NEAR(v.y, 1, 1e-15);
    EXPECT_EQ(Matrix2x2().compare(singular), -1);
    EXPECT_EQ(singular.compare(Matrix2x2()), 1);
}

TEST(MatrixPrint, ExactFormats) {
    testing::internal::CaptureStdout();
    Matrix4x4 t;
    t.translate(5, 0, -1.5);
    t.print(nullptr);
    Matrix2x3(1, 2, 3, 4, 5, 6).print("M23");
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, "Matrix:\n"
                   "     1.00000      0.00000      0.00000      5.00000\n"
                   "     0.00000      1.00000      0.00000      0.00000\n"
                   "     0.00000      0.00000      1.00000     -1.50000\n"
                   "     0.00000      0.00000      0.00000      1.00000\n"
                   "M23:\n"
                   "     1.00000      3.00000      5.00000\n"
                   "     2.00000      4.00000      6.00000\n");
}
