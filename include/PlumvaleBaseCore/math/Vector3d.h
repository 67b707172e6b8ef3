// 3D vectors and points, the homogeneous Point4d and the Euler-style Angle3d.
#pragma once

#include <PlumvaleBaseCore/math/Vector2d.h>

#include <cmath>

namespace Math {

namespace detail {
// Coordinate checks shared by the 3D and 4D types, over their contiguous coordinates.
/// @{
/// Whether any of the `n` coordinates is NaN, or an infinity.
inline bool anyNan(const double* v, int n) {
    for (int i = 0; i < n; ++i)
        if (TUMaths::isNan(v[i])) return true;
    return false;
}
inline bool anyInfinity(const double* v, int n) {
    for (int i = 0; i < n; ++i)
        if (TUMaths::isInfinity(v[i])) return true;
    return false;
}
/// @}
} // namespace detail

/// 3D vector; `*` between two vectors is the dot product and `^` the cross product.
class PLUMVALE_EXPORT Vector3d {
public:
    /// @{
    /// The components; the zero vector by default.
    double x = 0;
    double y = 0;
    double z = 0;
    /// @}

    /// @{
    /// The zero vector, (x, y, z), or the vector from the origin to p.
    constexpr Vector3d() = default;
    constexpr Vector3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    explicit Vector3d(const Point3d& p);
    /// @}
    /// to - from.
    Vector3d(const Point3d& from, const Point3d& to);
    /// z = 0.
    explicit constexpr Vector3d(const Vector2d& v) : x(v.x), y(v.y), z(0) {}

    /// @{
    /// Component setters.
    void setX(double v) { x = v; }
    void setY(double v) { y = v; }
    void setZ(double v) { z = v; }
    void setXYZ(double x_, double y_, double z_) { x = x_, y = y_, z = z_; }
    /// @}
    /// @{
    /// The component named by `a`.
    double& operator()(Axis3d a) { return asArray()[static_cast<int>(a)]; }
    double operator()(Axis3d a) const { return asArray()[static_cast<int>(a)]; }
    /// @}
    /// @{
    /// x, y, z contiguous.
    double* asArray() { return &x; }
    const double* asArray() const { return &x; }
    /// @}
    /// (x, y): z is dropped.
    Vector2d toVector2d() const { return {x, y}; }

    /// @{
    /// Componentwise arithmetic in IEEE doubles: a division by 0 gives infinities or NaN,
    /// never an exception.
    Vector3d& operator+=(const Vector3d& v) {
        x += v.x, y += v.y, z += v.z;
        return *this;
    }
    Vector3d& operator-=(const Vector3d& v) {
        x -= v.x, y -= v.y, z -= v.z;
        return *this;
    }
    Vector3d& operator*=(double s) {
        x *= s, y *= s, z *= s;
        return *this;
    }
    Vector3d& operator/=(double s) {
        x /= s, y /= s, z /= s;
        return *this;
    }
    Vector3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    Vector3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    Vector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    Vector3d operator/(double s) const { return {x / s, y / s, z / s}; }
    Vector3d operator-() const { return {-x, -y, -z}; }
    /// @}
    /// @{
    /// Dot product (`*`, getDotProduct) and right-handed cross product (`^`,
    /// getCrossProduct): x ^ y = z.
    double operator*(const Vector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    Vector3d operator^(const Vector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    Vector3d getCrossProduct(const Vector3d& v) const { return *this ^ v; }
    double getDotProduct(const Vector3d& v) const { return *this * v; }
    /// @}

    /// @{
    /// Exact comparison of all components (no tolerance; NaN is unequal to everything).
    bool operator==(const Vector3d& v) const { return x == v.x && y == v.y && z == v.z; }
    bool operator!=(const Vector3d& v) const { return !(*this == v); }
    /// @}

    /// @{
    /// Tests of the components: NaN, an infinity, either of them; the zero vector exactly.
    bool hasNan() const { return detail::anyNan(asArray(), 3); }
    bool hasInfinity() const { return detail::anyInfinity(asArray(), 3); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    bool isZero() const { return x == 0 && y == 0 && z == 0; }
    /// @}

    /// @{
    /// The Euclidean length and its square.
    double length() const { return std::sqrt(lengthSq()); }
    double lengthSq() const { return x * x + y * y + z * z; }
    /// @}
    /// 0 when either vector has length 0.
    double getCos(const Vector3d& v) const;
    /// |u ^ v| / (|u| |v|), in [0, 1]; 0 when either vector has length 0.
    double getSin(const Vector3d& v) const;
    /// (u.v)/|v|^2; 0 when v is the zero vector.
    double getProjectionRatio(const Vector3d& v) const;
    /// Replaces this vector by its projection on v.
    void project(const Vector3d& v) { *this = getProjection(v); }
    /// The projection on v; (0, 0, 0) when v is the zero vector.
    Vector3d getProjection(const Vector3d& v) const { return v * getProjectionRatio(v); }
    /// Multiplies by 1/length with no zero guard: the zero vector becomes NaN.
    void normalize() { *this *= 1.0 / length(); }
    /// A normalised copy, with normalize()'s rule: the zero vector gives NaN.
    Vector3d getNormalized() const { return *this * (1.0 / length()); }
    /// (x, y, z) -> (-x, -y, -z).
    void negate() { x = -x, y = -y, z = -z; }
    /// Each coordinate to the nearest multiple of q (halves upward).
    void round(double q);
};

/// s v, the same as v * s.
inline Vector3d operator*(double s, const Vector3d& v) {
    return v * s;
}

/// 3D point.
class PLUMVALE_EXPORT Point3d {
public:
    /// @{
    /// The coordinates; the origin by default.
    double x = 0;
    double y = 0;
    double z = 0;
    /// @}

    /// @{
    /// The origin, (x, y, z), the end of a vector from the origin, or a 2D point at height z.
    constexpr Point3d() = default;
    constexpr Point3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    explicit constexpr Point3d(const Vector3d& v) : x(v.x), y(v.y), z(v.z) {}
    constexpr Point3d(const Point2d& p, double z_) : x(p.x), y(p.y), z(z_) {}
    /// @}

    /// @{
    /// Coordinate setters.
    void setX(double v) { x = v; }
    void setY(double v) { y = v; }
    void setZ(double v) { z = v; }
    void setXYZ(double x_, double y_, double z_) { x = x_, y = y_, z = z_; }
    /// @}
    /// @{
    /// The coordinate named by `a`; asArray() gives x, y, z contiguous.
    double& operator()(Axis3d a) { return asArray()[static_cast<int>(a)]; }
    double operator()(Axis3d a) const { return asArray()[static_cast<int>(a)]; }
    double* asArray() { return &x; }
    const double* asArray() const { return &x; }
    /// @}
    /// (x, y): z is dropped.
    Point2d toPoint2d() const { return {x, y}; }

    /// @{
    /// A point moved by a vector, and the vector between two points (this minus p).
    Point3d& operator+=(const Vector3d& v) {
        x += v.x, y += v.y, z += v.z;
        return *this;
    }
    Point3d& operator-=(const Vector3d& v) {
        x -= v.x, y -= v.y, z -= v.z;
        return *this;
    }
    Point3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    Point3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    Vector3d operator-(const Point3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    /// @}

    /// @{
    /// Exact comparison of all coordinates (no tolerance; NaN is unequal to everything).
    bool operator==(const Point3d& p) const { return x == p.x && y == p.y && z == p.z; }
    bool operator!=(const Point3d& p) const { return !(*this == p); }
    /// @}
    /// Orders by x, then y, then z.
    bool operator<(const Point3d& p) const {
        return x < p.x || (x == p.x && (y < p.y || (y == p.y && z < p.z)));
    }

    /// @{
    /// Tests of the coordinates: NaN, an infinity, either of them; the origin exactly.
    bool hasNan() const { return detail::anyNan(asArray(), 3); }
    bool hasInfinity() const { return detail::anyInfinity(asArray(), 3); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    bool isOrigin() const { return x == 0 && y == 0 && z == 0; }
    /// @}

    /// @{
    /// Distance to p and its square.
    double distance(const Point3d& p) const { return (*this - p).length(); }
    double distanceSq(const Point3d& p) const { return (*this - p).lengthSq(); }
    /// @}
    /// Each coordinate to the nearest multiple of q (halves upward).
    void round(double q);
    /// a + t (b - a).
    static Point3d interpolate(double t, const Point3d& a, const Point3d& b) {
        return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
    }
};

inline Vector3d::Vector3d(const Point3d& p) : x(p.x), y(p.y), z(p.z) {}
inline Vector3d::Vector3d(const Point3d& from, const Point3d& to)
    : x(to.x - from.x), y(to.y - from.y), z(to.z - from.z) {}

/// Homogeneous point (x, y, z, w). The canonical view volume is -w <= x, y, z <= w.
/// A weight with |w| < TUMaths::epsilon() marks a direction: it is never divided by.
class PLUMVALE_EXPORT Point4d {
public:
    /// @{
    /// The homogeneous coordinates.
    double x = 0;
    double y = 0;
    double z = 0;
    double w = 0;
    /// @}

    /// All four coordinates 0, w included.
    constexpr Point4d() = default;
    /// (x, y, z, w) as given.
    constexpr Point4d(double x_, double y_, double z_, double w_) : x(x_), y(y_), z(z_), w(w_) {}
    /// z = 0, w = 1.
    explicit constexpr Point4d(const Point2d& p) : x(p.x), y(p.y), z(0), w(1) {}
    /// w = 1.
    explicit constexpr Point4d(const Point3d& p) : x(p.x), y(p.y), z(p.z), w(1) {}
    /// w = 0.
    explicit constexpr Point4d(const Vector3d& v) : x(v.x), y(v.y), z(v.z), w(0) {}

    /// @{
    /// The coordinate named by `a`; asArray() gives x, y, z, w contiguous.
    double& operator()(Axis4d a) { return asArray()[static_cast<int>(a)]; }
    double operator()(Axis4d a) const { return asArray()[static_cast<int>(a)]; }
    double* asArray() { return &x; }
    const double* asArray() const { return &x; }
    /// @}

    /// x, y divided by w when |w| >= epsilon, undivided otherwise.
    Point2d toPoint2d() const;
    /// x, y, z divided by w when |w| >= epsilon, undivided otherwise.
    Point3d toPoint3d() const;
    /// The coordinates as they are, never divided.
    Vector2d toVector2d() const { return {x, y}; }
    /// x, y, z as they are, never divided.
    Vector3d toVector3d() const { return {x, y, z}; }

    /// @{
    /// Exact comparison of all four coordinates.
    bool operator==(const Point4d& p) const { return x == p.x && y == p.y && z == p.z && w == p.w; }
    bool operator!=(const Point4d& p) const { return !(*this == p); }
    /// @}

    /// @{
    /// Tests of the coordinates: NaN, an infinity, either of them; all four exactly 0.
    bool hasNan() const { return detail::anyNan(asArray(), 4); }
    bool hasInfinity() const { return detail::anyInfinity(asArray(), 4); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    bool isOrigin() const { return x == 0 && y == 0 && z == 0 && w == 0; }
    /// @}

    /// Divides x, y, z by w and sets w = 1 when |w| >= epsilon; otherwise does nothing.
    void normalize();
    /// Whether |w| < epsilon: a direction, which is never divided by its weight.
    bool isVector() const { return std::fabs(w) < TUMaths::epsilon(); }
    /// -z <= w.
    bool isInFront() const { return -z <= w; }
    /// x, y or z outside [-w, w]; a point on the boundary is not clipped.
    bool isClipped() const {
        return isClipped(Axis4d::X) || isClipped(Axis4d::Y) || isClipped(Axis4d::Z);
    }
    /// The coordinate `axis` outside [-w, w] (the boundary is inside).
    bool isClipped(Axis4d axis) const {
        const double v = (*this)(axis);
        return v > w || -v > w;
    }
    /// All four coordinates linearly.
    static Point4d interpolate(double t, const Point4d& a, const Point4d& b) {
        return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z),
                a.w + t * (b.w - a.w)};
    }
};

/// Rotation angles about x, y and z (units chosen by the caller).
class PLUMVALE_EXPORT Angle3d {
public:
    /// @{
    /// The angles about x, y and z.
    double x = 0;
    double y = 0;
    double z = 0;
    /// @}

    /// @{
    /// No rotation, or the three angles given.
    constexpr Angle3d() = default;
    constexpr Angle3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    /// @}

    /// @{
    /// Angle setters; the Axis3d operator names the angle about that axis.
    void setX(double v) { x = v; }
    void setY(double v) { y = v; }
    void setZ(double v) { z = v; }
    void setXYZ(double x_, double y_, double z_) { x = x_, y = y_, z = z_; }
    double& operator()(Axis3d a) { return (&x)[static_cast<int>(a)]; }
    double operator()(Axis3d a) const { return (&x)[static_cast<int>(a)]; }
    /// @}
    /// Whether all three angles are exactly 0.
    bool isIdentity() const { return x == 0 && y == 0 && z == 0; }
    /// @{
    /// Tests of the three angles: NaN, an infinity, either of them.
    bool hasNan() const { return detail::anyNan(&x, 3); }
    bool hasInfinity() const { return detail::anyInfinity(&x, 3); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    /// @}
    /// The three angles as a vector.
    Vector3d toVector3d() const { return {x, y, z}; }
    /// @{
    /// Exact comparison of the three angles (no wrapping: 0 and 2 pi differ).
    bool operator==(const Angle3d& a) const { return x == a.x && y == a.y && z == a.z; }
    bool operator!=(const Angle3d& a) const { return !(*this == a); }
    /// @}
    /// Each angle linearly, with no wrapping.
    static Angle3d interpolate(double t, const Angle3d& a, const Angle3d& b) {
        return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
    }
};

} // namespace Math
