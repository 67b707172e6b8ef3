// Box algebra: open and closed sides of Box2d, Box3d, and the integer rules of Box2di.
#include <PlumvaleBaseCore/math/Box.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace Math {

using Constants::Boundary;
using Constants::Closed;
using Constants::Open;

namespace {

// Whether a side at `theirs` of kind `theirKind` reaches at least as far as ours in the
// direction where `further(a, b)` means a lies beyond b: a closed side wins a tie.
template <typename Further>
bool takesSide(double theirs, Boundary theirKind, double ours, Further further) {
    if (theirKind == Closed) return !further(ours, theirs);
    return further(theirs, ours);
}

// A receiver side covers the argument's side when it reaches at least as far, and strictly
// further when the argument's side is closed and ours is open.
template <typename Further>
bool coversSide(double ours, Boundary ourKind, double theirs, Boundary theirKind, Further further) {
    if (theirKind == Closed && ourKind == Open) return further(ours, theirs);
    return !further(theirs, ours);
}

// lo (of kind loKind) stays below hi (of kind hiKind); equality only between closed sides.
bool below(double lo, Boundary loKind, double hi, Boundary hiKind) {
    if (loKind == Closed && hiKind == Closed) return lo <= hi;
    return lo < hi;
}

bool insideMin(double v, double min, Boundary kind) {
    return kind == Closed ? min <= v : min < v;
}
bool insideMax(double v, double max, Boundary kind) {
    return kind == Closed ? v <= max : v < max;
}

const auto greater = [](double a, double b) { return a > b; };
const auto less = [](double a, double b) { return a < b; };

double gapBelow(double v, double lo) {
    return v < lo ? lo - v : 0.0;
}
double gapAbove(double v, double hi) {
    return v > hi ? v - hi : 0.0;
}

} // namespace

Box2d::Box2d(const Box2di& b) {
    if (b.hasNullArea()) return;
    m_empty = false;
    m_min = Point2d(b.x1(), b.y1());
    m_max = Point2d(b.x2(), b.y2());
}

void Box2d::AddClosed(const Point2d& p) {
    if (m_empty) {
        m_empty = false;
        m_min = m_max = p;
        m_minXB = m_minYB = m_maxXB = m_maxYB = Closed;
        return;
    }
    if (m_min.x >= p.x) m_min.x = p.x, m_minXB = Closed;
    if (m_max.x <= p.x) m_max.x = p.x, m_maxXB = Closed;
    if (m_min.y >= p.y) m_min.y = p.y, m_minYB = Closed;
    if (m_max.y <= p.y) m_max.y = p.y, m_maxYB = Closed;
}

void Box2d::AddOpen(const Point2d& p) {
    if (m_empty) {
        m_empty = false;
        m_min = m_max = p;
        m_minXB = m_minYB = m_maxXB = m_maxYB = Open;
        return;
    }
    if (m_min.x > p.x)
        m_min.x = p.x, m_minXB = Open;
    else if (m_max.x < p.x)
        m_max.x = p.x, m_maxXB = Open;
    if (m_min.y > p.y)
        m_min.y = p.y, m_minYB = Open;
    else if (m_max.y < p.y)
        m_max.y = p.y, m_maxYB = Open;
}

void Box2d::Add(const Box2d& b) {
    if (b.m_empty) return;
    if (m_empty) {
        *this = b;
        return;
    }
    if (takesSide(b.m_min.x, b.m_minXB, m_min.x, less)) m_min.x = b.m_min.x, m_minXB = b.m_minXB;
    if (takesSide(b.m_min.y, b.m_minYB, m_min.y, less)) m_min.y = b.m_min.y, m_minYB = b.m_minYB;
    if (takesSide(b.m_max.x, b.m_maxXB, m_max.x, greater)) m_max.x = b.m_max.x, m_maxXB = b.m_maxXB;
    if (takesSide(b.m_max.y, b.m_maxYB, m_max.y, greater)) m_max.y = b.m_max.y, m_maxYB = b.m_maxYB;
}

void Box2d::FastAddOnClosedBox(const Point2d& p) {
    if (m_min.x >= p.x) m_min.x = p.x;
    if (m_max.x <= p.x) m_max.x = p.x;
    if (m_min.y >= p.y) m_min.y = p.y;
    if (m_max.y <= p.y) m_max.y = p.y;
}

void Box2d::Enlarge(double dx, double dy) {
    if (m_empty) return;
    if (dx > 0) m_min.x -= dx, m_max.x += dx;
    if (dy > 0) m_min.y -= dy, m_max.y += dy;
}

void Box2d::Round(double q) {
    m_min.x = std::floor(m_min.x / q) * q;
    m_min.y = std::floor(m_min.y / q) * q;
    m_max.x = std::ceil(m_max.x / q) * q;
    m_max.y = std::ceil(m_max.y / q) * q;
}

void Box2d::SetPoints(const Point2d& a, const Point2d& b) {
    m_empty = false;
    m_min = Point2d(std::min(a.x, b.x), std::min(a.y, b.y));
    m_max = Point2d(std::max(a.x, b.x), std::max(a.y, b.y));
}

bool Box2d::IsContaining(const Point2d& p) const {
    return !m_empty && insideMin(p.x, m_min.x, m_minXB) && insideMin(p.y, m_min.y, m_minYB) &&
           insideMax(p.x, m_max.x, m_maxXB) && insideMax(p.y, m_max.y, m_maxYB);
}

bool Box2d::IsContaining(const Box2d& b) const {
    if (m_empty || b.m_empty) return false;
    return coversSide(m_min.x, m_minXB, b.m_min.x, b.m_minXB, less) &&
           coversSide(m_min.y, m_minYB, b.m_min.y, b.m_minYB, less) &&
           coversSide(m_max.x, m_maxXB, b.m_max.x, b.m_maxXB, greater) &&
           coversSide(m_max.y, m_maxYB, b.m_max.y, b.m_maxYB, greater);
}

bool Box2d::IsIntersecting(const Box2d& b) const {
    if (m_empty || b.m_empty) return false;
    return below(m_min.x, m_minXB, b.m_max.x, b.m_maxXB) &&
           below(b.m_min.x, b.m_minXB, m_max.x, m_maxXB) &&
           below(m_min.y, m_minYB, b.m_max.y, b.m_maxYB) &&
           below(b.m_min.y, b.m_minYB, m_max.y, m_maxYB);
}

Rect2d Box2d::GetIntersectingRect(const Box2d& b) const {
    const Point2d lo(std::max(m_min.x, b.m_min.x), std::max(m_min.y, b.m_min.y));
    const Point2d hi(std::min(m_max.x, b.m_max.x), std::min(m_max.y, b.m_max.y));
    if (lo.x <= hi.x && lo.y <= hi.y) return Rect2d(lo, hi);
    const Point2d c = GetCenter();
    return Rect2d(c, c);
}

Point2d Box2d::GetClip(const Point2d& p) const {
    if (m_empty) return p;
    return {std::min(std::max(p.x, m_min.x), m_max.x), std::min(std::max(p.y, m_min.y), m_max.y)};
}

double Box2d::GetPerimeter() const {
    const double perimeter = 2 * (GetWidth() + GetHeight());
    return perimeter < 40000000.0 ? perimeter : 0.0;
}

double Box2d::GetDistanceSq(const Point2d& p) const {
    if (m_empty) return 0.0;
    const double dx = gapBelow(p.x, m_min.x) + gapAbove(p.x, m_max.x);
    const double dy = gapBelow(p.y, m_min.y) + gapAbove(p.y, m_max.y);
    return dx * dx + dy * dy;
}

double Box2d::GetDistance(const Point2d& p) const {
    if (m_empty) return 0.0;
    const double dx = gapBelow(p.x, m_min.x) + gapAbove(p.x, m_max.x);
    const double dy = gapBelow(p.y, m_min.y) + gapAbove(p.y, m_max.y);
    // An edge region gives the axis gap exactly; only a corner needs the square root.
    if (dx == 0) return dy;
    if (dy == 0) return dx;
    return std::sqrt(dx * dx + dy * dy);
}

bool Box2d::asArray(Point2d corners[4]) const {
    if (m_empty || corners == nullptr) return false;
    corners[0] = Point2d(m_min.x, m_min.y);
    corners[1] = Point2d(m_min.x, m_max.y);
    corners[2] = Point2d(m_max.x, m_max.y);
    corners[3] = Point2d(m_max.x, m_min.y);
    return true;
}

Box2di Box2d::toBox2di() const {
    return Box2di(Point2di(TUMaths::ifloor(m_min.x), TUMaths::ifloor(m_min.y)),
                  Point2di(TUMaths::iceiling(m_max.x), TUMaths::iceiling(m_max.y)));
}

bool Box2d::BoxLessXY::operator()(const Box2d& a, const Box2d& b) const {
    return std::tie(a.m_min.x, a.m_min.y, a.m_max.x, a.m_max.y) <
           std::tie(b.m_min.x, b.m_min.y, b.m_max.x, b.m_max.y);
}

bool Box2d::BoxLessYX::operator()(const Box2d& a, const Box2d& b) const {
    return std::tie(a.m_min.y, a.m_min.x, a.m_max.y, a.m_max.x) <
           std::tie(b.m_min.y, b.m_min.x, b.m_max.y, b.m_max.x);
}

Box3d::Box3d(const Point3d& a, const Point3d& b)
    : m_empty(false), m_min(std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)),
      m_max(std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)) {}

Box3d::Box3d(const Box2d& b)
    : m_empty(b.IsEmpty()), m_min(b.GetMinPoint(), 0), m_max(b.GetMaxPoint(), 0) {}

void Box3d::add(const Point3d& p) {
    if (m_empty) {
        m_empty = false;
        m_min = m_max = p;
        return;
    }
    m_min = Point3d(std::min(m_min.x, p.x), std::min(m_min.y, p.y), std::min(m_min.z, p.z));
    m_max = Point3d(std::max(m_max.x, p.x), std::max(m_max.y, p.y), std::max(m_max.z, p.z));
}

void Box3d::add(const Box3d& b) {
    if (b.m_empty) return;
    if (m_empty) {
        *this = b;
        return;
    }
    add(b.m_min);
    add(b.m_max);
}

void Box3d::enlarge(double d) {
    if (m_empty || d <= 0) return;
    m_min -= Vector3d(d, d, d);
    m_max += Vector3d(d, d, d);
}

void Box3d::round(double q) {
    m_min = Point3d(std::floor(m_min.x / q) * q, std::floor(m_min.y / q) * q,
                    std::floor(m_min.z / q) * q);
    m_max =
        Point3d(std::ceil(m_max.x / q) * q, std::ceil(m_max.y / q) * q, std::ceil(m_max.z / q) * q);
}

bool Box3d::isContaining(const Point3d& p) const {
    return !m_empty && m_min.x <= p.x && p.x <= m_max.x && m_min.y <= p.y && p.y <= m_max.y &&
           m_min.z <= p.z && p.z <= m_max.z;
}

bool Box3d::isContaining(const Box3d& b) const {
    return !m_empty && !b.m_empty && isContaining(b.m_min) && isContaining(b.m_max);
}

bool Box3d::isIntersecting(const Box3d& b) const {
    return !m_empty && !b.m_empty && m_min.x <= b.m_max.x && b.m_min.x <= m_max.x &&
           m_min.y <= b.m_max.y && b.m_min.y <= m_max.y && m_min.z <= b.m_max.z &&
           b.m_min.z <= m_max.z;
}

bool Box3d::asArray(Point3d corners[8]) const {
    if (m_empty || corners == nullptr) return false;
    for (int i = 0; i < 8; ++i)
        corners[i] = Point3d((i & 1) ? m_max.x : m_min.x, (i & 2) ? m_max.y : m_min.y,
                             (i & 4) ? m_max.z : m_min.z);
    return true;
}

Box2d Box3d::asBox2d() const {
    Box2d b(m_min.toPoint2d(), m_max.toPoint2d());
    if (m_empty) b.Reset();
    return b;
}

Box2di::Box2di(const Point2di& p1, const Point2di& p2)
    : m_x(std::min(p1.x, p2.x)), m_y(std::min(p1.y, p2.y)), m_width(std::abs(p2.x - p1.x)),
      m_height(std::abs(p2.y - p1.y)) {}

const Box2di& Box2di::emptyBox() {
    static const Box2di empty;
    return empty;
}

void Box2di::add(int x, int y) {
    if (hasNullArea()) {
        *this = Box2di(x, y, 1, 1);
        return;
    }
    if (x < m_x)
        m_width += m_x - x, m_x = x;
    else if (x >= x2())
        m_width = x - m_x + 1;
    if (y < m_y)
        m_height += m_y - y, m_y = y;
    else if (y >= y2())
        m_height = y - m_y + 1;
}

Box2di Box2di::getUnion(const Box2di& b) const {
    if (hasNullArea()) return b;
    if (b.hasNullArea()) return *this;
    const int x = std::min(m_x, b.m_x);
    const int y = std::min(m_y, b.m_y);
    return Box2di(x, y, std::max(x2(), b.x2()) - x, std::max(y2(), b.y2()) - y);
}

void Box2di::intersect(const Box2di& b) {
    if (hasNullArea()) return;
    *this = getIntersection(b);
}

Box2di Box2di::getIntersection(const Box2di& b) const {
    if (hasNullArea()) return *this;
    if (b.hasNullArea()) return Box2di();
    const int x = std::max(m_x, b.m_x);
    const int y = std::max(m_y, b.m_y);
    const int xEnd = std::min(x2(), b.x2());
    const int yEnd = std::min(y2(), b.y2());
    if (x < xEnd && y < yEnd) return Box2di(x, y, xEnd - x, yEnd - y);
    return Box2di();
}

void Box2di::enlarge(int dx, int dy) {
    m_x -= dx;
    m_y -= dy;
    m_width = clamp(m_width + 2 * dx);
    m_height = clamp(m_height + 2 * dy);
}

bool Box2di::isContaining(int x, int y) const {
    return !hasNullArea() && m_x <= x && x < x2() && m_y <= y && y < y2();
}

bool Box2di::isContaining(const Box2di& b) const {
    return !hasNullArea() && !b.hasNullArea() && m_x <= b.m_x && b.x2() <= x2() && m_y <= b.m_y &&
           b.y2() <= y2();
}

bool Box2di::isIntersecting(const Box2di& b) const {
    return !hasNullArea() && !b.hasNullArea() && m_x < b.x2() && b.m_x < x2() && m_y < b.y2() &&
           b.m_y < y2();
}

} // namespace Math
