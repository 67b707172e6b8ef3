// Quaternion algebra, axis-angle and Euler conversion, slerp and squad.
#include <PlumvaleBaseCore/math/Quat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace Math {

namespace {

constexpr double kSmallSine = 1e-05;
constexpr double kGimbal = 1.9073486328125e-06; // 2^-19

double toRadians(double angle, bool degrees) {
    return degrees ? angle * TUMaths::radiansPerDegree : angle;
}

} // namespace

Quat::Quat(const Vector3d& from, const Vector3d& to) {
    const double lengths = std::sqrt(from.lengthSq() * to.lengthSq());
    if (lengths == 0) return;
    const double d = (from * to) / lengths;
    if (d <= -1 + 1e-12) {
        // Opposite directions: half a turn about any axis perpendicular to `from`.
        Vector3d axis = from ^ Vector3d(1, 0, 0);
        if (axis.lengthSq() < 1e-12 * from.lengthSq()) axis = from ^ Vector3d(0, 1, 0);
        axis.normalize();
        *this = Quat(0.0, axis.x, axis.y, axis.z);
        return;
    }
    // The half-way quaternion (1 + cos, sin * axis), normalised, is the shortest arc.
    const Vector3d c = (from ^ to) / lengths;
    *this = Quat(1 + d, c.x, c.y, c.z);
    normalize();
}

void Quat::setRotAxis(double radians, const Vector3d& axis) {
    const double l = axis.length();
    if (l <= 0.001) {
        loadIdentity();
        return;
    }
    const double s = std::sin(radians / 2) / l;
    *this = Quat(std::cos(radians / 2), axis.x * s, axis.y * s, axis.z * s);
}

void Quat::rotAxis(double& radians, Vector3d& axis) const {
    const double w = std::clamp(m_w, -1.0, 1.0);
    radians = 2 * std::acos(w);
    const double s = std::sqrt(1 - w * w);
    if (s <= kSmallSine) {
        axis = Vector3d(1, 0, 0);
        radians = 0;
        return;
    }
    axis = Vector3d(m_x / s, m_y / s, m_z / s);
}

void Quat::setEuler(double x, double y, double z, bool degrees) {
    Quat qx, qy, qz;
    qx.setToXaxis(x, degrees);
    qy.setToYaxis(y, degrees);
    qz.setToZaxis(z, degrees);
    *this = qz * qy * qx;
}

void Quat::euler(double& x, double& y, double& z, bool degrees) const {
    Matrix4x4 r;
    matrix(r);
    const double cy = std::sqrt(r(0, 0) * r(0, 0) + r(1, 0) * r(1, 0));
    if (cy <= kGimbal) {
        x = std::atan2(-r(1, 2), r(1, 1));
        y = std::atan2(-r(2, 0), cy);
        z = 0;
    } else {
        x = std::atan2(r(2, 1), r(2, 2));
        y = std::atan2(-r(2, 0), cy);
        z = std::atan2(r(1, 0), r(0, 0));
    }
    // Adding +0 turns a -0 from atan2 into 0, so printed angles never read "-0".
    x += 0.0;
    y += 0.0;
    z += 0.0;
    if (degrees) {
        x *= TUMaths::degreesPerRadian;
        y *= TUMaths::degreesPerRadian;
        z *= TUMaths::degreesPerRadian;
    }
}

void Quat::setToXaxis(double angle, bool degrees) {
    const double h = toRadians(angle, degrees) / 2;
    *this = Quat(std::cos(h), std::sin(h), 0.0, 0.0);
}

void Quat::setToYaxis(double angle, bool degrees) {
    const double h = toRadians(angle, degrees) / 2;
    *this = Quat(std::cos(h), 0.0, std::sin(h), 0.0);
}

void Quat::setToZaxis(double angle, bool degrees) {
    const double h = toRadians(angle, degrees) / 2;
    *this = Quat(std::cos(h), 0.0, 0.0, std::sin(h));
}

void Quat::invert() {
    const double n2 = getDotProduct(*this);
    if (n2 == 0) return;
    conjugate();
    *this = *this * (1.0 / n2);
}

void Quat::normalize() {
    const double n = norm();
    if (n != 0) *this = *this * (1.0 / n);
}

double Quat::norm() const {
    return std::sqrt(getDotProduct(*this));
}

double Quat::distance(const Quat& q, bool sameRotation) const {
    const double minus = (*this - q).norm();
    return sameRotation ? std::min(minus, (*this + q).norm()) : minus;
}

bool Quat::equals(const Quat& q, double tolerance) const {
    return std::fabs(m_w - q.m_w) <= tolerance && std::fabs(m_x - q.m_x) <= tolerance &&
           std::fabs(m_y - q.m_y) <= tolerance && std::fabs(m_z - q.m_z) <= tolerance;
}

Quat Quat::operator*(const Quat& q) const {
    return {m_w * q.m_w - m_x * q.m_x - m_y * q.m_y - m_z * q.m_z,
            m_w * q.m_x + m_x * q.m_w + m_y * q.m_z - m_z * q.m_y,
            m_w * q.m_y - m_x * q.m_z + m_y * q.m_w + m_z * q.m_x,
            m_w * q.m_z + m_x * q.m_y - m_y * q.m_x + m_z * q.m_w};
}

Quat Quat::exp() const {
    const double angle = std::sqrt(m_x * m_x + m_y * m_y + m_z * m_z);
    const double s = std::sin(angle);
    if (std::fabs(s) <= kSmallSine) return {std::cos(angle), m_x, m_y, m_z};
    const double k = s / angle;
    return {std::cos(angle), m_x * k, m_y * k, m_z * k};
}

Quat Quat::log() const {
    const double angle = std::acos(std::clamp(m_w, -1.0, 1.0));
    const double s = std::sin(angle);
    if (std::fabs(s) <= kSmallSine) return {0, m_x, m_y, m_z};
    const double k = angle / s;
    return {0, m_x * k, m_y * k, m_z * k};
}

void Quat::matrix(Matrix4x4& out) const {
    const double w = m_w, x = m_x, y = m_y, z = m_z;
    out.setMatrix(1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y), 0,
                  2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x), 0,
                  2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y), 0, 0, 0, 0, 1);
}

void Quat::transform(Vector3d& v) const {
    // v' = v + 2 w (u x v) + 2 u x (u x v), u the vector part.
    const Vector3d u(m_x, m_y, m_z);
    const Vector3d t = (u ^ v) * 2;
    v += t * m_w + (u ^ t);
}

Quat Quat::slerp(const Quat& a, const Quat& b, double t) {
    return slerpMethod(a, b, t);
}

Quat Quat::slerpMethod(const Quat& a, const Quat& b, double t) {
    if (a == b) return a;
    double d = std::clamp(a.getDotProduct(b), -1.0, 1.0);
    Quat end = b;
    if (d < 0) {
        end = b * -1.0;
        d = -d;
    }
    const double theta = std::acos(d);
    const double s = std::sin(theta);
    double wa = 1 - t;
    double wb = t;
    if (std::fabs(s) > kSmallSine) {
        wa = std::sin((1 - t) * theta) / s;
        wb = std::sin(t * theta) / s;
    }
    return (a * wa + end * wb).getNormalized();
}

Quat Quat::squadMethod(const Quat& a, const Quat& b, const Quat& sa, const Quat& sb, double t) {
    return slerpMethod(slerpMethod(a, b, t), slerpMethod(sa, sb, t), 2 * t * (1 - t));
}

Quat Quat::squadPt(const Quat& previous, const Quat& q, const Quat& next) {
    Quat inverse = q;
    inverse.invert();
    const Quat sum = (inverse * next).log() + (inverse * previous).log();
    return q * (sum * -0.25).exp();
}

Quat Quat::squad(const Quat& a, const Quat& b, const Quat& c, const Quat& d, double t) {
    return squadMethod(b, c, squadPt(a, b, c), squadPt(b, c, d), t);
}

void Quat::print(std::string& buffer, PrintForm form) const {
    char line[1600]; // room for four %.12f renderings of the largest doubles
    if (form == AngleAxis) {
        double angle = 0;
        Vector3d axis;
        rotAxis(angle, axis);
        std::snprintf(line, sizeof line, "[angle: %.12f, axis: <%.12f, %.12f, %.12f>]\n",
                      angle * TUMaths::degreesPerRadian, axis.x, axis.y, axis.z);
    } else if (form == EulerDegrees) {
        double x = 0, y = 0, z = 0;
        euler(x, y, z, true);
        std::snprintf(line, sizeof line, "[euler: <%.12f, %.12f, %.12f>]\n", x, y, z);
    } else {
        std::snprintf(line, sizeof line, "[w: %.12f, x: %.12f, y: %.12f, z: %.12f]\n", m_w, m_x,
                      m_y, m_z);
    }
    buffer += line;
}

} // namespace Math
