// Meeting points and nearest points of the infinite lines Line2d and Line3d.
#include <PlumvaleBaseCore/math/Line.h>

namespace Math {

bool Line2d::getIntersection(const Line2d& l, Point2d& at) const {
    const double det = m_vector.GetDeterminant(l.m_vector);
    if (det == 0) return false;
    at = interpolate(l.m_vector.GetDeterminant(m_point - l.m_point) / det);
    return true;
}

bool Line2d::getIntersection(const Segment2d& s, Point2d& at) const {
    const Vector2d d2 = s.GetVector();
    double det = m_vector.GetDeterminant(d2);
    if (det == 0) return false;
    // The ratio along the segment as nu/det, compared exactly with its ends.
    double nu = m_vector.GetDeterminant(m_point - s.GetFromPoint());
    if (det < 0) det = -det, nu = -nu;
    const bool inside = (nu > 0 && nu < det) ||
                        (nu == 0 && s.GetFromBoundary() == Constants::Closed) ||
                        (nu == det && s.GetToBoundary() == Constants::Closed);
    if (!inside) return false;
    at = nu == det ? s.GetToPoint() : s.Interpolate(nu / det);
    return true;
}

Point3d Line3d::getClosestPoint(const Point3d& p) const {
    const double lengthSq = m_direction.lengthSq();
    if (lengthSq == 0) return m_point;
    return interpolate(((p - m_point) * m_direction) / lengthSq);
}

bool Line3d::getShortestSegment(const Line3d& l, Segment3d& out) const {
    constexpr double kParallelSinSq = 1e-05;
    const Vector3d& d1 = m_direction;
    const Vector3d& d2 = l.m_direction;
    const double a = d1 * d1, b = d1 * d2, c = d2 * d2;
    // |d1 x d2|^2 = ac - b^2, taken from the cross product for accuracy.
    const double crossSq = (d1 ^ d2).lengthSq();
    if (!(a > 0 && c > 0) || crossSq <= kParallelSinSq * a * c) return false;
    const Vector3d w = m_point - l.m_point;
    const double d = d1 * w, e = d2 * w;
    const double s = (b * e - c * d) / crossSq;
    const double t = (a * e - b * d) / crossSq;
    out = Segment3d(interpolate(s), l.interpolate(t));
    return true;
}

} // namespace Math
