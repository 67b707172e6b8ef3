// Plane3d: the points p with normal . p + d = 0.
#pragma once

#include <PlumvaleBaseCore/math/Matrix4x4.h>

namespace Math {

/// A plane stored as a normal n and an offset d: the points p with n . p + d = 0.
///
/// Conventions:
/// - The normal need not be unit length; distances divide by |n|. The canonical form has a
///   unit normal (exactly |n|^2 == 1).
/// - "In front" is the side the normal points to.
/// - A degenerate plane has a zero normal: its distances are NaN and every test on it is false.
class PLUMVALE_EXPORT Plane3d {
public:
    /// The plane z = 0, normal +z.
    Plane3d() = default;
    /// The coordinate plane through the origin normal to the axis (normal the unit axis).
    explicit Plane3d(Axis3d axis);
    /// The plane through `point` with that normal.
    Plane3d(const Vector3d& normal, const Point3d& point)
        : m_normal(normal), m_d(-(normal * Vector3d(point))) {}
    /// The plane through a, b, c, normal (b - a) x (c - a): counter-clockwise points face
    /// the viewer. Degenerate when the points are collinear.
    Plane3d(const Point3d& a, const Point3d& b, const Point3d& c) : Plane3d((b - a) ^ (c - a), a) {}
    /// The image of the plane z = 0 under the frame m: through m's origin, normal
    /// m(x axis) x m(y axis).
    explicit Plane3d(const Matrix4x4& m)
        : Plane3d(m.axis(Axis3d::X) ^ m.axis(Axis3d::Y), m.origin()) {}

    /// @{
    /// The stored normal and offset.
    const Vector3d& normal() const { return m_normal; }
    double offset() const { return m_d; }
    /// @}
    /// (n . p + d) / |n|: positive in front.
    double signedDistance(const Point3d& p) const;
    /// |signedDistance(p)|.
    double distance(const Point3d& p) const { return std::fabs(signedDistance(p)); }
    /// signedDistance(p) > 0 (a point on the plane is not in front).
    bool isPointInFront(const Point3d& p) const { return signedDistance(p) > 0; }
    /// The normals are exactly parallel (their cross product is zero), neither being zero.
    bool isParallel(const Plane3d& p) const;
    /// Parallel, and the same set of points: the canonical forms agree within 1e-12 on the
    /// offset, up to the normal's orientation.
    bool isCoplanar(const Plane3d& p) const;
    /// The normal is exactly zero.
    bool isDegenerate() const { return m_normal.isZero(); }
    /// |n|^2 == 1 exactly.
    bool isCanonical() const { return m_normal.lengthSq() == 1; }
    /// Divides n and d by |n|; false, nothing changed, when degenerate.
    bool setToCanonicalForm();
    /// The normal's components and the offset to the nearest multiple of q.
    void round(double q);
    /// A frame mapping z = 0 onto this plane (Matrix4x4(normal, point)): the point is the
    /// plane's nearest to the origin. Identity for a degenerate plane.
    Matrix4x4 toMatrix4x4() const;

    /// @{
    /// Exact on normal and offset.
    bool operator==(const Plane3d& p) const { return m_normal == p.m_normal && m_d == p.m_d; }
    bool operator!=(const Plane3d& p) const { return !(*this == p); }
    /// @}

private:
    Vector3d m_normal{0, 0, 1};
    double m_d = 0;
};

} // namespace Math
