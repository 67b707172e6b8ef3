// Matrix4x4 construction, products, point transforms, queries and printing.
#include <PlumvaleBaseCore/math/Matrix4x4.h>
#include <PlumvaleBaseCore/math/Quat.h>
#include <PlumvaleBaseCore/math/Segment3d.h>
#include <PlumvaleBaseCore/math/TexturedPoint.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace Math {

const double Matrix4x4::_identityPattern[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

namespace {

const char* nameOrDefault(const char* name) {
    return (name == nullptr || *name == '\0') ? "Matrix" : name;
}

} // namespace

Matrix4x4::Matrix4x4() : m_identity(true) {
    std::memcpy(m, _identityPattern, sizeof m);
}

Matrix4x4::Matrix4x4(const Matrix2x3& a) : Matrix4x4() {
    const double* v = a.AsArray();
    m[0] = v[0], m[1] = v[1], m[4] = v[2], m[5] = v[3], m[12] = v[4], m[13] = v[5];
    m_identity = false;
}

Matrix4x4::Matrix4x4(const double values[16]) : m_identity(false) {
    std::memcpy(m, values, sizeof m);
}

Matrix4x4::Matrix4x4(const float values[16]) : m_identity(false) {
    std::copy(values, values + 16, m);
}

Matrix4x4::Matrix4x4(double m00, double m01, double m02, double m03, double m10, double m11,
                     double m12, double m13, double m20, double m21, double m22, double m23,
                     double m30, double m31, double m32, double m33)
    : m_identity(false) {
    setMatrix(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33);
}

Matrix4x4::Matrix4x4(const Vector3d& normal, const Point3d& point) : Matrix4x4() {
    Quat(Vector3d(0, 0, 1), normal).matrix(*this);
    m[12] = point.x, m[13] = point.y, m[14] = point.z;
    m_identity = false;
}

Matrix4x4::Matrix4x4(const Vector3d& xAxis, const Vector3d& yAxis, const Vector3d& zAxis,
                     const Point3d& origin)
    : m{xAxis.x, xAxis.y, xAxis.z, 0, yAxis.x,  yAxis.y,  yAxis.z,  0,
        zAxis.x, zAxis.y, zAxis.z, 0, origin.x, origin.y, origin.z, 1},
      m_identity(false) {}

void Matrix4x4::setMatrix(double m00, double m01, double m02, double m03, double m10, double m11,
                          double m12, double m13, double m20, double m21, double m22, double m23,
                          double m30, double m31, double m32, double m33) {
    const double v[16] = {m00, m10, m20, m30, m01, m11, m21, m31,
                          m02, m12, m22, m32, m03, m13, m23, m33};
    std::memcpy(m, v, sizeof m);
    m_identity = false;
}

void Matrix4x4::getValues(double out[16]) const {
    std::memcpy(out, m, sizeof m);
}

void Matrix4x4::getValues(float out[16]) const {
    for (int i = 0; i < 16; ++i)
        out[i] = static_cast<float>(m[i]);
}

Matrix4x4& Matrix4x4::operator*=(const Matrix4x4& b) {
    if (b.m_identity) return *this;
    if (m_identity) return *this = b;
    double r[16];
    product(m, b.m, r);
    std::memcpy(m, r, sizeof m);
    return *this;
}

Point3d Matrix4x4::operator*(const Point3d& p) const {
    if (m_identity) return p;
    const double w = m[3] * p.x + m[7] * p.y + m[11] * p.z + m[15];
    return {(m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12]) / w,
            (m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13]) / w,
            (m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]) / w};
}

Point3d Matrix4x4::operator*(const Point2d& p) const {
    return *this * Point3d(p, 0);
}

Vector3d Matrix4x4::operator*(const Vector3d& v) const {
    if (m_identity) return v;
    return {m[0] * v.x + m[4] * v.y + m[8] * v.z, m[1] * v.x + m[5] * v.y + m[9] * v.z,
            m[2] * v.x + m[6] * v.y + m[10] * v.z};
}

Point4d Matrix4x4::operator*(const Point4d& p) const {
    if (m_identity) return p;
    return {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12] * p.w,
            m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13] * p.w,
            m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14] * p.w,
            m[3] * p.x + m[7] * p.y + m[11] * p.z + m[15] * p.w};
}

Box3d Matrix4x4::operator*(const Box3d& b) const {
    Point3d corners[8];
    if (!b.asArray(corners)) return Box3d();
    Box3d result;
    for (const Point3d& corner : corners)
        result.add(*this * corner);
    return result;
}

Segment3d Matrix4x4::operator*(const Segment3d& s) const {
    return {*this * s.getFromPoint(), *this * s.getToPoint()};
}

TexturedPoint4d Matrix4x4::operator*(const TexturedPoint4d& p) const {
    return {*this * p.point, p.texture};
}

void Matrix4x4::multiplyPoint(const double in[3], double out[3]) const {
    const Point3d p = *this * Point3d(in[0], in[1], in[2]);
    out[0] = p.x, out[1] = p.y, out[2] = p.z;
}

void Matrix4x4::multiplyVector(const double in[3], double out[3]) const {
    const Vector3d v = *this * Vector3d(in[0], in[1], in[2]);
    out[0] = v.x, out[1] = v.y, out[2] = v.z;
}

bool Matrix4x4::isIdentity() const {
    return std::equal(m, m + 16, _identityPattern);
}

bool Matrix4x4::isEmpty() const {
    return std::all_of(m, m + 16, [](double v) { return v == 0; });
}

bool Matrix4x4::isTransform2d() const {
    const double w = std::fabs(m[15]);
    if (w < 1e-05) return false;
    return (std::fabs(m[2]) + std::fabs(m[3]) + std::fabs(m[6]) + std::fabs(m[7])) / w < 1e-05;
}

bool Matrix4x4::isPerspectiveProjection() const {
    return std::fabs(m[3]) < 1e-05 && std::fabs(m[7]) < 1e-05 && std::fabs(m[11] + 1) < 1e-05 &&
           std::fabs(m[15]) < 1e-05;
}

bool Matrix4x4::isConstantZ() const {
    return m[2] == 0 && m[6] == 0 && m[3] == 0 && m[7] == 0;
}

bool Matrix4x4::hasQuadmap() const {
    return m[3] != 0 || m[7] != 0;
}

bool Matrix4x4::hasNan() const {
    return std::any_of(m, m + 16, [](double v) { return std::isnan(v); });
}

bool Matrix4x4::hasInfinity() const {
    return std::any_of(m, m + 16, [](double v) { return std::isinf(v); });
}

Matrix4x4 Matrix4x4::rotation() const {
    Matrix4x4 r(*this);
    if (!m_identity) r.m[12] = r.m[13] = r.m[14] = 0;
    return r;
}

double Matrix4x4::scaleFactor() const {
    return std::sqrt(std::fabs(m[0] * m[5] - m[1] * m[4]));
}

double Matrix4x4::truckFactor() const {
    return std::fabs(m[15]) < TUMaths::epsilon() ? 0.0 : 1.0 / m[15];
}

int Matrix4x4::compare(const Matrix4x4& b) const {
    for (int i = 0; i < 16; ++i) {
        if (m[i] < b.m[i]) return -1;
        if (b.m[i] < m[i]) return 1;
    }
    return 0;
}

bool Matrix4x4::operator==(const Matrix4x4& b) const {
    return std::equal(m, m + 16, b.m);
}

void Matrix4x4::transpose() {
    for (int r = 0; r < 4; ++r)
        for (int c = r + 1; c < 4; ++c)
            std::swap(m[r + 4 * c], m[c + 4 * r]);
}

Matrix4x4 Matrix4x4::getTranspose() const {
    Matrix4x4 r(*this);
    r.transpose();
    return r;
}

Matrix4x4 Matrix4x4::getInverse() const {
    Matrix4x4 r(*this);
    r.inverse();
    return r;
}

void Matrix4x4::clear() {
    std::fill(m, m + 16, 0.0);
    m_identity = false;
}

void Matrix4x4::normalize() {
    const double w = m[15];
    if (std::fabs(w) < TUMaths::epsilon()) return;
    for (double& v : m)
        v /= w;
    m_identity = m_identity && w == 1;
}

void Matrix4x4::print(const char* name) const {
    std::printf("%s:\n%12.5f %12.5f %12.5f %12.5f\n%12.5f %12.5f %12.5f %12.5f\n%12.5f %12.5f "
                "%12.5f %12.5f\n%12.5f %12.5f %12.5f %12.5f\n",
                nameOrDefault(name), m[0], m[4], m[8], m[12], m[1], m[5], m[9], m[13], m[2], m[6],
                m[10], m[14], m[3], m[7], m[11], m[15]);
}

} // namespace Math
