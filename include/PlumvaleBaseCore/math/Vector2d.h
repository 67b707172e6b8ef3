// 2D vectors and points of doubles, and the integer point and size of Box2di.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/math/MathFwd.h>
#include <PlumvaleBaseCore/numerics/TUMaths.h>

namespace Math {

/// Integer cell coordinate.
class Point2di {
public:
    int x = 0;
    int y = 0;

    constexpr Point2di() = default;
    constexpr Point2di(int x_, int y_) : x(x_), y(y_) {}
    bool operator==(const Point2di& o) const { return x == o.x && y == o.y; }
    bool operator!=(const Point2di& o) const { return !(*this == o); }
};

/// Integer extent; Box2di keeps both values non-negative.
class Size2di {
public:
    int width = 0;
    int height = 0;

    constexpr Size2di() = default;
    constexpr Size2di(int w, int h) : width(w), height(h) {}
    bool operator==(const Size2di& o) const { return width == o.width && height == o.height; }
    bool operator!=(const Size2di& o) const { return !(*this == o); }
};

/// 2D vector. Angles are in radians and counter-clockwise unless a name says degrees.
/// `*` between two vectors is the dot product; the determinant det(u, v) = u.x v.y - u.y v.x.
class PLUMVALE_EXPORT Vector2d {
public:
    double x = 0;
    double y = 0;

    constexpr Vector2d() = default;
    constexpr Vector2d(double x_, double y_) : x(x_), y(y_) {}

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
    /// Dot product.
    double operator*(const Vector2d& v) const { return x * v.x + y * v.y; }
    /// The linear part of `m` applied to this vector (translation ignored).
    Vector2d operator*(const Matrix2x3& m) const;
    Vector2d& operator*=(const Matrix2x3& m) { return *this = *this * m; }

    bool operator==(const Vector2d& v) const { return x == v.x && y == v.y; }
    bool operator!=(const Vector2d& v) const { return !(*this == v); }
    /// Orders by y, then x.
    bool operator<(const Vector2d& v) const { return y < v.y || (y == v.y && x < v.x); }

    bool hasNan() const { return TUMaths::isNan(x) || TUMaths::isNan(y); }
    bool hasInfinity() const { return TUMaths::isInfinity(x) || TUMaths::isInfinity(y); }
    bool hasNanOrInfinity() const {
        return TUMaths::isNanOrInfinity(x) || TUMaths::isNanOrInfinity(y);
    }
    bool isZero() const { return x == 0 && y == 0; }
    bool IsDegenerate() const { return isZero(); }

    double GetLength() const { return TUMaths::length(x, y); }
    double GetLengthSq() const { return x * x + y * y; }
    /// atan2(y, x); exactly 0 for the zero vector.
    double GetRadian() const;
    /// GetRadian() in degrees.
    double GetDegree() const;
    double GetDeterminant(const Vector2d& v) const { return x * v.y - y * v.x; }
    /// 0 when either vector has length 0.
    double GetCos(const Vector2d& v) const;
    double GetSin(const Vector2d& v) const;
    /// The squared cosine (sine) carrying the sign of the dot product (determinant).
    double GetSignedCosSq(const Vector2d& v) const;
    double GetSignedSinSq(const Vector2d& v) const;
    /// det/dot and dot/det, with no guard against a zero divisor.
    double GetTan(const Vector2d& v) const { return GetDeterminant(v) / (*this * v); }
    double GetCotan(const Vector2d& v) const { return (*this * v) / GetDeterminant(v); }
    /// (u.v)/|v|^2; 0 when v is the zero vector.
    double GetProjectedRatio(const Vector2d& v) const;

    bool IsParallel(const Vector2d& v) const { return GetDeterminant(v) == 0; }
    bool IsAligned(const Vector2d& v) const { return IsParallel(v) && *this * v >= 0; }
    bool IsAntiAligned(const Vector2d& v) const { return IsParallel(v) && *this * v < 0; }
    bool IsLeftTurn(const Vector2d& v) const { return GetDeterminant(v) > 0; }
    bool IsLeftTurnOrParallel(const Vector2d& v) const { return GetDeterminant(v) >= 0; }
    bool IsRightTurn(const Vector2d& v) const { return GetDeterminant(v) < 0; }
    bool IsRightTurnOrParallel(const Vector2d& v) const { return GetDeterminant(v) <= 0; }

    void Negate() { x = -x, y = -y; }
    /// (x, y) -> (-y, x).
    void Rotate90() { *this = GetRotated90(); }
    /// (x, y) -> (y, -x).
    void Rotate270() { *this = GetRotated270(); }
    void RotateRadian(double radians);
    void RotateDegree(double degrees);
    /// Keeps the length, sets the direction.
    void SetRadian(double radians);
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
    Vector2d GetRotatedVector(double radians) const;
    Vector2d GetRotated90() const { return {-y, x}; }
    Vector2d GetRotated270() const { return {y, -x}; }
    Vector2d GetProjectedVector(const Vector2d& v) const { return v * GetProjectedRatio(v); }

    struct VectorLessXY {
        bool operator()(const Vector2d& a, const Vector2d& b) const {
            return a.x < b.x || (a.x == b.x && a.y < b.y);
        }
    };
    struct VectorLessYX {
        bool operator()(const Vector2d& a, const Vector2d& b) const { return a < b; }
    };
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

inline Vector2d operator*(double s, const Vector2d& v) {
    return v * s;
}

/// 2D point.
class PLUMVALE_EXPORT Point2d {
public:
    double x = 0;
    double y = 0;

    constexpr Point2d() = default;
    constexpr Point2d(double x_, double y_) : x(x_), y(y_) {}
    explicit constexpr Point2d(const Point2di& p) : x(p.x), y(p.y) {}

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
    /// The affine map `m` applied to this point.
    Point2d operator*(const Matrix2x3& m) const;
    Point2d& operator*=(const Matrix2x3& m) { return *this = *this * m; }

    bool operator==(const Point2d& p) const { return x == p.x && y == p.y; }
    bool operator!=(const Point2d& p) const { return !(*this == p); }
    /// Orders by x, then y.
    bool operator<(const Point2d& p) const { return x < p.x || (x == p.x && y < p.y); }

    bool hasNan() const { return TUMaths::isNan(x) || TUMaths::isNan(y); }
    bool hasInfinity() const { return TUMaths::isInfinity(x) || TUMaths::isInfinity(y); }
    bool hasNanOrInfinity() const {
        return TUMaths::isNanOrInfinity(x) || TUMaths::isNanOrInfinity(y);
    }
    bool isOrigin() const { return x == 0 && y == 0; }
    bool IsDegenerate() const { return isOrigin(); }

    double GetDistance(const Point2d& p) const { return (*this - p).GetLength(); }
    double GetDistanceSq(const Point2d& p) const { return (*this - p).GetLengthSq(); }
    double GetDistance() const { return TUMaths::length(x, y); }
    double GetDistanceSq() const { return x * x + y * y; }
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
};

inline Point2d Vector2d::GetPoint() const {
    return {x, y};
}

} // namespace Math
