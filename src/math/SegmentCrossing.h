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

/// The exact test: the cross products are compared with 0 and with the determinant, never
/// with a tolerance. False when the segments are parallel (collinear included) or do not
/// meet; `out` is reset first either way.
bool crossNonColinear(const SegmentEnds& first, const SegmentEnds& second, Crossing& out);

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
