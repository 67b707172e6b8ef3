// Measures, rotations, rounding and angular orderings of the vector and point types.
#include <PlumvaleBaseCore/math/Vector3d.h>

#include <cmath>
#include <type_traits>

namespace Math {

// asArray() and the axis accessors rely on the coordinates being laid out contiguously.
static_assert(std::is_standard_layout_v<Vector3d> && sizeof(Vector3d) == 3 * sizeof(double));
static_assert(std::is_standard_layout_v<Point3d> && sizeof(Point3d) == 3 * sizeof(double));
static_assert(std::is_standard_layout_v<Point4d> && sizeof(Point4d) == 4 * sizeof(double));
static_assert(std::is_standard_layout_v<Angle3d> && sizeof(Angle3d) == 3 * sizeof(double));

namespace {

double quantumRound(double v, double q) {
    return std::floor(v / q + 0.5) * q;
}

// Angular class of a direction for the signed ordering: the zero vector, then the lower
// half-plane (negative atan2), then [0, pi), then the negative x axis (atan2 = pi).
int signedHalf(const Vector2d& v) {
    if (v.isZero()) return 0;
    if (v.y < 0) return 1;
    if (v.y > 0 || v.x > 0) return 2;
    return 3;
}

// Position of u turning counter-clockwise from the reference r: aligned with r, left of r,
// opposite to r, right of r.
int turnClass(const Vector2d& r, const Vector2d& u) {
    const double det = r.GetDeterminant(u);
    if (det > 0) return 1;
    if (det < 0) return 3;
    return r * u >= 0 ? 0 : 2;
}

} // namespace

double Vector2d::GetRadian() const {
    return isZero() ? 0.0 : std::atan2(y, x);
}

double Vector2d::GetDegree() const {
    return isZero() ? 0.0 : std::atan2(y, x) * TUMaths::degreesPerRadian;
}

double Vector2d::GetCos(const Vector2d& v) const {
    const double lengths = GetLengthSq() * v.GetLengthSq();
    return lengths <= 0 ? 0.0 : (*this * v) / std::sqrt(lengths);
}

double Vector2d::GetSin(const Vector2d& v) const {
    const double lengths = GetLengthSq() * v.GetLengthSq();
    return lengths <= 0 ? 0.0 : GetDeterminant(v) / std::sqrt(lengths);
}

double Vector2d::GetSignedCosSq(const Vector2d& v) const {
    const double lengths = GetLengthSq() * v.GetLengthSq();
    if (lengths <= 0) return 0.0;
    const double dot = *this * v;
    const double r = dot * dot / lengths;
    return dot < 0 ? -r : r;
}

double Vector2d::GetSignedSinSq(const Vector2d& v) const {
    const double lengths = GetLengthSq() * v.GetLengthSq();
    if (lengths <= 0) return 0.0;
    const double det = GetDeterminant(v);
    const double r = det * det / lengths;
    return det < 0 ? -r : r;
}

double Vector2d::GetProjectedRatio(const Vector2d& v) const {
    const double lengthSq = v.GetLengthSq();
    return lengthSq <= 0 ? 0.0 : (*this * v) / lengthSq;
}

void Vector2d::RotateRadian(double radians) {
    *this = GetRotatedVector(radians);
}

void Vector2d::RotateDegree(double degrees) {
    RotateRadian(degrees * TUMaths::radiansPerDegree);
}

Vector2d Vector2d::GetRotatedVector(double radians) const {
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {x * c - y * s, x * s + y * c};
}

void Vector2d::SetRadian(double radians) {
    const double l = GetLength();
    x = l * std::cos(radians);
    y = l * std::sin(radians);
}

void Vector2d::SetDegree(double degrees) {
    SetRadian(degrees * TUMaths::radiansPerDegree);
}

void Vector2d::SetLength(double l) {
    const double current = GetLength();
    if (current != 0) *this *= l / current;
}

void Vector2d::Normalize() {
    SetLength(1.0);
}

Vector2d Vector2d::GetNormalizedVector() const {
    const double l = GetLength();
    return l == 0 ? Vector2d() : *this / l;
}

void Vector2d::Project(const Vector2d& v) {
    const double lengthSq = v.GetLengthSq();
    *this = lengthSq == 0 ? Vector2d() : v * ((*this * v) / lengthSq);
}

void Vector2d::Round(double q) {
    x = quantumRound(x, q);
    y = quantumRound(y, q);
}

bool Vector2d::VectorLessSignedAngle::operator()(const Vector2d& a, const Vector2d& b) const {
    const int ha = signedHalf(a);
    const int hb = signedHalf(b);
    if (ha != hb) return ha < hb;
    return a.GetDeterminant(b) > 0;
}

bool Vector2d::VectorLessUnsignedAngle::operator()(const Vector2d& a, const Vector2d& b) const {
    // Fold onto y > 0 or the positive x axis; the zero vector stays first.
    auto fold = [](Vector2d v) { return (v.y < 0 || (v.y == 0 && v.x < 0)) ? -v : v; };
    if (a.isZero() || b.isZero()) return a.isZero() && !b.isZero();
    return fold(a).GetDeterminant(fold(b)) > 0;
}

bool Vector2d::VectorInBetweenAngle(const Vector2d& a, const Vector2d& b, const Vector2d& c) {
    const int cb = turnClass(a, b);
    const int cc = turnClass(a, c);
    if (cb != cc) return cb < cc;
    // Same class: both strictly inside one half-turn (or both on the same ray).
    return b.GetDeterminant(c) >= 0;
}

void Point2d::Round(double q) {
    x = quantumRound(x, q);
    y = quantumRound(y, q);
}

void Point2d::Round(const Vector2d& direction, double q) {
    x = direction.x > 0 ? std::ceil(x / q) * q : std::floor(x / q) * q;
    y = direction.y > 0 ? std::ceil(y / q) * q : std::floor(y / q) * q;
}

double Vector3d::getCos(const Vector3d& v) const {
    const double lengths = lengthSq() * v.lengthSq();
    return lengths <= 0 ? 0.0 : (*this * v) / std::sqrt(lengths);
}

double Vector3d::getSin(const Vector3d& v) const {
    const double lengths = lengthSq() * v.lengthSq();
    return lengths <= 0 ? 0.0 : std::sqrt((*this ^ v).lengthSq() / lengths);
}

double Vector3d::getProjectionRatio(const Vector3d& v) const {
    const double l = v.lengthSq();
    return l <= 0 ? 0.0 : (*this * v) / l;
}

void Vector3d::round(double q) {
    x = quantumRound(x, q);
    y = quantumRound(y, q);
    z = quantumRound(z, q);
}

void Point3d::round(double q) {
    x = quantumRound(x, q);
    y = quantumRound(y, q);
    z = quantumRound(z, q);
}

Point2d Point4d::toPoint2d() const {
    if (std::fabs(w) < TUMaths::epsilon()) return {x, y};
    return {x / w, y / w};
}

Point3d Point4d::toPoint3d() const {
    if (std::fabs(w) < TUMaths::epsilon()) return {x, y, z};
    return {x / w, y / w, z / w};
}

void Point4d::normalize() {
    if (std::fabs(w) < TUMaths::epsilon()) return;
    x /= w;
    y /= w;
    z /= w;
    w = 1;
}

} // namespace Math
