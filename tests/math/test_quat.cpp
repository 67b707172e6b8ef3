// Tests of Quat: agreement with its matrix, Euler round trips, slerp and squad, printing.
#include <PlumvaleBaseCore/math.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace Math;

namespace {

const double kPi = std::acos(-1.0);

Quat randomRotation(std::mt19937& rng) {
    std::uniform_real_distribution<double> d(-1, 1);
    Vector3d axis(d(rng), d(rng), d(rng));
    if (axis.length() < 0.01) axis = Vector3d(0, 0, 1);
    return Quat(d(rng) * kPi, axis);
}

void expectNear(const Vector3d& a, const Vector3d& b, double tol) {
    EXPECT_NEAR(a.x, b.x, tol);
    EXPECT_NEAR(a.y, b.y, tol);
    EXPECT_NEAR(a.z, b.z, tol);
}

// Exposes the protected building blocks for direct checks.
struct QuatProbe : Quat {
    using Quat::slerpMethod;
    using Quat::squadPt;
};

} // namespace

TEST(Quat, RotationAgreesWithItsMatrixAndComposes) {
    std::mt19937 rng(5);
    for (int n = 0; n < 300; ++n) {
        const Quat a = randomRotation(rng), b = randomRotation(rng);
        Matrix4x4 ma, mb;
        a.matrix(ma);
        b.matrix(mb);
        const Vector3d v(1.5, -2, 0.5);
        Vector3d rotated = v;
        a.transform(rotated);
        expectNear(rotated, ma * v, 1e-12);
        // (a b) applies b first, as the matrix product does.
        Vector3d both = v;
        (a * b).transform(both);
        expectNear(both, (ma * mb) * v, 1e-12);
        EXPECT_NEAR(rotated.length(), v.length(), 1e-12);
        Quat inv = a;
        inv.invert();
        EXPECT_TRUE((a * inv).equals(Quat(), 1e-12));
    }
}

TEST(Quat, AxisAngleGuardAndKnownRotation) {
    EXPECT_TRUE(Quat(1.0, Vector3d(0, 0, 0.0005)).isIdentity());
    EXPECT_FALSE(Quat(1.0, Vector3d(0, 0, 0.0011)).isIdentity());
    const Quat q(kPi / 2, Vector3d(0, 0, 3)); // axis length ignored
    Vector3d v(1, 0, 0);
    q.transform(v);
    expectNear(v, Vector3d(0, 1, 0), 1e-15);
    double angle = 0;
    Vector3d axis;
    q.rotAxis(angle, axis);
    EXPECT_NEAR(angle, kPi / 2, 1e-15);
    expectNear(axis, Vector3d(0, 0, 1), 1e-15);
}

TEST(Quat, EulerRoundTripAwayFromGimbalLock) {
    std::mt19937 rng(6);
    std::uniform_real_distribution<double> d(-1, 1);
    for (int n = 0; n < 500; ++n) {
        const double x = d(rng) * 3.1, y = d(rng) * 1.5, z = d(rng) * 3.1;
        const Quat q(x, y, z, false);
        double x2, y2, z2;
        q.euler(x2, y2, z2);
        ASSERT_NEAR(x2, x, 1e-9);
        ASSERT_NEAR(y2, y, 1e-9);
        ASSERT_NEAR(z2, z, 1e-9);
        // The Euler order is x first: compare with the composed axis rotations.
        Matrix4x4 m;
        m.rotateRadians(z, Axis3d::Z);
        m.rotateRadians(y, Axis3d::Y);
        m.rotateRadians(x, Axis3d::X);
        Vector3d v(0.3, 1, -2);
        q.transform(v);
        expectNear(v, m * Vector3d(0.3, 1, -2), 1e-12);
    }
    double x, y, z;
    Quat(30.0, 90.0, 0.0, true).euler(x, y, z, true); // gimbal lock: z folds into x
    EXPECT_NEAR(y, 90, 1e-6);
    EXPECT_EQ(z, 0);
}

TEST(Quat, SlerpEndpointsShortestArcAndEqualInputs) {
    std::mt19937 rng(8);
    for (int n = 0; n < 100; ++n) {
        const Quat a = randomRotation(rng), b = randomRotation(rng);
        EXPECT_TRUE(Quat::slerp(a, b, 0).equals(a, 1e-12));
        const Quat end = Quat::slerp(a, b, 1);
        EXPECT_LT(end.distance(b, true), 1e-12);
        const Quat mid = Quat::slerp(a, b, 0.5);
        EXPECT_NEAR(mid.norm(), 1, 1e-12);
        // The middle of the shortest arc is equally far from both ends.
        EXPECT_NEAR(mid.distance(a, true), mid.distance(b, true), 1e-9);
        const Quat minusA(-a.w(), -a.x(), -a.y(), -a.z());
        for (double t : {0.0, 0.3, 1.0})
            EXPECT_TRUE(Quat::slerp(a, minusA, t).equals(a, 1e-12)) << t;
    }
    const Quat same(0.5, 0.5, 0.5, 0.5);
    EXPECT_EQ(QuatProbe::slerpMethod(same, same, 0.7), same);
}

TEST(Quat, SquadPassesThroughItsKeysAndExpInvertsLog) {
    std::mt19937 rng(9);
    const Quat a = randomRotation(rng), b = randomRotation(rng), c = randomRotation(rng),
               d = randomRotation(rng);
    EXPECT_LT(Quat::squad(a, b, c, d, 0).distance(b, true), 1e-12);
    EXPECT_LT(Quat::squad(a, b, c, d, 1).distance(c, true), 1e-12);
    // Evenly spaced keys on one axis give a control point equal to the key itself.
    const Quat k0(0.0, Vector3d(0, 0, 1)), k1(0.4, Vector3d(0, 0, 1)), k2(0.8, Vector3d(0, 0, 1));
    EXPECT_TRUE(QuatProbe::squadPt(k0, k1, k2).equals(k1, 1e-12));
    const Quat r = randomRotation(rng);
    EXPECT_TRUE(r.log().exp().equals(r, 1e-12));
    EXPECT_TRUE(Quat().log().equals(Quat(0.0, 0.0, 0.0, 0.0), 0));
}

TEST(Quat, FromTwoVectors) {
    const Vector3d from(1, 2, 3), to(-3, 0.5, 2);
    Vector3d v = from;
    Quat(from, to).transform(v);
    expectNear(v / v.length(), to / to.length(), 1e-12);
    Vector3d back(0, 0, 2);
    Quat(Vector3d(0, 0, 1), Vector3d(0, 0, -1)).transform(back);
    expectNear(back, Vector3d(0, 0, -2), 1e-12);
    EXPECT_TRUE(Quat(Vector3d(), to).isIdentity());
}

TEST(Quat, PrintForms) {
    std::string out;
    Quat().print(out);
    Quat(kPi / 2, Vector3d(0, 0, 1)).print(out, Quat::AngleAxis);
    Quat(0.0, 0.0, 90.0, true).print(out, Quat::EulerDegrees);
    EXPECT_EQ(out, "[w: 1.000000000000, x: 0.000000000000, y: 0.000000000000, z: 0.000000000000]\n"
                   "[angle: 90.000000000000, axis: <0.000000000000, 0.000000000000, "
                   "1.000000000000>]\n"
                   "[euler: <0.000000000000, 0.000000000000, 90.000000000000>]\n");
}
