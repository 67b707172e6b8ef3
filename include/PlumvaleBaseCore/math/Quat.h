// Quat: rotations as quaternions, with Euler conversion and spherical interpolation.
#pragma once

#include <PlumvaleBaseCore/math/Matrix4x4.h>

#include <string>

namespace Math {

/// Quaternion w + xi + yj + zk, scalar first. `a * b` is the Hamilton product: as rotations,
/// b applies first. Angles are radians unless a `degrees` flag says otherwise.
/// Euler angles (x, y, z) mean the rotation about x first, then y, then z: R = Rz Ry Rx.
class PLUMVALE_EXPORT Quat {
public:
    /// The identity (1, 0, 0, 0).
    Quat() = default;
    /// The components as given, not normalised.
    Quat(double w, double x, double y, double z) : m_w(w), m_x(x), m_y(y), m_z(z) {}
    /// setRotAxis(angle, axis).
    Quat(double radians, const Vector3d& axis) { setRotAxis(radians, axis); }
    /// @{
    /// setEuler of the three angles.
    Quat(const Angle3d& angles, bool degrees) { setEuler(angles.x, angles.y, angles.z, degrees); }
    Quat(double x, double y, double z, bool degrees) { setEuler(x, y, z, degrees); }
    /// @}
    /// The shortest rotation taking the direction of `from` onto the direction of `to`
    /// (the identity when either is the zero vector).
    Quat(const Vector3d& from, const Vector3d& to);

    /// The identity when |axis| <= 0.001; the axis need not be unit length.
    void setRotAxis(double radians, const Vector3d& axis);
    /// Angle in [0, 2 pi] and unit axis; (1, 0, 0) for a rotation by 0.
    void rotAxis(double& radians, Vector3d& axis) const;
    /// The rotation about x by `x`, then about y, then about z (R = Rz Ry Rx).
    void setEuler(double x, double y, double z, bool degrees = false);
    /// Reads the angles back from the rotation matrix (see the class comment).
    void euler(double& x, double& y, double& z, bool degrees = false) const;
    /// @{
    /// The rotation by `angle` about one coordinate axis.
    void setToXaxis(double angle, bool degrees = false);
    void setToYaxis(double angle, bool degrees = false);
    void setToZaxis(double angle, bool degrees = false);
    /// @}
    /// @{
    /// Resets to the identity, and tests for it exactly (-1 is the same rotation but not the
    /// identity).
    void loadIdentity() { *this = Quat(); }
    bool isIdentity() const { return m_w == 1 && m_x == 0 && m_y == 0 && m_z == 0; }
    /// @}

    /// Negates x, y and z.
    void conjugate() { m_x = -m_x, m_y = -m_y, m_z = -m_z; }
    /// The multiplicative inverse (conjugate over the squared norm); a zero quaternion stays.
    void invert();
    /// Divides by norm(); a zero quaternion stays.
    void normalize();
    /// A normalised copy, with normalize()'s rule.
    Quat getNormalized() const {
        Quat q(*this);
        q.normalize();
        return q;
    }
    /// sqrt(w^2 + x^2 + y^2 + z^2).
    double norm() const;
    /// The four-component dot product.
    double getDotProduct(const Quat& q) const {
        return m_w * q.m_w + m_x * q.m_x + m_y * q.m_y + m_z * q.m_z;
    }
    /// The Euclidean distance of the four components; with `sameRotation` set, q and -q
    /// count as the same rotation (the smaller of |this - q| and |this + q|).
    double distance(const Quat& q, bool sameRotation = false) const;
    /// Every component within `tolerance`.
    bool equals(const Quat& q, double tolerance) const;
    /// @{
    /// Exact comparison of the components (q and -q differ).
    bool operator==(const Quat& q) const {
        return m_w == q.m_w && m_x == q.m_x && m_y == q.m_y && m_z == q.m_z;
    }
    bool operator!=(const Quat& q) const { return !(*this == q); }
    /// @}
    /// @{
    /// The Hamilton product, and in place: as rotations, q applies first.
    Quat operator*(const Quat& q) const;
    Quat& operator*=(const Quat& q) { return *this = *this * q; }
    /// @}

    /// Exponential of (0, v): (cos |v|, v sin|v| / |v|), taking (cos |v|, v) when
    /// |sin |v|| <= 1e-05. The scalar part is ignored.
    Quat exp() const;
    /// Logarithm of a unit quaternion: (0, v theta / sin theta) with theta = acos w,
    /// taking (0, v) when |sin theta| <= 1e-05.
    Quat log() const;

    /// The rotation matrix of this (unit) quaternion.
    void matrix(Matrix4x4& out) const;
    /// Rotates v in place.
    void transform(Vector3d& v) const;
    /// @{
    /// The components.
    void get(double& w, double& x, double& y, double& z) const {
        w = m_w, x = m_x, y = m_y, z = m_z;
    }
    double w() const { return m_w; }
    double x() const { return m_x; }
    double y() const { return m_y; }
    double z() const { return m_z; }
    /// @}

    /// Spherical interpolation along the shortest arc; t = 0 gives a.
    static Quat slerp(const Quat& a, const Quat& b, double t);
    /// Spherical cubic interpolation from b (t = 0) to c (t = 1); a and d are the outer
    /// neighbours that shape the tangents.
    static Quat squad(const Quat& a, const Quat& b, const Quat& c, const Quat& d, double t);

    /// What print() renders.
    enum PrintForm { Components = 0, AngleAxis = 1, EulerDegrees = 2 };
    /// Appends one line to `buffer`: "[w: .., x: .., y: .., z: ..]", "[angle: .., axis: <..>]"
    /// (degrees) or "[euler: <..>]" (degrees).
    void print(std::string& buffer, PrintForm form = Components) const;

protected:
    /// @{
    /// Componentwise sum, difference and scaling, for the interpolations.
    Quat operator+(const Quat& q) const {
        return {m_w + q.m_w, m_x + q.m_x, m_y + q.m_y, m_z + q.m_z};
    }
    Quat operator-(const Quat& q) const {
        return {m_w - q.m_w, m_x - q.m_x, m_y - q.m_y, m_z - q.m_z};
    }
    Quat operator*(double s) const { return {m_w * s, m_x * s, m_y * s, m_z * s}; }
    /// @}
    /// The interpolation behind slerp(): along the shorter arc, and exactly a when a == b.
    static Quat slerpMethod(const Quat& a, const Quat& b, double t);
    /// slerp(slerp(a, b, t), slerp(sa, sb, t), 2 t (1 - t)).
    static Quat squadMethod(const Quat& a, const Quat& b, const Quat& sa, const Quat& sb, double t);
    /// The inner control point of q between its neighbours `previous` and `next`.
    static Quat squadPt(const Quat& previous, const Quat& q, const Quat& next);

private:
    double m_w = 1;
    double m_x = 0;
    double m_y = 0;
    double m_z = 0;
};

} // namespace Math
