// The 3D segment between two Point3d ends.
#pragma once

#include <PlumvaleBaseCore/math/Vector3d.h>

namespace Math {

/// The straight piece from `getFromPoint()` to `getToPoint()`; both ends belong to it.
class PLUMVALE_EXPORT Segment3d {
public:
    /// Both ends at the origin.
    constexpr Segment3d() = default;
    /// The segment from `from` to `to`.
    constexpr Segment3d(const Point3d& from, const Point3d& to) : m_from(from), m_to(to) {}

    /// @{
    /// The two ends and their setters.
    const Point3d& getFromPoint() const { return m_from; }
    const Point3d& getToPoint() const { return m_to; }
    void setFromPoint(const Point3d& p) { m_from = p; }
    void setToPoint(const Point3d& p) { m_to = p; }
    /// @}

    /// to - from.
    Vector3d vector() const { return Vector3d(m_from, m_to); }
    /// @{
    /// The distance between the ends, and its square.
    double length() const { return vector().length(); }
    double lengthSq() const { return vector().lengthSq(); }
    /// @}
    /// from + t (to - from): t = 0 is the from end, 1 the to end.
    Point3d interpolate(double t) const { return Point3d::interpolate(t, m_from, m_to); }
    /// Both ends exactly equal.
    bool isDegenerate() const { return m_from == m_to; }
    /// from and to exchanged.
    Segment3d getInverse() const { return {m_to, m_from}; }

    /// @{
    /// Exact comparison of the ends in order: a segment differs from its inverse.
    bool operator==(const Segment3d& s) const { return m_from == s.m_from && m_to == s.m_to; }
    bool operator!=(const Segment3d& s) const { return !(*this == s); }
    /// @}

private:
    Point3d m_from;
    Point3d m_to;
};

} // namespace Math
