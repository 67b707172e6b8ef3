// Exact segment meeting tests and the Point2d statics built on them.
#include "SegmentCrossing.h"

#include <algorithm>

namespace Math::detail {

namespace {

double cross(const Vector2d& a, const Vector2d& b) {
    return a.GetDeterminant(b);
}

// Whether q lies in [lo, hi] where each end belongs to the range only when closed.
bool within(double q, double lo, bool loClosed, double hi, bool hiClosed) {
    return (q > lo && q < hi) || (q == lo && loClosed) || (q == hi && hiClosed);
}

} // namespace

bool overlapColinear(const SegmentEnds& first, const SegmentEnds& second, Overlap& out) {
    const Vector2d d1 = first.to - first.from;
    const Vector2d d2 = second.to - second.from;
    if ((d1.x == 0 && d1.y == 0) || (d2.x == 0 && d2.y == 0)) return false;
    const Vector2d w = first.from - second.from;
    if (cross(w, d1) != 0 || cross(w, d2) != 0) return false;
    // Positions along the first segment, scaled by |d1|^2 so that nothing is divided.
    const double length = d1 * d1;
    const double pFrom = (second.from - first.from) * d1;
    const double pTo = (second.to - first.from) * d1;
    const bool ascending = pFrom <= pTo;
    const double argLo = ascending ? pFrom : pTo;
    const double argHi = ascending ? pTo : pFrom;
    const bool argLoClosed = ascending ? second.fromClosed : second.toClosed;
    const bool argHiClosed = ascending ? second.toClosed : second.fromClosed;
    const double lo = std::max(0.0, argLo);
    const double hi = std::min(length, argHi);
    if (!(lo <= hi)) return false;
    if (lo == hi) {
        // A single shared point: it must belong to both segments.
        if (!within(lo, 0, first.fromClosed, length, first.toClosed) ||
            !within(lo, argLo, argLoClosed, argHi, argHiClosed))
            return false;
    }
    const Point2d& argLoPoint = ascending ? second.from : second.to;
    const Point2d& argHiPoint = ascending ? second.to : second.from;
    out.start = lo == 0 ? first.from : argLoPoint;
    out.end = hi == length ? first.to : argHiPoint;
    out.tStart = lo == 0 ? 0 : lo / length;
    out.tEnd = hi == length ? 1 : hi / length;
    // Along the second segment the ratio of a point is exact at that segment's own ends.
    const double length2 = d2 * d2;
    const auto ratio2 = [&](const Point2d& p) {
        if (p == second.from) return 0.0;
        if (p == second.to) return 1.0;
        return ((p - second.from) * d2) / length2;
    };
    out.uStart = ratio2(out.start);
    out.uEnd = ratio2(out.end);
    return true;
}

} // namespace Math::detail

namespace Math {

namespace {

bool meetNonColinear(const Point2d& a, const Point2d& b, const Point2d& c, const Point2d& d,
                     bool closed, Point2d& meeting) {
    detail::Crossing crossing;
    if (!detail::crossNonColinear({a, b, closed, closed}, {c, d, closed, closed}, crossing))
        return false;
    meeting = crossing.point;
    return true;
}

} // namespace

bool Point2d::GetClosedIntersection(const Point2d& a, const Point2d& b, const Point2d& c,
                                    const Point2d& d, Point2d& meeting) {
    if (meetNonColinear(a, b, c, d, true, meeting)) return true;
    const detail::SegmentEnds first{a, b, true, true};
    const detail::SegmentEnds second{c, d, true, true};
    // Only parallel pairs reach the overlap test: a crossing pair that missed stays missed.
    if ((b - a).GetDeterminant(d - c) != 0) return false;
    detail::Overlap overlap;
    if (!detail::overlapColinear(first, second, overlap)) return false;
    meeting = overlap.start;
    return true;
}

bool Point2d::GetNonColinearClosedIntersection(const Point2d& a, const Point2d& b, const Point2d& c,
                                               const Point2d& d, Point2d& meeting) {
    return meetNonColinear(a, b, c, d, true, meeting);
}

bool Point2d::GetNonColinearOpenIntersection(const Point2d& a, const Point2d& b, const Point2d& c,
                                             const Point2d& d, Point2d& meeting) {
    return meetNonColinear(a, b, c, d, false, meeting);
}

} // namespace Math
