// Conversions between the polyline kinds, their boxes, and the view-volume clip.
#include <PlumvaleBaseCore/math/Polyline.h>

#include <cmath>
#include <utility>

namespace Math {

namespace {

Point4d& position(Point4d& p) {
    return p;
}
Point4d& position(TexturedPoint4d& p) {
    return p.point;
}
const Point4d& position(const Point4d& p) {
    return p;
}
const Point4d& position(const TexturedPoint4d& p) {
    return p.point;
}

// One Sutherland-Hodgman pass against the plane sign * v + w >= 0 of one axis, from `in`
// into `out` (cleared first).
template <class P>
void clipPass(const std::vector<P>& in, std::vector<P>& out, bool closed, int axis, double sign) {
    out.clear();
    const size_t n = in.size();
    const auto distance = [&](const P& p) {
        const Point4d& q = position(p);
        return sign * q.asArray()[axis] + q.w;
    };
    const auto crossing = [&](const P& a, const P& b) {
        const Point4d& pa = position(a);
        const Point4d& pb = position(b);
        const double da = sign * pa.w + pa.asArray()[axis];
        const double db = sign * pb.w + pb.asArray()[axis];
        const double t = std::fabs(da - db) <= 1e-07 ? 0.5 : da / (da - db);
        P p = P::interpolate(t, a, b);
        Point4d& q = position(p);
        q.asArray()[axis] = -sign * q.w; // exactly on the plane
        return p;
    };
    const size_t edges = closed ? n : n - 1;
    size_t prev = closed ? n - 1 : 0;
    bool prevInside = distance(in[prev]) >= 0;
    for (size_t e = 0; e < edges; ++e) {
        const size_t cur = closed ? e : e + 1;
        const bool curInside = distance(in[cur]) >= 0;
        if (prevInside) {
            out.push_back(in[prev]);
            if (!curInside) out.push_back(crossing(in[prev], in[cur]));
        } else if (curInside) {
            out.push_back(crossing(in[prev], in[cur]));
        }
        prev = cur;
        prevInside = curInside;
    }
    // An open walk never has its last point as the previous one of an edge.
    if (!closed && prevInside) out.push_back(in[prev]);
}

// The passes for the axes from `first` to `last` (inclusive, in decreasing order z, y, x).
template <class P>
void clipAxes(std::vector<P>& points, bool closed, int first, int last) {
    if (points.empty()) return;
    std::vector<P> scratch;
    scratch.reserve(points.size() * 2 + 8);
    for (int axis = first; axis >= last; --axis) {
        for (double sign : {-1.0, 1.0}) {
            if (points.empty()) return;
            clipPass(points, scratch, closed, axis, sign);
            points.swap(scratch);
        }
    }
}

template <class Src>
void appendMapped(std::vector<Point4d>& out, const Src& points, const Matrix4x4& m) {
    out.reserve(points.size());
    for (const auto& p : points)
        out.push_back(m * Point4d(p));
}

} // namespace

Polyline3d::Polyline3d(const Polyline4d& p) : BasePolyline4d(p.isClosed()) {
    m_points.reserve(p.points().size());
    for (const Point4d& q : p.points())
        m_points.push_back(q.toPoint3d());
}

Polyline3d::Polyline3d(const Polyline4d& p, const Matrix4x4& m) : BasePolyline4d(p.isClosed()) {
    m_points.reserve(p.points().size());
    for (const Point4d& q : p.points())
        m_points.push_back((m * q).toPoint3d());
}

Polyline4d::Polyline4d(const Polyline2d& p) : BasePolyline4d(p.isClosed()) {
    m_points.reserve(p.points().size());
    for (const auto& q : p.points())
        m_points.emplace_back(q);
}

Polyline4d::Polyline4d(const Polyline3d& p) : BasePolyline4d(p.isClosed()) {
    m_points.reserve(p.points().size());
    for (const auto& q : p.points())
        m_points.emplace_back(q);
}

Polyline4d::Polyline4d(const Polyline2d& p, const Matrix4x4& m) : BasePolyline4d(p.isClosed()) {
    appendMapped(m_points, p.points(), m);
}

Polyline4d::Polyline4d(const Polyline3d& p, const Matrix4x4& m) : BasePolyline4d(p.isClosed()) {
    appendMapped(m_points, p.points(), m);
}

Polyline4d::Polyline4d(const Polyline4d& p, const Matrix4x4& m) : BasePolyline4d(p.isClosed()) {
    appendMapped(m_points, p.points(), m);
}

Polyline4d::Polyline4d(const Box2d& box) : BasePolyline4d(true) {
    Point2d corners[4];
    if (!box.asArray(corners)) return;
    for (const Point2d& c : corners)
        m_points.emplace_back(c);
}

void Polyline4d::transform(const Matrix4x4& m) {
    for (Point4d& p : m_points)
        p = m * p;
}

void Polyline4d::clip() {
    clipAxes(m_points, m_closed, 2, 0);
}

void Polyline4d::clip(Axis4d axis) {
    if (axis == Axis4d::W) return;
    clipAxes(m_points, m_closed, static_cast<int>(axis), static_cast<int>(axis));
}

Box2d Polyline4d::box2d() const {
    Box2d box;
    for (const Point4d& p : m_points)
        box.Add(p.toPoint2d());
    return box;
}

Box3d Polyline4d::box3d() const {
    Box3d box;
    for (const Point4d& p : m_points)
        box.add(p.toPoint3d());
    return box;
}

TexturedPolyline2d::TexturedPolyline2d(const TexturedPolyline4d& p) : BasePolyline4d(p.isClosed()) {
    m_points.reserve(p.points().size());
    for (const TexturedPoint4d& q : p.points())
        m_points.emplace_back(q.point.toPoint2d(), q.texture);
}

TexturedPolyline4d::TexturedPolyline4d(const TexturedPolyline2d& p, const Matrix4x4& m)
    : BasePolyline4d(p.isClosed()) {
    m_points.reserve(p.points().size());
    for (const TexturedPoint2d& q : p.points())
        m_points.emplace_back(m * Point4d(q.point), q.texture);
}

void TexturedPolyline4d::clip() {
    clipAxes(m_points, m_closed, 2, 0);
}

void TexturedPolyline4d::clip(Axis4d axis) {
    if (axis == Axis4d::W) return;
    clipAxes(m_points, m_closed, static_cast<int>(axis), static_cast<int>(axis));
}

} // namespace Math
