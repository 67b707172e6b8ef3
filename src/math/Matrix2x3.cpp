// Products, inverses, box transforms and printing of Matrix2x2 and Matrix2x3.
#include <PlumvaleBaseCore/math/Matrix2x3.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace Math {

namespace {

const char* nameOrDefault(const char* name) {
    return (name == nullptr || *name == '\0') ? "Matrix" : name;
}

} // namespace

Matrix2x2 Matrix2x2::operator*(const Matrix2x2& b) const {
    const double r[4] = {m[0] * b.m[0] + m[2] * b.m[1], m[1] * b.m[0] + m[3] * b.m[1],
                         m[0] * b.m[2] + m[2] * b.m[3], m[1] * b.m[2] + m[3] * b.m[3]};
    return Matrix2x2(r);
}

void Matrix2x2::rotateDegrees(double degrees) {
    rotateRadians(degrees * TUMaths::radiansPerDegree);
}

void Matrix2x2::rotateRadians(double radians) {
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    multiply(Matrix2x2(Vector2d(c, s), Vector2d(-s, c)));
}

void Matrix2x2::scale(double sx, double sy) {
    m[0] *= sx;
    m[1] *= sx;
    m[2] *= sy;
    m[3] *= sy;
}

Matrix2x2 Matrix2x2::getTranspose() const {
    const double r[4] = {m[0], m[2], m[1], m[3]};
    return Matrix2x2(r);
}

bool Matrix2x2::inverse() {
    const double det = determinant();
    if (det == 0) return false;
    const double r[4] = {m[3] / det, -m[1] / det, -m[2] / det, m[0] / det};
    *this = Matrix2x2(r);
    return true;
}

Matrix2x2 Matrix2x2::getInverse() const {
    Matrix2x2 r(*this);
    r.inverse();
    return r;
}

bool Matrix2x2::hasNan() const {
    return std::any_of(m, m + 4, [](double v) { return std::isnan(v); });
}

bool Matrix2x2::hasInfinity() const {
    return std::any_of(m, m + 4, [](double v) { return std::isinf(v); });
}

int Matrix2x2::compare(const Matrix2x2& b) const {
    for (int i = 0; i < 4; ++i) {
        if (m[i] < b.m[i]) return -1;
        if (b.m[i] < m[i]) return 1;
    }
    return 0;
}

Matrix2x3 Matrix2x3::CreateRotate(double radians) {
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {c, s, -s, c, 0, 0};
}

bool Matrix2x3::IsIdentity() const {
    return m[0] == 1 && m[1] == 0 && m[2] == 0 && m[3] == 1 && m[4] == 0 && m[5] == 0;
}

bool Matrix2x3::MatrixInverse(const Matrix2x3& src) {
    const double a = src.m[0], b = src.m[1], c = src.m[2], d = src.m[3];
    const double tx = src.m[4], ty = src.m[5];
    const double det = a * d - b * c;
    if (det == 0) return false;
    *this = Matrix2x3(d / det, -b / det, -c / det, a / det, (c * ty - tx * d) / det,
                      (b * tx - ty * a) / det);
    return true;
}

Matrix2x3 Matrix2x3::operator*(const Matrix2x3& b) const {
    return {m[0] * b.m[0] + m[2] * b.m[1],        m[1] * b.m[0] + m[3] * b.m[1],
            m[0] * b.m[2] + m[2] * b.m[3],        m[1] * b.m[2] + m[3] * b.m[3],
            m[0] * b.m[4] + m[2] * b.m[5] + m[4], m[1] * b.m[4] + m[3] * b.m[5] + m[5]};
}

Box2d Matrix2x3::Transform(const Box2d& box) const {
    Point2d corners[4];
    if (!box.asArray(corners)) return Box2d();
    Box2d result;
    for (const Point2d& corner : corners)
        result.AddClosed(Transform(corner));
    return result;
}

Box2di Matrix2x3::Transform(const Box2di& box) const {
    if (box.hasNullArea()) return Box2di();
    return Transform(Box2d(box)).toBox2di();
}

bool Matrix2x3::operator==(const Matrix2x3& b) const {
    return std::equal(m, m + 6, b.m);
}

bool Matrix2x3::operator<(const Matrix2x3& b) const {
    return std::memcmp(m, b.m, sizeof m) < 0;
}

void Matrix2x3::print(const char* name) const {
    std::printf("%s:\n%12.5f %12.5f %12.5f\n%12.5f %12.5f %12.5f\n", nameOrDefault(name), m[0],
                m[2], m[4], m[1], m[3], m[5]);
}

} // namespace Math
