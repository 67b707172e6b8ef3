// Circle2d from two or three points, and its lazily converted radius.
#include <PlumvaleBaseCore/math/Circle2d.h>

#include <limits>

namespace Math {

Circle2d::Circle2d(const Point2d& a, const Point2d& b)
    : m_x((a.x + b.x) * 0.5), m_y((a.y + b.y) * 0.5), m_size(a.GetDistanceSq(b) / 2),
      m_isSquared(true) {}

Circle2d::Circle2d(const Point2d& a, const Point2d& b, const Point2d& c) {
    const double d = 2 * ((c.y - b.y) * (b.x - a.x) - (c.x - b.x) * (b.y - a.y));
    if (d != 0) {
        const double a2 = a.GetDistanceSq(), b2 = b.GetDistanceSq(), c2 = c.GetDistanceSq();
        m_x = ((b2 - a2) * (c.y - b.y) - (b.y - a.y) * (c2 - b2)) / d;
        m_y = ((b.x - a.x) * (c2 - b2) - (c.x - b.x) * (b2 - a2)) / d;
        setRadiusSq(b.GetDistanceSq(center()));
        return;
    }
    const auto diameter = [this](const Point2d& p, const Point2d& q) {
        m_x = (p.x + q.x) * 0.5;
        m_y = (p.y + q.y) * 0.5;
        setRadiusSq(p.GetDistanceSq(q) / 4);
    };
    if (a == b) {
        diameter(b, c);
    } else if (b == c) {
        diameter(a, b);
    } else {
        // No circle through three distinct collinear points: the weights sum to exactly 1.
        const Point2d g = Point2d::Interpolate(a, 0.3333333333333333, b, 0.3333333333333333, c);
        m_x = g.x;
        m_y = g.y;
        setRadius(std::numeric_limits<double>::infinity());
    }
}

double Circle2d::radius() const {
    if (m_isSquared) {
        m_size = std::sqrt(m_size);
        m_isSquared = false;
    }
    return m_size;
}

} // namespace Math
