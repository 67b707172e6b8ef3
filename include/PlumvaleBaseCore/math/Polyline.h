// Polylines and polygons of 2D, 3D, homogeneous and textured points, with view-volume clipping.
#pragma once

#include <PlumvaleBaseCore/math/Box.h>
#include <PlumvaleBaseCore/math/Matrix4x4.h>
#include <PlumvaleBaseCore/math/TexturedPoint.h>

#include <algorithm>
#include <vector>

namespace Math {

/// The ordered point list shared by every polyline kind: open (n - 1 edges) or closed (n
/// edges, the last one back to the first point). Indices are unchecked: 0 <= i < numPoints().
template <class P>
class BasePolyline4d {
public:
    /// Empty, closed or open.
    explicit BasePolyline4d(bool closed = false) : m_closed(closed) {}

    /// @{
    /// Size and access.
    int numPoints() const { return static_cast<int>(m_points.size()); }
    P& operator[](int i) { return m_points[static_cast<size_t>(i)]; }
    const P& operator[](int i) const { return m_points[static_cast<size_t>(i)]; }
    const std::vector<P>& points() const { return m_points; }
    /// @}
    /// Removes every point; the closed flag stays.
    void clear() { m_points.clear(); }
    /// @{
    /// Whether the last point joins the first.
    bool isClosed() const { return m_closed; }
    void setClosed(bool closed) { m_closed = closed; }
    /// @}
    /// Room for n points without reallocation.
    void reserve(int n) { m_points.reserve(static_cast<size_t>(std::max(n, 0))); }

protected:
    /// The points in the opposite order; a closed outline then starts at its former last
    /// point.
    void reversePoints() { std::reverse(m_points.begin(), m_points.end()); }
    /// Appends the points of `other` in order, except that its first point is dropped when it
    /// is exactly equal to this list's last one (the shared end of two chained pieces
    /// appears once). The closed flag of the receiver stays.
    void appendPoints(const BasePolyline4d& other) {
        auto first = other.m_points.begin();
        if (first != other.m_points.end() && !m_points.empty() && *first == m_points.back())
            ++first;
        m_points.insert(m_points.end(), first, other.m_points.end());
    }

    bool m_closed;
    std::vector<P> m_points;
};

class Polyline3d;
class Polyline4d;
class TexturedPolyline4d;

/// A 2D polyline or polygon.
class PLUMVALE_EXPORT Polyline2d : public BasePolyline4d<Point2d> {
public:
    /// Empty, closed or open.
    explicit Polyline2d(bool closed = false) : BasePolyline4d(closed) {}
    virtual ~Polyline2d() = default;
    Polyline2d(const Polyline2d&) = default;
    Polyline2d& operator=(const Polyline2d&) = default;

    /// Adds p at the end.
    void append(const Point2d& p) { m_points.push_back(p); }
    /// Adds the points of `other`, its first one dropped when it equals this last one.
    void append(const Polyline2d& other) { appendPoints(other); }
    /// The points in the opposite order.
    void reverse() { reversePoints(); }
};

/// A 3D polyline or polygon.
class PLUMVALE_EXPORT Polyline3d : public BasePolyline4d<Point3d> {
public:
    /// Empty, closed or open.
    explicit Polyline3d(bool closed = false) : BasePolyline4d(closed) {}
    /// The points of p divided by their w (undivided when |w| < 1e-07); closed flag copied.
    explicit Polyline3d(const Polyline4d& p);
    /// The points of p mapped by m, then divided as above.
    Polyline3d(const Polyline4d& p, const Matrix4x4& m);
    virtual ~Polyline3d() = default;
    Polyline3d(const Polyline3d&) = default;
    Polyline3d& operator=(const Polyline3d&) = default;

    /// Adds p at the end.
    void append(const Point3d& p) { m_points.push_back(p); }
};

/// A homogeneous polyline or polygon, clipped against the canonical view volume
/// -w <= x, y, z <= w.
///
/// Conventions:
/// - Points are never divided by w except by box2d() and box3d() (and then only when
///   |w| >= 1e-07).
/// - `clip()` does one Sutherland-Hodgman pass per plane in the fixed order z-, z+, y-, y+,
///   x-, x+ (sign -1 keeps v <= w, +1 keeps v >= -w). A point on a plane is inside. A
///   crossing point lies at t = da / (da - db) along its edge (t = 0.5 when |da - db| <=
///   1e-07) with its clipped coordinate then set exactly onto the plane.
/// - An open polyline is walked over its n - 1 edges and keeps its last point when that
///   point is inside; a closed one over n edges. The closed flag is kept. One scratch list
///   is allocated per call, nothing per point.
class PLUMVALE_EXPORT Polyline4d : public BasePolyline4d<Point4d> {
public:
    /// Empty, closed or open.
    explicit Polyline4d(bool closed = false) : BasePolyline4d(closed) {}
    /// @{
    /// The points with w = 1 (z = 0 for 2D points); closed flag copied.
    explicit Polyline4d(const Polyline2d& p);
    explicit Polyline4d(const Polyline3d& p);
    /// @}
    /// @{
    /// The points with w = 1, mapped by m undivided; closed flag copied.
    Polyline4d(const Polyline2d& p, const Matrix4x4& m);
    Polyline4d(const Polyline3d& p, const Matrix4x4& m);
    Polyline4d(const Polyline4d& p, const Matrix4x4& m);
    /// @}
    /// The closed outline of the box's corners in the order of Box2d::asArray; empty (and
    /// closed) for an empty box.
    explicit Polyline4d(const Box2d& box);
    virtual ~Polyline4d() = default;
    Polyline4d(const Polyline4d&) = default;
    Polyline4d& operator=(const Polyline4d&) = default;

    /// @{
    /// Adds a point at the end; 2D and 3D points get w = 1.
    void append(const Point2d& p) { m_points.emplace_back(p); }
    void append(const Point3d& p) { m_points.emplace_back(p); }
    void append(const Point4d& p) { m_points.push_back(p); }
    /// @}
    /// Maps every point by m, undivided.
    void transform(const Matrix4x4& m);
    /// Clips against all six planes of the view volume, in the fixed order.
    void clip();
    /// Clips against the two planes of one axis, sign -1 first. W clips nothing.
    void clip(Axis4d axis);
    /// @{
    /// Boxes of the divided points (a point with |w| < 1e-07 taken undivided); empty boxes
    /// for an empty polyline.
    Box2d box2d() const;
    Box3d box3d() const;
    /// @}
};

/// A 2D polyline whose points carry texture coordinates.
class PLUMVALE_EXPORT TexturedPolyline2d : public BasePolyline4d<TexturedPoint2d> {
public:
    /// Empty, closed or open.
    explicit TexturedPolyline2d(bool closed = false) : BasePolyline4d(closed) {}
    /// The positions of p divided by their w (undivided when |w| < 1e-07), texture
    /// coordinates carried; closed flag copied.
    explicit TexturedPolyline2d(const TexturedPolyline4d& p);
    virtual ~TexturedPolyline2d() = default;
    TexturedPolyline2d(const TexturedPolyline2d&) = default;
    TexturedPolyline2d& operator=(const TexturedPolyline2d&) = default;

    /// Adds p at the end.
    void append(const TexturedPoint2d& p) { m_points.push_back(p); }
    /// Adds the points of `other`, its first one dropped when it equals this last one
    /// (position and texture coordinates alike).
    void append(const TexturedPolyline2d& other) { appendPoints(other); }
    /// The points in the opposite order.
    void reverse() { reversePoints(); }
};

/// A homogeneous polyline carrying texture coordinates, clipped exactly as Polyline4d with
/// the texture coordinates of a crossing point interpolated by the same t.
class PLUMVALE_EXPORT TexturedPolyline4d : public BasePolyline4d<TexturedPoint4d> {
public:
    /// Empty, closed or open.
    explicit TexturedPolyline4d(bool closed = false) : BasePolyline4d(closed) {}
    /// The points of p with z = 0 and w = 1, mapped by m undivided; closed flag copied.
    TexturedPolyline4d(const TexturedPolyline2d& p, const Matrix4x4& m);
    virtual ~TexturedPolyline4d() = default;
    TexturedPolyline4d(const TexturedPolyline4d&) = default;
    TexturedPolyline4d& operator=(const TexturedPolyline4d&) = default;

    /// Adds p at the end.
    void append(const TexturedPoint4d& p) { m_points.push_back(p); }
    /// @{
    /// As Polyline4d::clip.
    void clip();
    void clip(Axis4d axis);
    /// @}
};

} // namespace Math
