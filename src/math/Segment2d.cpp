// Segment2d and its meeting records, on the exact classification of SegmentCrossing.
#include <PlumvaleBaseCore/math/Segment2d.h>

#include <PlumvaleBaseCore/math/Matrix2x3.h>

#include "SegmentCrossing.h"

#include <algorithm>
#include <limits>

namespace Math {

namespace {

detail::SegmentEnds ends(const Segment2d& s) {
    return {s.GetFromPoint(), s.GetToPoint(), s.GetFromBoundary() == Constants::Closed,
            s.GetToBoundary() == Constants::Closed};
}

// The point at ratio t along s, exact at its two ends.
Point2d pointAt(const Segment2d& s, double t) {
    if (t == 0) return s.GetFromPoint();
    if (t == 1) return s.GetToPoint();
    return s.Interpolate(t);
}

void fill(Segment2d::Intersection& record, const Segment2d& receiver, double t,
          const Segment2d& argument, double u) {
    record.SetReceiver(pointAt(receiver, t), receiver.GetVector(), t);
    record.SetArgument(pointAt(argument, u), argument.GetVector(), u);
}

} // namespace

Point2d Segment2d::GetClosestPoint(const Point2d& p) const {
    const double t = GetProjectedRatio(p);
    if (!(t > 0)) return m_from;
    if (t >= 1) return m_to;
    return Interpolate(t);
}

bool Segment2d::OnSegment(const Point2d& p) const {
    const bool fromClosed = m_fromBoundary == Constants::Closed;
    const bool toClosed = m_toBoundary == Constants::Closed;
    if (IsDegenerate()) return p == m_from && fromClosed && toClosed;
    if (GetSide(p) != 0) return false;
    const Vector2d d = GetVector();
    // Positions scaled by |d|^2, so both ends compare exactly.
    const double s = (p - m_from) * d;
    const double length = d * d;
    return (s > 0 && s < length) || (s == 0 && fromClosed) || (s == length && toClosed);
}

bool Segment2d::IsIntersecting(const Segment2d& s) const {
    Intersection first, second;
    return GetIntersection(s, first, second) > 0;
}

int Segment2d::GetIntersection(const Segment2d& s, Intersection& first,
                               Intersection& second) const {
    const detail::SegmentEnds a = ends(*this), b = ends(s);
    if (GetVector().GetDeterminant(s.GetVector()) != 0) {
        detail::Crossing crossing;
        if (!detail::crossNonColinear(a, b, crossing)) return 0;
        fill(first, *this, crossing.t, s, crossing.u);
        first.point = crossing.point;
        return 1;
    }
    detail::Overlap overlap;
    if (!detail::overlapColinear(a, b, overlap)) return 0;
    fill(first, *this, overlap.tStart, s, overlap.uStart);
    fill(second, *this, overlap.tEnd, s, overlap.uEnd);
    first.point = first.argumentPoint = overlap.start;
    second.point = second.argumentPoint = overlap.end;
    return 2;
}

bool Segment2d::GetNonColinearIntersection(const Segment2d& s, IntersectionType& type) const {
    detail::Crossing crossing;
    if (!detail::crossNonColinear(ends(*this), ends(s), crossing)) {
        type = IntersectionType();
        return false;
    }
    type.type = crossing.type;
    type.x = crossing.point.x;
    type.y = crossing.point.y;
    type.t = crossing.t;
    type.u = crossing.u;
    type.argumentTouched = crossing.secondTouched;
    type.receiverTouched = crossing.firstTouched;
    return true;
}

bool Segment2d::GetLineIntersection(const Segment2d& s, Intersection& record) const {
    const Vector2d d1 = GetVector(), d2 = s.GetVector();
    const double det = d1.GetDeterminant(d2);
    if (det == 0) return false;
    const Vector2d w = m_from - s.m_from;
    fill(record, *this, d2.GetDeterminant(w) / det, s, d1.GetDeterminant(w) / det);
    return true;
}

bool Segment2d::GetGap(const Segment2d& s, double& distance, Point2d& first,
                       Point2d& second) const {
    constexpr double kTolerance = 1.0 / 64;
    Point2d meeting;
    if (Point2d::GetClosedIntersection(m_from, m_to, s.m_from, s.m_to, meeting)) {
        distance = 0;
        first = second = meeting;
        return false;
    }
    // Apart, the nearest pair always has an end of one of the segments.
    const Point2d candidates[4][2] = {{m_from, s.GetClosestPoint(m_from)},
                                      {m_to, s.GetClosestPoint(m_to)},
                                      {GetClosestPoint(s.m_from), s.m_from},
                                      {GetClosestPoint(s.m_to), s.m_to}};
    double best = std::numeric_limits<double>::infinity();
    for (const auto& pair : candidates) {
        const double d = pair[0].GetDistanceSq(pair[1]);
        if (d < best) {
            best = d;
            first = pair[0];
            second = pair[1];
        }
    }
    distance = std::sqrt(best);
    return distance > kTolerance;
}

bool Segment2d::isLineIntersectingArea(const Box2d& box) const {
    if (box.IsEmpty()) return false;
    const Point2d& lo = box.GetMinPoint();
    const Point2d& hi = box.GetMaxPoint();
    // Separating axes of a segment and a box: x, y, and the segment's normal.
    if (std::max(m_from.x, m_to.x) < lo.x || std::min(m_from.x, m_to.x) > hi.x ||
        std::max(m_from.y, m_to.y) < lo.y || std::min(m_from.y, m_to.y) > hi.y)
        return false;
    const Point2d corners[4] = {lo, {lo.x, hi.y}, hi, {hi.x, lo.y}};
    int left = 0, right = 0;
    for (const Point2d& c : corners) {
        const int side = GetSide(c);
        left += side > 0;
        right += side < 0;
    }
    return left < 4 && right < 4;
}

bool Segment2d::isLineIntersectingLine(const Box2d& box) const {
    if (!isLineIntersectingArea(box)) return false;
    const Point2d& lo = box.GetMinPoint();
    const Point2d& hi = box.GetMaxPoint();
    const auto inside = [&](const Point2d& p) {
        return p.x > lo.x && p.x < hi.x && p.y > lo.y && p.y < hi.y;
    };
    // The open interior is convex: a segment with both ends in it never reaches the outline,
    // and one meeting the closed box with an end outside the interior must cross it.
    return !(inside(m_from) && inside(m_to));
}

Segment2d Segment2d::operator*(const Matrix2x3& m) const {
    return {m_from * m, m_fromBoundary, m_to * m, m_toBoundary};
}

// --- Intersection ---

namespace {

// One half of a record: the edges leaving the point are the parts of the segment before and
// after it, none past an end.
void setHalf(Point2d& point, Vector2d& backward, Vector2d& forward, double& ratio, const Point2d& p,
             const Vector2d& segmentVector, double t) {
    point = p;
    backward = t > 0 ? -segmentVector : Vector2d();
    forward = t < 1 ? segmentVector : Vector2d();
    ratio = t;
}

} // namespace

void Segment2d::Intersection::SetReceiver(const Point2d& p, const Vector2d& segmentVector,
                                          double t) {
    setHalf(point, backward, forward, ratio, p, segmentVector, t);
}

void Segment2d::Intersection::SetArgument(const Point2d& p, const Vector2d& segmentVector,
                                          double t) {
    setHalf(argumentPoint, argumentBackward, argumentForward, argumentRatio, p, segmentVector, t);
}

void Segment2d::Intersection::Swap() {
    std::swap(point, argumentPoint);
    std::swap(backward, argumentBackward);
    std::swap(forward, argumentForward);
    std::swap(ratio, argumentRatio);
    m_cotan = -m_cotan;
    m_turn = -m_turn;
}

Vector2d Segment2d::Intersection::GetVector(Direction d) const {
    switch (d) {
    case ReceiverBackward:
        return backward;
    case ReceiverForward:
        return forward;
    case ArgumentBackward:
        return argumentBackward;
    case ArgumentForward:
        return argumentForward;
    default:
        return {};
    }
}

double Segment2d::Intersection::computeCotan() {
    // A half's segment vector is its forward edge, or its backward edge reversed at the to end.
    const Vector2d d1 = forward.isZero() ? -backward : forward;
    const Vector2d d2 = argumentForward.isZero() ? -argumentBackward : argumentForward;
    const double det = d1.GetDeterminant(d2);
    const double dot = d1 * d2;
    m_turn = TUMaths::sign(det);
    if (det != 0)
        m_cotan = dot / det;
    else
        m_cotan = dot == 0 ? std::numeric_limits<double>::quiet_NaN()
                           : std::copysign(std::numeric_limits<double>::infinity(), dot);
    return m_cotan;
}

void Segment2d::Intersection::ComputeDirections() {
    computeCotan();
    m_walks = 0;
}

namespace {

// Where v lies turning counter-clockwise from ref: 1 in (0, pi), 2 at pi, 3 in (pi, 2 pi),
// 4 at 2 pi (the same direction as ref).
int turnClass(const Vector2d& ref, const Vector2d& v) {
    const double det = ref.GetDeterminant(v);
    if (det > 0) return 1;
    if (det < 0) return 3;
    return ref * v < 0 ? 2 : 4;
}

} // namespace

Segment2d::Intersection::Direction Segment2d::Intersection::nextDirection(Direction from,
                                                                          bool skipAligned) const {
    const Vector2d ref = GetVector(from);
    if (ref.isZero()) return NoDirection;
    Direction best = NoDirection;
    int bestClass = 0;
    Vector2d bestVector;
    for (int i = 0; i < 4; ++i) {
        const Direction d = static_cast<Direction>(i);
        const Vector2d v = GetVector(d);
        if (d == from || v.isZero()) continue;
        const int c = turnClass(ref, v);
        if (skipAligned && c == 4) continue;
        // Within one open half-turn, b comes before a when det(b, a) > 0.
        if (best == NoDirection || c < bestClass ||
            (c == bestClass && (c == 1 || c == 3) && v.GetDeterminant(bestVector) > 0)) {
            best = d;
            bestClass = c;
            bestVector = v;
        }
    }
    return best;
}

Segment2d::Intersection::Direction Segment2d::Intersection::GetNextDirection(Direction from) const {
    return nextDirection(from, false);
}

Segment2d::Intersection::Direction
Segment2d::Intersection::GetNextNonAlignedDirection(Direction from) const {
    return nextDirection(from, true);
}

bool Segment2d::Intersection::IsLess(const Intersection& b) const {
    return ratio < b.ratio || (ratio == b.ratio && argumentRatio < b.argumentRatio);
}

bool Segment2d::Intersection::IsLessFrom(const Intersection& b) const {
    return argumentRatio < b.argumentRatio || (argumentRatio == b.argumentRatio && ratio < b.ratio);
}

} // namespace Math
