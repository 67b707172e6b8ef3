// Circle2d: a centre and a radius kept either plain or squared.
#pragma once

#include <PlumvaleBaseCore/math/Vector2d.h>

namespace Math {

/// A circle whose size value holds the radius or, when the flag says so, its square; each
/// form is converted only when the other is asked for.
///
/// Conventions:
/// - `Circle2d(a, b)` is deliberately wider than the circle of diameter ab: its squared
///   radius is |a - b|^2 / 2.
/// - Three collinear, distinct points give no circle: the centre is their centroid and the
///   radius +infinity.
/// - `radius()` is const but may rewrite the stored form (square root taken once).
class PLUMVALE_EXPORT Circle2d {
public:
    /// Centre (0, 0), radius 0.
    Circle2d() = default;
    /// Centre and plain radius.
    Circle2d(const Point2d& centre, double r) : m_x(centre.x), m_y(centre.y), m_size(r) {}
    /// Centre the midpoint of a and b, squared radius |a - b|^2 / 2 (not / 4).
    Circle2d(const Point2d& a, const Point2d& b);
    /// The circle through three points. Collinear points: when a = b the circle of diameter
    /// bc, else when b = c that of diameter ab, else the centroid with an infinite radius.
    Circle2d(const Point2d& a, const Point2d& b, const Point2d& c);

    /// The centre.
    Point2d center() const { return {m_x, m_y}; }
    /// Moves the centre.
    void setCenter(const Point2d& c) { m_x = c.x, m_y = c.y; }
    /// The radius; converts a stored square to the plain form once.
    double radius() const;
    /// The squared radius (the stored form is kept).
    double radiusSq() const { return m_isSquared ? m_size : m_size * m_size; }
    /// @{
    /// Stores the plain or the squared radius.
    void setRadius(double r) { m_size = r, m_isSquared = false; }
    void setRadiusSq(double r2) { m_size = r2, m_isSquared = true; }
    /// @}
    /// |p - centre|^2 <= r^2: the circle itself counts as inside.
    bool isContaining(const Point2d& p) const { return p.GetDistanceSq(center()) <= radiusSq(); }
    /// @{
    /// The stored size value and whether it is the squared radius.
    double sizeValue() const { return m_size; }
    bool isSizeSquared() const { return m_isSquared; }
    /// @}

private:
    double m_x = 0;
    double m_y = 0;
    mutable double m_size = 0;
    mutable bool m_isSquared = false;
};

} // namespace Math
