// Distances, comparisons and the canonical form of Plane3d.
#include <PlumvaleBaseCore/math/Plane3d.h>

namespace Math {

Plane3d::Plane3d(Axis3d axis) : m_normal(0, 0, 0) {
    m_normal(axis) = 1;
}

double Plane3d::signedDistance(const Point3d& p) const {
    return (m_normal * Vector3d(p) + m_d) / m_normal.length();
}

bool Plane3d::isParallel(const Plane3d& p) const {
    return !isDegenerate() && !p.isDegenerate() && (m_normal ^ p.m_normal).isZero();
}

bool Plane3d::isCoplanar(const Plane3d& p) const {
    if (!isParallel(p)) return false;
    const double own = m_d / m_normal.length();
    double other = p.m_d / p.m_normal.length();
    if (m_normal * p.m_normal < 0) other = -other;
    return std::fabs(own - other) <= 1e-12;
}

bool Plane3d::setToCanonicalForm() {
    if (isDegenerate()) return false;
    const double length = m_normal.length();
    m_normal /= length;
    m_d /= length;
    return true;
}

void Plane3d::round(double q) {
    m_normal.round(q);
    Vector3d offset(m_d, 0, 0); // the vector's rounding is the one rule for a quantum
    offset.round(q);
    m_d = offset.x;
}

Matrix4x4 Plane3d::toMatrix4x4() const {
    if (isDegenerate()) return Matrix4x4();
    const Point3d nearest(m_normal * (-m_d / m_normal.lengthSq()));
    return Matrix4x4(m_normal, nearest);
}

} // namespace Math
