// Exact classification of where two 2D segments meet (internal to the library).
#pragma once

#include <PlumvaleBaseCore/math/Vector2d.h>

namespace Math::detail {

/// One straight piece with the boundary of each end (true = closed: touching it counts).
struct SegmentEnds {
    Point2d from;
    Point2d to;
    bool fromClosed = true;
    bool toClosed = true;
};

/// The meeting of two segments that are not parallel.
struct Crossing {
    /// 1: at an end of each; 2: an end of one on the interior of the other; 4: a proper
    /// crossing. Negative when the second segment crosses the first from its left to its
    /// right, that is when d1 x d2 < 0.
    int type = 0;
    bool firstTouched = false;  ///< the meeting point is an end of the first segment
    bool secondTouched = false; ///< the meeting point is an end of the second segment
    double t = 0;               ///< ratio along the first segment (exactly 1 at its to end)
    double u = 0;               ///< ratio along the second segment (exactly 1 at its to end)
    Point2d point;              ///< first.from + t (first.to - first.from)
};

/// n against the range [0, det] (det > 0) whose ends have the given boundaries: 1 when n is
/// strictly inside, 0 when it sits on a closed end (`touched` is set), -1 when it is outside
/// or on an open end. NaN is outside.
inline int placeOnRange(double n, double det, bool fromClosed, bool toClosed, bool& touched) {
    if (n > 0 && n < det) return 1;
    if ((n == 0 && fromClosed) || (n == det && toClosed)) {
        touched = true;
        return 0;
    }
    return -1;
}

/// The exact test: the cross products are compared with 0 and with the determinant, never
/// with a tolerance. False when the segments are parallel (collinear included) or do not
/// meet; `out` is reset first either way. Inline: polygon code calls it in inner loops.
inline bool crossNonColinear(const SegmentEnds& first, const SegmentEnds& second, Crossing& out) {
    const Vector2d d1 = first.to - first.from;
    const Vector2d d2 = second.to - second.from;
    const Vector2d w = first.from - second.from;
    double det = d1.GetDeterminant(d2);
    double nt = d2.GetDeterminant(w);
    double nu = d1.GetDeterminant(w);
    const bool reversed = det < 0;
    if (reversed) {
        det = -det;
        nt = -nt;
        nu = -nu;
    }
    bool firstTouched = false, secondTouched = false;
    // Parallel segments (det = 0) are tested last, so that the common path has one branch.
    const int onFirst = placeOnRange(nt, det, first.fromClosed, first.toClosed, firstTouched);
    const int onSecond = placeOnRange(nu, det, second.fromClosed, second.toClosed, secondTouched);
    if (det == 0 || onFirst < 0 || onSecond < 0) {
        out = Crossing();
        return false;
    }
    // Of the four end tests, a strictly inside ratio passes both strictly and a touched end
    // passes one.
    const int strict = 2 + onFirst + onSecond;
    out.type = strict == 2 ? 1 : strict == 3 ? 2 : 4;
    if (reversed) out.type = -out.type;
    out.firstTouched = firstTouched;
    out.secondTouched = secondTouched;
    out.t = nt == det ? 1 : nt / det;
    out.u = nu == det ? 1 : nu / det;
    // At the to end the point is that end itself, not from + d1 rounded.
    out.point = out.t == 1 ? first.to : first.from + d1 * out.t;
    return true;
}

/// The common part of two collinear segments, from its end nearest first.from.
struct Overlap {
    Point2d start;               ///< the end nearest first.from
    Point2d end;                 ///< the other end (equal to start for a single shared point)
    double tStart = 0, tEnd = 0; ///< ratios along the first segment, exact at its own ends
    double uStart = 0, uEnd = 0; ///< ratios along the second segment, exact at its own ends
};

/// For segments with d1 x d2 = 0: false when either is degenerate or they lie on distinct
/// lines; otherwise whether their overlap is non-empty (a shared end counts only when both
/// ends are closed), described in `out`.
bool overlapColinear(const SegmentEnds& first, const SegmentEnds& second, Overlap& out);

} // namespace Math::detail
