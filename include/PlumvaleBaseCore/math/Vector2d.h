// 2D vectors and points of doubles, and the integer point and size of Box2di.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/math/MathFwd.h>
#include <PlumvaleBaseCore/numerics/TUMaths.h>

namespace Math {

/// Integer cell coordinate.
class Point2di {
public:
    /// @{
    /// The cell's column and row.
    int x = 0;
    int y = 0;
    /// @}

    /// @{
    /// The origin cell, or (x, y); equality compares both coordinates exactly.
    constexpr Point2di() = default;
    constexpr Point2di(int x_, int y_) : x(x_), y(y_) {}
    bool operator==(const Point2di& o) const { return x == o.x && y == o.y; }
    bool operator!=(const Point2di& o) const { return !(*this == o); }
    /// @}
};

/// Integer extent; Box2di keeps both values non-negative.
class Size2di {
public:
    /// @{
    /// Width and height in cells.
    int width = 0;
    int height = 0;
    /// @}

    /// @{
    /// An empty extent, or w by h; equality compares both values exactly.
    constexpr Size2di() = default;
    constexpr Size2di(int w, int h) : width(w), height(h) {}
    bool operator==(const Size2di& o) const { return width == o.width && height == o.height; }
    bool operator!=(const Size2di& o) const { return !(*this == o); }
    /// @}
};

/// 2D vector. Angles are in radians and counter-clockwise unless a name says degrees.
/// `*` between two vectors is the dot product; the determinant det(u, v) = u.x v.y - u.y v.x.
class PLUMVALE_EXPORT Vector2d {
public:
    /// @{
    /// The components; the zero vector by default.
    double x = 0;
    double y = 0;
    /// @}

    /// @{
    /// The zero vector, or (x, y).
    constexpr Vector2d() = default;
    constexpr Vector2d(double x_, double y_) : x(x_), y(y_) {}
    /// @}

    /// @{
    /// Component access. Both spellings of each setter are kept (callers use both); the
    /// Axis2d operator names a component; GetPoint() gives the point with the same coordinates.
    double GetX() const { return x; }
    double GetY() const { return y; }
    void SetX(double v) { x = v; }
    void setX(double v) { x = v; }
    void SetY(double v) { y = v; }
    void setY(double v) { y = v; }
    void SetXY(double x_, double y_) { x = x_, y = y_; }
    void setXY(double x_, double y_) { x = x_, y = y_; }
    double& operator()(Axis2d a) { return a == Axis2d::X ? x : y; }
    double operator()(Axis2d a) const { return a == Axis2d::X ? x : y; }
    Point2d GetPoint() const;
    /// @}

    /// @{
    /// Componentwise arithmetic in IEEE doubles: a division by 0 gives infinities or NaN,
    /// never an exception.
    Vector2d& operator+=(const Vector2d& v) {
        x += v.x, y += v.y;
        return *this;
    }
    Vector2d& operator-=(const Vector2d& v) {
        x -= v.x, y -= v.y;
        return *this;
    }
    Vector2d& operator*=(double s) {
        x *= s, y *= s;
        return *this;
    }
    Vector2d& operator/=(double s) {
        x /= s, y /= s;
        return *this;
    }
    Vector2d operator+(const Vector2d& v) const { return {x + v.x, y + v.y}; }
    Vector2d operator-(const Vector2d& v) const { return {x - v.x, y - v.y}; }
    Vector2d operator*(double s) const { return {x * s, y * s}; }
    Vector2d operator/(double s) const { return {x / s, y / s}; }
    Vector2d operator-() const { return {-x, -y}; }
    /// @}
    /// Dot product.
    double operator*(const Vector2d& v) const { return x * v.x + y * v.y; }
    /// The linear part of `m` applied to this vector (translation ignored).
    Vector2d operator*(const Matrix2x3& m) const;
    /// Applies the linear part of `m` in place.
    Vector2d& operator*=(const Matrix2x3& m) { return *this = *this * m; }

    /// @{
    /// Exact comparison of both components (no tolerance; NaN is unequal to everything).
    bool operator==(const Vector2d& v) const { return x == v.x && y == v.y; }
    bool operator!=(const Vector2d& v) const { return !(*this == v); }
    /// @}
    /// Orders by y, then x.
    bool operator<(const Vector2d& v) const { return y < v.y || (y == v.y && x < v.x); }

    /// @{
    /// Tests of the components: NaN, an infinity, either of them; the zero vector exactly.
    bool hasNan() const { return TUMaths::isNan(x) || TUMaths::isNan(y); }
    bool hasInfinity() const { return TUMaths::isInfinity(x) || TUMaths::isInfinity(y); }
    bool hasNanOrInfinity() const {
        return TUMaths::isNanOrInfinity(x) || TUMaths::isNanOrInfinity(y);
    }
    bool isZero() const { return x == 0 && y == 0; }
    bool IsDegenerate() const { return isZero(); }
    /// @}

    /// @{
    /// The Euclidean length and its square.
    double GetLength() const { return TUMaths::length(x, y); }
    double GetLengthSq() const { return x * x + y * y; }
    /// @}
    /// atan2(y, x); exactly 0 for the zero vector.
    double GetRadian() const;
    /// GetRadian() in degrees.
    double GetDegree() const;
    /// det(this, v) = x v.y - y v.x: positive when v turns left from this vector.
    double GetDeterminant(const Vector2d& v) const { return x * v.y - y * v.x; }
    /// 0 when either vector has length 0.
    double GetCos(const Vector2d& v) const;
    /// det/(|u| |v|); 0 when either vector has length 0.
    double GetSin(const Vector2d& v) const;
    /// @{
    /// The squared cosine (sine) carrying the sign of the dot product (determinant).
    double GetSignedCosSq(const Vector2d& v) const;
    double GetSignedSinSq(const Vector2d& v) const;
    /// @}
    /// @{
    /// det/dot and dot/det, with no guard against a zero divisor (an infinity or NaN).
    double GetTan(const Vector2d& v) const { return GetDeterminant(v) / (*this * v); }
    double GetCotan(const Vector2d& v) const { return (*this * v) / GetDeterminant(v); }
    /// @}
    /// (u.v)/|v|^2; 0 when v is the zero vector.
    double GetProjectedRatio(const Vector2d& v) const;

    /// @{
    /// Exact orientation tests from the sign of the determinant (and of the dot product for
    /// aligned, pointing the same way, and anti-aligned, pointing opposite ways). A zero vector
    /// is parallel to everything and aligned with everything.
    bool IsParallel(const Vector2d& v) const { return GetDeterminant(v) == 0; }
    bool IsAligned(const Vector2d& v) const { return IsParallel(v) && *this * v >= 0; }
    bool IsAntiAligned(const Vector2d& v) const { return IsParallel(v) && *this * v < 0; }
    bool IsLeftTurn(const Vector2d& v) const { return GetDeterminant(v) > 0; }
    bool IsLeftTurnOrParallel(const Vector2d& v) const { return GetDeterminant(v) >= 0; }
    bool IsRightTurn(const Vector2d& v) const { return GetDeterminant(v) < 0; }
    bool IsRightTurnOrParallel(const Vector2d& v) const { return GetDeterminant(v) <= 0; }
    /// @}

    /// (x, y) -> (-x, -y).
    void Negate() { x = -x, y = -y; }
    /// (x, y) -> (-y, x).
    void Rotate90() { *this = GetRotated90(); }
    /// (x, y) -> (y, -x).
    void Rotate270() { *this = GetRotated270(); }
    /// @{
    /// Rotates counter-clockwise by the angle, in radians or in degrees.
    void RotateRadian(double radians);
    void RotateDegree(double degrees);
    /// @}
    /// Keeps the length, sets the direction.
    void SetRadian(double radians);
    /// SetRadian() with the angle in degrees.
    void SetDegree(double degrees);
    /// Scales to length `l`; a zero vector is left unchanged.
    void SetLength(double l);
    /// A zero vector is left unchanged.
    void Normalize();
    /// Replaces this vector by its projection on v; (0, 0) when v is the zero vector.
    void Project(const Vector2d& v);
    /// Each coordinate to the nearest multiple of q (halves upward).
    void Round(double q);

    /// (0, 0) for the zero vector.
    Vector2d GetNormalizedVector() const;
    /// A copy rotated counter-clockwise by `radians`.
    Vector2d GetRotatedVector(double radians) const;
    /// @{
    /// Copies rotated a quarter turn counter-clockwise, (-y, x), or clockwise, (y, -x).
    Vector2d GetRotated90() const { return {-y, x}; }
    Vector2d GetRotated270() const { return {y, -x}; }
    /// @}
    /// The projection on v; (0, 0) when v is the zero vector.
    Vector2d GetProjectedVector(const Vector2d& v) const { return v * GetProjectedRatio(v); }

    /// @{
    /// Strict weak orders for sorted containers: by x then y, or by y then x (as operator<).
    struct VectorLessXY {
        bool operator()(const Vector2d& a, const Vector2d& b) const {
            return a.x < b.x || (a.x == b.x && a.y < b.y);
        }
    };
    struct VectorLessYX {
        bool operator()(const Vector2d& a, const Vector2d& b) const { return a < b; }
    };
    /// @}
    /// Orders directions by their atan2 angle in (-pi, pi]; the zero vector comes first.
    struct PLUMVALE_EXPORT VectorLessSignedAngle {
        bool operator()(const Vector2d& a, const Vector2d& b) const;
    };
    /// Orders directions by angle after folding the lower half-plane onto the upper one,
    /// so opposite vectors are equivalent; the zero vector comes first.
    struct PLUMVALE_EXPORT VectorLessUnsignedAngle {
        bool operator()(const Vector2d& a, const Vector2d& b) const;
    };
    /// True when b is met at or before c turning counter-clockwise from a (ends included).
    static bool VectorInBetweenAngle(const Vector2d& a, const Vector2d& b, const Vector2d& c);
};

/// s v, the same as v * s.
inline Vector2d operator*(double s, const Vector2d& v) {
    return v * s;
}

/// 2D point.
class PLUMVALE_EXPORT Point2d {
public:
    /// @{
    /// The coordinates; the origin by default.
    double x = 0;
    double y = 0;
    /// @}

    /// @{
    /// The origin, (x, y), or the corner of an integer cell.
    constexpr Point2d() = default;
    constexpr Point2d(double x_, double y_) : x(x_), y(y_) {}
    explicit constexpr Point2d(const Point2di& p) : x(p.x), y(p.y) {}
    /// @}

    /// @{
    /// Coordinate access. Both spellings of each setter are kept (callers use both); the Axis2d
    /// operator names a coordinate; GetVector() gives the vector from the origin.
    double GetX() const { return x; }
    double GetY() const { return y; }
    void SetX(double v) { x = v; }
    void setX(double v) { x = v; }
    void SetY(double v) { y = v; }
    void setY(double v) { y = v; }
    void SetXY(double x_, double y_) { x = x_, y = y_; }
    void setXY(double x_, double y_) { x = x_, y = y_; }
    double& operator()(Axis2d a) { return a == Axis2d::X ? x : y; }
    double operator()(Axis2d a) const { return a == Axis2d::X ? x : y; }
    Vector2d GetVector() const { return {x, y}; }
    /// @}

    /// @{
    /// A point moved by a vector, and the vector between two points (this minus p).
    Point2d& operator+=(const Vector2d& v) {
        x += v.x, y += v.y;
        return *this;
    }
    Point2d& operator-=(const Vector2d& v) {
        x -= v.x, y -= v.y;
        return *this;
    }
    Point2d operator+(const Vector2d& v) const { return {x + v.x, y + v.y}; }
    Point2d operator-(const Vector2d& v) const { return {x - v.x, y - v.y}; }
    Vector2d operator-(const Point2d& p) const { return {x - p.x, y - p.y}; }
    /// @}
    /// The affine map `m` applied to this point.
    Point2d operator*(const Matrix2x3& m) const;
    /// Applies the affine map `m` in place.
    Point2d& operator*=(const Matrix2x3& m) { return *this = *this * m; }

    /// @{
    /// Exact comparison of both coordinates (no tolerance; NaN is unequal to everything).
    bool operator==(const Point2d& p) const { return x == p.x && y == p.y; }
    bool operator!=(const Point2d& p) const { return !(*this == p); }
    /// @}
    /// Orders by x, then y.
    bool operator<(const Point2d& p) const { return x < p.x || (x == p.x && y < p.y); }

    /// @{
    /// Tests of the coordinates: NaN, an infinity, either of them; the origin exactly.
    bool hasNan() const { return TUMaths::isNan(x) || TUMaths::isNan(y); }
    bool hasInfinity() const { return TUMaths::isInfinity(x) || TUMaths::isInfinity(y); }
    bool hasNanOrInfinity() const {
        return TUMaths::isNanOrInfinity(x) || TUMaths::isNanOrInfinity(y);
    }
    bool isOrigin() const { return x == 0 && y == 0; }
    bool IsDegenerate() const { return isOrigin(); }
    /// @}

    /// @{
    /// Distance (and its square) to p, or to the origin without an argument.
    double GetDistance(const Point2d& p) const { return (*this - p).GetLength(); }
    double GetDistanceSq(const Point2d& p) const { return (*this - p).GetLengthSq(); }
    double GetDistance() const { return TUMaths::length(x, y); }
    double GetDistanceSq() const { return x * x + y * y; }
    /// @}
    /// Each coordinate to the nearest multiple of q (halves upward).
    void Round(double q);
    /// Each coordinate to a multiple of q, upward where the direction's component is
    /// positive and downward otherwise.
    void Round(const Vector2d& direction, double q);

    /// a + t (b - a).
    static Point2d Interpolate(double t, const Point2d& a, const Point2d& b) {
        return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
    }
    /// Barycentric: s a + t b + (1 - s - t) c.
    static Point2d Interpolate(const Point2d& a, double s, const Point2d& b, double t,
                               const Point2d& c) {
        const double r = 1 - s - t;
        return {s * a.x + t * b.x + r * c.x, s * a.y + t * b.y + r * c.y};
    }

    /// Where segment ab meets segment cd, all four ends closed. On true `meeting` is the
    /// meeting point; for collinear segments that overlap it is the end of the overlap nearest
    /// a. Degenerate segments (a = b or c = d) never meet. The tests are exact: no tolerance.
    static bool GetClosedIntersection(const Point2d& a, const Point2d& b, const Point2d& c,
                                      const Point2d& d, Point2d& meeting);
    /// As GetClosedIntersection, but false for parallel and collinear segments.
    static bool GetNonColinearClosedIntersection(const Point2d& a, const Point2d& b,
                                                 const Point2d& c, const Point2d& d,
                                                 Point2d& meeting);
    /// As GetNonColinearClosedIntersection with all four ends open: touching an end of either
    /// segment is not meeting it.
    static bool GetNonColinearOpenIntersection(const Point2d& a, const Point2d& b, const Point2d& c,
                                               const Point2d& d, Point2d& meeting);

    /// @{
    /// Strict weak orders for sorted containers: by x then y (as operator<), by y then x, or by
    /// x alone (points with equal x are equivalent).
    struct PointLessXY {
        bool operator()(const Point2d& a, const Point2d& b) const { return a < b; }
    };
    struct PointLessYX {
        bool operator()(const Point2d& a, const Point2d& b) const {
            return a.y < b.y || (a.y == b.y && a.x < b.x);
        }
    };
    struct PointLessX {
        bool operator()(const Point2d& a, const Point2d& b) const { return a.x < b.x; }
    };
    /// @}
};

inline Point2d Vector2d::GetPoint() const {
    return {x, y};
}

} // namespace Math
