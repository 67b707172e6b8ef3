// The 2D segment with open or closed ends, and the records of where two segments meet.
#pragma once

#include <PlumvaleBaseCore/math/Box.h>

namespace Math {

/// 2D segment from `GetFromPoint()` to `GetToPoint()`, each end open or closed.
///
/// Conventions:
/// - Ratios run along the segment: 0 at from, 1 at to; `Interpolate(t)` = from + t (to - from).
/// - Every meeting test is exact: cross products are compared with 0 and with the determinant,
///   never with a tolerance. An end touches another segment only when its boundary is
///   `Constants::Closed`; an open end is excluded from the segment.
/// - Sides are seen walking from `from` to `to`: left is the counter-clockwise side (y up).
/// - Equality compares both points and both boundaries exactly.
class PLUMVALE_EXPORT Segment2d {
public:
    class Intersection;
    struct IntersectionType;
    struct PointInfo;
    struct IntersectionLess;
    struct IntersectionGreater;

    /// @{
    /// Both ends at the origin; from two points; from a point and a vector (to = from + v);
    /// all with closed ends. The four-argument form sets the boundaries too.
    constexpr Segment2d() = default;
    constexpr Segment2d(const Point2d& from, const Point2d& to) : m_from(from), m_to(to) {}
    Segment2d(const Point2d& from, const Vector2d& v) : m_from(from), m_to(from + v) {}
    constexpr Segment2d(const Point2d& from, Constants::Boundary fromBoundary, const Point2d& to,
                        Constants::Boundary toBoundary)
        : m_from(from), m_to(to), m_fromBoundary(fromBoundary), m_toBoundary(toBoundary) {}
    /// @}

    /// @{
    /// The ends and their boundaries.
    const Point2d& GetFromPoint() const { return m_from; }
    const Point2d& GetToPoint() const { return m_to; }
    void SetFromPoint(const Point2d& p) { m_from = p; }
    void SetToPoint(const Point2d& p) { m_to = p; }
    void setFromPoint(double x, double y) { m_from = {x, y}; }
    void setToPoint(double x, double y) { m_to = {x, y}; }
    void SetFrom(const Point2d& p, Constants::Boundary b) { m_from = p, m_fromBoundary = b; }
    void SetTo(const Point2d& p, Constants::Boundary b) { m_to = p, m_toBoundary = b; }
    Constants::Boundary GetFromBoundary() const { return m_fromBoundary; }
    Constants::Boundary GetToBoundary() const { return m_toBoundary; }
    void SetFromBoundary(Constants::Boundary b) { m_fromBoundary = b; }
    void SetToBoundary(Constants::Boundary b) { m_toBoundary = b; }
    /// @}

    /// to - from.
    Vector2d GetVector() const { return m_to - m_from; }
    /// The unit vector a quarter turn counter-clockwise from GetVector() (pointing left);
    /// (0, 0) for a degenerate segment.
    Vector2d GetNormal() const { return GetVector().GetRotated90().GetNormalizedVector(); }
    /// @{
    /// The distance between the ends, and its square.
    double GetLength() const { return GetVector().GetLength(); }
    double GetLengthSq() const { return GetVector().GetLengthSq(); }
    /// @}
    /// from and to exchanged, each with its boundary.
    Segment2d GetInverse() const { return {m_to, m_toBoundary, m_from, m_fromBoundary}; }
    /// from + t (to - from), for any t.
    Point2d Interpolate(double t) const { return Point2d::Interpolate(t, m_from, m_to); }
    /// The ratio of p's projection on the segment's line, not clamped; 0 when degenerate.
    double GetProjectedRatio(const Point2d& p) const {
        return (p - m_from).GetProjectedRatio(GetVector());
    }
    /// The point of the segment nearest p (boundaries ignored): the projection clamped to the
    /// ends; from for a degenerate segment.
    Point2d GetClosestPoint(const Point2d& p) const;
    /// @{
    /// The distance (its square) from p to GetClosestPoint(p).
    double GetDistance(const Point2d& p) const { return p.GetDistance(GetClosestPoint(p)); }
    double GetDistanceSq(const Point2d& p) const { return p.GetDistanceSq(GetClosestPoint(p)); }
    /// @}
    /// The closed box of the two ends (the ends' boundaries are not carried to the box).
    Box2d GetBox() const { return Box2d(m_from, m_to); }
    /// Both ends to the nearest multiple of q.
    void Round(double q) {
        m_from.Round(q);
        m_to.Round(q);
    }
    /// Both ends exactly equal.
    bool IsDegenerate() const { return m_from == m_to; }
    /// The two vectors are parallel (exact; a degenerate segment is parallel to everything).
    bool IsParallel(const Segment2d& s) const { return GetVector().IsParallel(s.GetVector()); }

    /// p lies on the segment: exactly on its line, between its ends, and not on an open end.
    /// A degenerate segment holds only its point, and only when both ends are closed.
    bool OnSegment(const Point2d& p) const;
    /// @{
    /// The side of p against the segment's infinite line, from the exact sign of
    /// det(to - from, p - from). Every point is "on" a degenerate segment's line.
    bool LeftOfSegment(const Point2d& p) const { return GetSide(p) > 0; }
    bool LeftOfOrOnSegment(const Point2d& p) const { return GetSide(p) >= 0; }
    bool RightOfSegment(const Point2d& p) const { return GetSide(p) < 0; }
    bool RightOfOrOnSegment(const Point2d& p) const { return GetSide(p) <= 0; }
    /// @}
    /// 1 when p is left of the line, -1 when right of it, 0 when exactly on it.
    int GetSide(const Point2d& p) const {
        return TUMaths::sign(GetVector().GetDeterminant(p - m_from));
    }

    /// GetIntersection(s, ...) > 0.
    bool IsIntersecting(const Segment2d& s) const;
    /// Fills `first` (and `second`) with where this segment meets s; returns how many: 0; 1
    /// for segments that are not parallel; 2 for collinear segments whose overlap is not empty,
    /// `first` at the overlap's end nearest this segment's from end and `second` at the other
    /// (both the same point when the overlap is a shared end). Degenerate segments give 0.
    int GetIntersection(const Segment2d& s, Intersection& first, Intersection& second) const;
    /// The exact crossing test of two non-parallel segments, boundaries applied: false for
    /// parallel or collinear segments or when they miss; `type` is reset first either way.
    bool GetNonColinearIntersection(const Segment2d& s, IntersectionType& type) const;
    /// Where the two infinite lines meet, ratios unbounded and ends ignored; false (record
    /// untouched) when the segments are parallel, degenerate ones included.
    bool GetLineIntersection(const Segment2d& s, Intersection& record) const;
    /// The shortest distance between the two closed segments into `distance`, with `first` on
    /// this segment and `second` on s its two ends. True when there is a gap: the segments
    /// stay more than 1/64 apart. Meeting or closer segments give false (outputs still set).
    bool GetGap(const Segment2d& s, double& distance, Point2d& first, Point2d& second) const;
    /// The segment (ends taken closed) meets the outline of the box (sides taken closed):
    /// it meets the box but does not lie strictly inside it. False for an empty box.
    bool isLineIntersectingLine(const Box2d& box) const;
    /// The segment (ends taken closed) has a point in the box (sides taken closed), outline
    /// included. False for an empty box.
    bool isLineIntersectingArea(const Box2d& box) const;

    /// @{
    /// Both ends mapped by m; boundaries kept.
    Segment2d operator*(const Matrix2x3& m) const;
    Segment2d& operator*=(const Matrix2x3& m) { return *this = *this * m; }
    /// @}
    /// @{
    /// Exact on both points and both boundaries.
    bool operator==(const Segment2d& s) const {
        return m_from == s.m_from && m_to == s.m_to && m_fromBoundary == s.m_fromBoundary &&
               m_toBoundary == s.m_toBoundary;
    }
    bool operator!=(const Segment2d& s) const { return !(*this == s); }
    /// @}

private:
    Point2d m_from;
    Point2d m_to;
    Constants::Boundary m_fromBoundary = Constants::Closed;
    Constants::Boundary m_toBoundary = Constants::Closed;
};

/// Result of `Segment2d::GetNonColinearIntersection`.
struct PLUMVALE_EXPORT Segment2d::IntersectionType {
    /// 1: the segments meet at an end of each; 2: an end of one touches the interior of the
    /// other; 4: a proper crossing; 0 when they do not meet. Negative when det(d1, d2) < 0,
    /// that is when the argument crosses the receiver from its left to its right.
    int type = 0;
    /// @{
    /// The meeting point.
    double x = 0;
    double y = 0;
    /// @}
    double t = 0;                 ///< ratio along the receiver, exactly 1 at its to end
    double u = 0;                 ///< ratio along the argument, exactly 1 at its to end
    bool argumentTouched = false; ///< the point is an end of the argument
    bool receiverTouched = false; ///< the point is an end of the receiver
};

/// A record used to order meeting points along one segment: the ratio on it, then the index
/// of the other segment (ties broken by index so that the order is strict).
struct PLUMVALE_EXPORT Segment2d::PointInfo {
    double ratio = 0; ///< ratio along the segment the points are ordered on
    int index = -1;   ///< which other segment made the point; -1 when none
    bool operator<(const PointInfo& p) const {
        return ratio < p.ratio || (ratio == p.ratio && index < p.index);
    }
    bool operator==(const PointInfo& p) const { return ratio == p.ratio && index == p.index; }
};

/// One meeting point seen from both segments: the receiver half (its point, the edges that
/// leave the point backward and forward along it, its ratio), then the same for the argument.
///
/// The backward vector is -(to - from) unless the ratio is 0 or less, when it is (0, 0); the
/// forward vector is (to - from) unless the ratio is 1 or more, when it is (0, 0). A non-zero
/// vector is therefore an edge of the outline leaving the meeting point, which is what
/// direction walking uses.
class PLUMVALE_EXPORT Segment2d::Intersection {
public:
    /// The four edges that may leave the meeting point.
    enum Direction {
        ReceiverBackward = 0,
        ReceiverForward = 1,
        ArgumentBackward = 2,
        ArgumentForward = 3,
        NoDirection = -1 ///< returned when no edge qualifies
    };

    /// @{
    /// Receiver half.
    Point2d point;
    Vector2d backward;
    Vector2d forward;
    double ratio = 0;
    /// @}
    /// @{
    /// Argument half.
    Point2d argumentPoint;
    Vector2d argumentBackward;
    Vector2d argumentForward;
    double argumentRatio = 0;
    /// @}

    /// Sets one half from a segment's vector and the ratio on it (the vectors follow the rule
    /// above).
    void SetReceiver(const Point2d& p, const Vector2d& segmentVector, double t);
    void SetArgument(const Point2d& p, const Vector2d& segmentVector, double t);

    /// Exchanges the receiver and argument halves; the cached cotangent and turn sign change
    /// sign (they measure the argument from the receiver), the walk count is kept.
    void Swap();

    /// The vector of one of the four directions; (0, 0) for NoDirection.
    Vector2d GetVector(Direction d) const;
    /// computeCotan(), and resets the walk count.
    void ComputeDirections();
    /// Caches and returns the cotangent of the angle from the receiver's direction to the
    /// argument's: dot/det of the two segment vectors, an infinity carrying the sign of the
    /// dot product for parallel ones, NaN when a half has no direction. Also caches the sign
    /// of that turn (1 left, -1 right, 0 parallel).
    double computeCotan();
    /// The cached sign of the turn from the receiver's direction to the argument's.
    int GetTurn() const { return static_cast<int>(m_turn); }
    /// Counts one more walk through this point; returns the count so far. Lets an outline
    /// walker see that it came back to a point it already left.
    int AddDirection() { return static_cast<int>(++m_walks); }
    /// The next non-zero direction met turning counter-clockwise from `from` (an edge
    /// leaving the point), `from` itself excluded; an edge pointing the same way as `from`
    /// counts as a full turn, so it comes last. NoDirection when no other edge exists.
    Direction GetNextDirection(Direction from) const;
    /// As GetNextDirection, skipping edges pointing the same way as `from` (collinear
    /// overlaps).
    Direction GetNextNonAlignedDirection(Direction from) const;

    /// @{
    /// Orders on the receiver's ratio (IsLess / IsGreater) or on the argument's ratio, the
    /// side the meeting came from (IsLessFrom / IsGreaterFrom); ties on the first ratio are
    /// broken by the other one.
    bool IsLess(const Intersection& b) const;
    bool IsGreater(const Intersection& b) const { return b.IsLess(*this); }
    bool IsLessFrom(const Intersection& b) const;
    bool IsGreaterFrom(const Intersection& b) const { return b.IsLessFrom(*this); }
    /// @}
    /// The stretch of the receiver between this record and b has a length: their receiver
    /// ratios differ.
    bool IsGap(const Intersection& b) const { return ratio != b.ratio; }

private:
    Direction nextDirection(Direction from, bool skipAligned) const;

    double m_walks = 0;
    double m_cotan = 0;
    double m_turn = 0;
};

/// @{
/// Comparison objects for sorted containers, on `Intersection::IsLess` and `IsGreater`.
struct Segment2d::IntersectionLess {
    bool operator()(const Intersection& a, const Intersection& b) const { return a.IsLess(b); }
};
struct Segment2d::IntersectionGreater {
    bool operator()(const Intersection& a, const Intersection& b) const { return a.IsGreater(b); }
};
/// @}

} // namespace Math
