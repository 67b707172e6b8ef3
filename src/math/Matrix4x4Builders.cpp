// Matrix4x4 builders (translations, rotations, projections, views) and decomposition.
#include <PlumvaleBaseCore/math/Matrix4x4.h>

#include <cmath>

namespace Math {

namespace {

// Magnitudes at or below 2^-19 count as zero when decomposing.
constexpr double kDecomposeZero = 1.9073486328125e-06;

} // namespace

void Matrix4x4::translate(double x, double y, double z) {
    *this *= Matrix4x4(1, 0, 0, x, 0, 1, 0, y, 0, 0, 1, z, 0, 0, 0, 1);
}

void Matrix4x4::scale(double sx, double sy, double sz) {
    *this *= Matrix4x4(sx, 0, 0, 0, 0, sy, 0, 0, 0, 0, sz, 0, 0, 0, 0, 1);
}

void Matrix4x4::rotateDegrees(double degrees, Axis3d axis) {
    rotateRadians(degrees * TUMaths::radiansPerDegree, axis);
}

void Matrix4x4::rotateRadians(double radians, Axis3d axis) {
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    switch (axis) {
    case Axis3d::X:
        *this *= Matrix4x4(1, 0, 0, 0, 0, c, -s, 0, 0, s, c, 0, 0, 0, 0, 1);
        break;
    case Axis3d::Y:
        *this *= Matrix4x4(c, 0, s, 0, 0, 1, 0, 0, -s, 0, c, 0, 0, 0, 0, 1);
        break;
    case Axis3d::Z:
        *this *= Matrix4x4(c, -s, 0, 0, s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
        break;
    }
}

void Matrix4x4::rotateDegrees(double degrees, const Vector3d& axis) {
    rotateRadians(degrees * TUMaths::radiansPerDegree, axis);
}

void Matrix4x4::rotateRadians(double radians, const Vector3d& axis) {
    const double l = axis.length();
    if (l == 0) return;
    const Vector3d u = axis / l;
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    const double t = 1 - c;
    *this *= Matrix4x4(t * u.x * u.x + c, t * u.x * u.y - s * u.z, t * u.x * u.z + s * u.y, 0,
                       t * u.x * u.y + s * u.z, t * u.y * u.y + c, t * u.y * u.z - s * u.x, 0,
                       t * u.x * u.z - s * u.y, t * u.y * u.z + s * u.x, t * u.z * u.z + c, 0, 0, 0,
                       0, 1);
}

void Matrix4x4::skew(double s) {
    *this *= Matrix4x4(1, s, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
}

void Matrix4x4::lookAt(const Point3d& eye, const Point3d& centre, const Vector3d& up) {
    Vector3d f = centre - eye;
    f.normalize();
    Vector3d s = f ^ up;
    s.normalize();
    const Vector3d u = s ^ f;
    *this *= Matrix4x4(s.x, s.y, s.z, -(s * Vector3d(eye)), u.x, u.y, u.z, -(u * Vector3d(eye)),
                       -f.x, -f.y, -f.z, f * Vector3d(eye), 0, 0, 0, 1);
}

void Matrix4x4::orthogonalProject(double left, double right, double bottom, double top, double near,
                                  double far) {
    *this *= Matrix4x4(2 / (right - left), 0, 0, -(right + left) / (right - left), 0,
                       2 / (top - bottom), 0, -(top + bottom) / (top - bottom), 0, 0,
                       -2 / (far - near), -(far + near) / (far - near), 0, 0, 0, 1);
}

void Matrix4x4::perspectiveProject(double fovyDegrees, double aspect, double near, double far) {
    const double f = std::tan(TUMaths::pi / 2 - fovyDegrees * TUMaths::radiansPerDegree / 2);
    Matrix4x4 factor;
    factor.m[0] = f / aspect;
    factor.m[5] = f;
    factor.m[10] = (near + far) / (near - far);
    factor.m[14] = 2 * near * far / (near - far);
    factor.m[11] = -1;
    factor.m[15] = 0;
    factor.m_identity = false;
    *this *= factor;
    m_identity = false;
}

void Matrix4x4::perspectiveProject(double left, double right, double bottom, double top,
                                   double near, double far) {
    *this *= Matrix4x4(2 * near / (right - left), 0, (right + left) / (right - left), 0, 0,
                       2 * near / (top - bottom), (top + bottom) / (top - bottom), 0, 0, 0,
                       -(far + near) / (far - near), -2 * far * near / (far - near), 0, 0, -1, 0);
}

void Matrix4x4::rotatePlane(const Vector3d& normal, const Point3d& point) {
    *this *= Matrix4x4(normal, point);
}

bool Matrix4x4::extractParameters(Vector3d& translation, Angle3d& rotation, Vector3d& scale) const {
    Vector3d shear;
    return extractParameters(translation, rotation, scale, shear);
}

bool Matrix4x4::extractParameters(Vector3d& translation, Angle3d& rotation, Vector3d& scale,
                                  Vector3d& shear) const {
    const double w = m[15];
    if (std::fabs(w) <= kDecomposeZero || std::fabs(m[3]) > kDecomposeZero ||
        std::fabs(m[7]) > kDecomposeZero || std::fabs(m[11]) > kDecomposeZero)
        return false;
    Vector3d c0 = axis(Axis3d::X) / w;
    Vector3d c1 = axis(Axis3d::Y) / w;
    Vector3d c2 = axis(Axis3d::Z) / w;

    // Gram-Schmidt: the column lengths are the scales, the removed parts the shears.
    Vector3d s;
    s.x = c0.length();
    if (s.x <= kDecomposeZero) return false;
    c0 /= s.x;
    double hxy = c0 * c1;
    c1 -= c0 * hxy;
    s.y = c1.length();
    if (s.y <= kDecomposeZero) return false;
    c1 /= s.y;
    double hxz = c0 * c2;
    c2 -= c0 * hxz;
    double hyz = c1 * c2;
    c2 -= c1 * hyz;
    s.z = c2.length();
    if (s.z <= kDecomposeZero) return false;
    c2 /= s.z;
    // With M = R H S, the entries of H are the projections divided by the scales involved;
    // negating R and S together below leaves H as it is.
    shear = Vector3d(hxy / s.y, hxz / s.z, hyz / s.z);
    // A left-handed frame is a mirror: carry it in the scales, keep R a rotation.
    if ((c0 ^ c1) * c2 < 0) {
        s = -s;
        c0 = -c0, c1 = -c1, c2 = -c2;
    }
    scale = s;
    translation = Vector3d(m[12] / w, m[13] / w, m[14] / w);

    // R = Rz Ry Rx; read the angles as Quat::euler does.
    const double cy = std::sqrt(c0.x * c0.x + c0.y * c0.y);
    if (cy <= kDecomposeZero)
        rotation = Angle3d(std::atan2(-c2.y, c1.y), std::atan2(-c0.z, cy), 0);
    else
        rotation = Angle3d(std::atan2(c1.z, c2.z), std::atan2(-c0.z, cy), std::atan2(c0.y, c0.x));
    return true;
}

} // namespace Math
