// Infinite lines: Line2d through two points and Line3d through a point along a direction.
#pragma once

#include <PlumvaleBaseCore/math/Segment2d.h>
#include <PlumvaleBaseCore/math/Segment3d.h>

namespace Math {

/// The infinite 2D line through `getPointOnTheLine()` along `vector()`.
/// Sides are seen looking along the vector, left counter-clockwise; side tests are exact
/// (the sign of a determinant). A degenerate line (zero vector) has every point on it and is
/// parallel to everything.
class PLUMVALE_EXPORT Line2d {
public:
    /// @{
    /// The x axis; the line through a then b (vector b - a); the line of a segment.
    Line2d() = default;
    Line2d(const Point2d& a, const Point2d& b) : m_point(a), m_vector(b - a) {}
    explicit Line2d(const Segment2d& s) : Line2d(s.GetFromPoint(), s.GetToPoint()) {}
    /// @}

    /// The direction, b - a.
    const Vector2d& vector() const { return m_vector; }
    /// The unit vector a quarter turn counter-clockwise from vector(); (0, 0) when degenerate.
    Vector2d normal() const { return m_vector.GetRotated90().GetNormalizedVector(); }
    /// The first point the line was built from.
    const Point2d& getPointOnTheLine() const { return m_point; }
    /// a + t (b - a).
    Point2d interpolate(double t) const { return m_point + m_vector * t; }
    /// The orthogonal projection of p; the line's point when degenerate.
    Point2d getClosestPoint(const Point2d& p) const {
        return interpolate((p - m_point).GetProjectedRatio(m_vector));
    }
    /// The closed segment from a to b.
    Segment2d getSegment() const { return Segment2d(m_point, m_vector); }
    /// @{
    /// Distance (its square) from p to the line.
    double distance(const Point2d& p) const { return p.GetDistance(getClosestPoint(p)); }
    double distanceSq(const Point2d& p) const { return p.GetDistanceSq(getClosestPoint(p)); }
    /// @}
    /// 1 left of the line, -1 right of it, 0 exactly on it.
    int getSide(const Point2d& p) const {
        return TUMaths::sign(m_vector.GetDeterminant(p - m_point));
    }
    /// @{
    /// Side tests from getSide().
    bool leftOfLine(const Point2d& p) const { return getSide(p) > 0; }
    bool leftOfOrOnLine(const Point2d& p) const { return getSide(p) >= 0; }
    bool rightOfLine(const Point2d& p) const { return getSide(p) < 0; }
    bool rightOfOrOnLine(const Point2d& p) const { return getSide(p) <= 0; }
    bool onLine(const Point2d& p) const { return getSide(p) == 0; }
    /// @}
    /// Exactly parallel vectors.
    bool isParallel(const Line2d& l) const { return m_vector.IsParallel(l.m_vector); }
    /// The vector is exactly zero.
    bool isDegenerate() const { return m_vector.isZero(); }
    /// Where two lines meet; false, `at` untouched, for parallel lines.
    bool getIntersection(const Line2d& l, Point2d& at) const;
    /// Where the line meets the segment (the segment's boundaries apply: an open end does not
    /// count); false, `at` untouched, when it misses or is parallel to it.
    bool getIntersection(const Segment2d& s, Point2d& at) const;

private:
    Point2d m_point;
    Vector2d m_vector{1, 0};
};

/// The infinite 3D line through `point()` along `direction()` (not necessarily unit length).
class PLUMVALE_EXPORT Line3d {
public:
    /// @{
    /// The x axis; a point and a direction; the line of a segment (direction to - from).
    Line3d() = default;
    Line3d(const Point3d& p, const Vector3d& direction) : m_point(p), m_direction(direction) {}
    explicit Line3d(const Segment3d& s) : m_point(s.getFromPoint()), m_direction(s.vector()) {}
    /// @}

    /// @{
    /// The point and direction given.
    const Point3d& point() const { return m_point; }
    const Vector3d& direction() const { return m_direction; }
    /// @}
    /// point + t direction.
    Point3d interpolate(double t) const { return m_point + m_direction * t; }
    /// The orthogonal projection of p; point() when the direction is zero.
    Point3d getClosestPoint(const Point3d& p) const;
    /// @{
    /// Distance (its square) from p to the line.
    double distance(const Point3d& p) const { return p.distance(getClosestPoint(p)); }
    double distanceSq(const Point3d& p) const { return p.distanceSq(getClosestPoint(p)); }
    /// @}
    /// The direction is exactly zero.
    bool isDegenerate() const { return m_direction.isZero(); }

    /// The shortest segment from this line to l: its from end on this line, its to end on l.
    /// False, `out` untouched, when the lines are parallel within the tolerance: the squared
    /// sine of their angle, |d1 x d2|^2 / (|d1|^2 |d2|^2), not above 1e-05 (degenerate lines
    /// included).
    bool getShortestSegment(const Line3d& l, Segment3d& out) const;

private:
    Point3d m_point;
    Vector3d m_direction{1, 0, 0};
};

} // namespace Math
