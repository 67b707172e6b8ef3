// Boxes: Box2d with open or closed sides, Box3d, the integer cell box Box2di and Rect2d.
#pragma once

#include <PlumvaleBaseCore/math/Vector3d.h>

namespace Math {

/// Integer box over the half-open cell ranges [x, x + width) x [y, y + height).
/// Width and height are never negative: every constructor and mutator clamps them at 0.
/// A box with a width or height below 1 is empty.
class PLUMVALE_EXPORT Box2di {
public:
    /// @{
    /// The empty box at (0, 0), or the box with the given origin and size (a negative width
    /// or height is clamped to 0, which makes the box empty).
    constexpr Box2di() = default;
    Box2di(int x, int y, int width, int height)
        : m_x(x), m_y(y), m_width(clamp(width)), m_height(clamp(height)) {}
    Box2di(const Point2di& origin, const Size2di& size)
        /// @}
        : Box2di(origin.x, origin.y, size.width, size.height) {}
    /// Origin at the smaller coordinates, size |p2 - p1|: p2 itself is not covered.
    Box2di(const Point2di& p1, const Point2di& p2);

    /// One shared all-zero box.
    static const Box2di& emptyBox();

    /// @{
    /// Origin, size, and the first covered column and row (x1, y1).
    int x() const { return m_x; }
    int y() const { return m_y; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    int x1() const { return m_x; }
    int y1() const { return m_y; }
    /// @}
    /// One past the last covered cell.
    int x2() const { return m_x + m_width; }
    /// One past the last covered row.
    int y2() const { return m_y + m_height; }
    /// @{
    /// Corners, origin and size as values, and their setters (the size clamped at 0).
    Point2di p1() const { return {x1(), y1()}; }
    Point2di p2() const { return {x2(), y2()}; }
    Point2di origin() const { return {m_x, m_y}; }
    Size2di size() const { return {m_width, m_height}; }
    void setOrigin(int x, int y) { m_x = x, m_y = y; }
    void setSize(int width, int height) { m_width = clamp(width), m_height = clamp(height); }
    /// @}

    /// @{
    /// Empty when the width or height is below 1; the area is width times height (0 when empty).
    bool hasNullArea() const { return m_width < 1 || m_height < 1; }
    bool isEmpty() const { return hasNullArea(); }
    int area() const { return m_width * m_height; }
    /// @}

    /// Grows to cover the cell (x, y); an empty box becomes that single cell.
    void add(int x, int y);
    /// add(p.x, p.y).
    void add(const Point2di& p) { add(p.x, p.y); }
    /// Union.
    void add(const Box2di& b) { *this = getUnion(b); }
    /// An empty receiver is left exactly as it is; an empty argument clears the receiver.
    void intersect(const Box2di& b);
    /// @{
    /// The overlap and the covering box as new boxes. The intersection of an empty receiver is
    /// the receiver; with an empty argument, or without overlap, it is the empty box. The union
    /// with an empty box is the other box.
    Box2di getIntersection(const Box2di& b) const;
    Box2di getUnion(const Box2di& b) const;
    /// @}
    /// @{
    /// Moves every side outward by d (inward for a negative d), clamping the size at 0;
    /// the two-value form moves the x sides by dx and the y sides by dy.
    void enlarge(int d) { enlarge(d, d); }
    void enlarge(int dx, int dy);
    /// @}
    /// A copy enlarged by d on every side.
    Box2di getEnlarged(int d) const {
        Box2di b(*this);
        b.enlarge(d);
        return b;
    }
    /// Makes this the empty box at (0, 0).
    void reset() { *this = Box2di(); }

    /// @{
    /// Cell and box tests over the half-open ranges; always false when either box is empty.
    bool isContaining(int x, int y) const;
    bool isContaining(const Point2di& p) const { return isContaining(p.x, p.y); }
    bool isContaining(const Box2di& b) const;
    bool isIntersecting(const Box2di& b) const;
    /// @}

    /// @{
    /// Exact comparison of origin and size (two empty boxes may differ).
    bool operator==(const Box2di& b) const {
        return m_x == b.m_x && m_y == b.m_y && m_width == b.m_width && m_height == b.m_height;
    }
    bool operator!=(const Box2di& b) const { return !(*this == b); }
    /// @}

private:
    static int clamp(int v) { return v < 0 ? 0 : v; }

    int m_x = 0;
    int m_y = 0;
    int m_width = 0;
    int m_height = 0;
};

/// Rectangle given by two corners in no required order.
class PLUMVALE_EXPORT Rect2d {
public:
    /// @{
    /// The two corners' coordinates, in no required order.
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    /// @}

    /// @{
    /// The all-zero rectangle, or the corners given (not reordered).
    constexpr Rect2d() = default;
    constexpr Rect2d(double l, double t, double r, double b)
        : left(l), top(t), right(r), bottom(b) {}
    constexpr Rect2d(const Point2d& topLeft, const Point2d& bottomRight)
        /// @}
        : left(topLeft.x), top(topLeft.y), right(bottomRight.x), bottom(bottomRight.y) {}
    /// Corners (x1, y1) and (x2, y2) of the box.
    explicit Rect2d(const Box2di& b) : left(b.x1()), top(b.y1()), right(b.x2()), bottom(b.y2()) {}

    /// @{
    /// The corners as given, and the width and height as absolute differences.
    Point2d topLeft() const { return {left, top}; }
    Point2d bottomRight() const { return {right, bottom}; }
    double width() const { return std::fabs(right - left); }
    double height() const { return std::fabs(bottom - top); }
    /// @}
    /// The closed box spanned by the two corners.
    Box2d GetBox() const;
    /// @{
    /// Tests of the four coordinates: NaN, an infinity, either of them.
    bool hasNan() const { return detail::anyNan(&left, 4); }
    bool hasInfinity() const { return detail::anyInfinity(&left, 4); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    /// @}
    /// @{
    /// Exact comparison of the four coordinates as stored.
    bool operator==(const Rect2d& r) const {
        return left == r.left && top == r.top && right == r.right && bottom == r.bottom;
    }
    bool operator!=(const Rect2d& r) const { return !(*this == r); }
    /// @}
};

/// 2D box whose four sides are each open (coordinate excluded) or closed (included).
/// Equality compares the coordinates and boundary kinds and ignores the empty flag.
class PLUMVALE_EXPORT Box2d {
public:
    /// Empty, coordinates 0, all sides closed.
    Box2d() = default;
    /// The single closed point p.
    explicit Box2d(const Point2d& p) : m_empty(false), m_min(p), m_max(p) {}
    /// The closed box spanning two corners given in any order.
    Box2d(const Point2d& a, const Point2d& b) { SetPoints(a, b); }
    /// Empty for an empty b; otherwise (x, y) to (x + width, y + height), closed.
    explicit Box2d(const Box2di& b);

    /// Sets the empty flag only; coordinates and boundary kinds stay.
    void Reset() { m_empty = true; }
    /// @{
    /// Grows the box to cover p with closed sides (Add is AddClosed), or to reach p with open
    /// sides (AddOpen: on a side p already lies on, the side's kind is kept). An empty box
    /// becomes the single point p with all four sides of that kind.
    void AddClosed(const Point2d& p);
    void AddOpen(const Point2d& p);
    void Add(const Point2d& p) { AddClosed(p); }
    /// @}
    /// AddClosed for Constants::Closed, AddOpen for any other value.
    void Add(const Point2d& p, Constants::Boundary b) {
        if (b == Constants::Closed)
            AddClosed(p);
        else
            AddOpen(p);
    }
    /// Union; on equal coordinates a closed side wins over an open one.
    void Add(const Box2d& b);
    /// Widens a non-empty all-closed box without touching the flag or the kinds.
    void FastAddOnClosedBox(const Point2d& p);
    /// Nothing on an empty box or for d <= 0.
    void Enlarge(double d) { Enlarge(d, d); }
    /// Moves the x sides out by dx and the y sides by dy; a value <= 0 leaves that axis alone.
    void Enlarge(double dx, double dy);
    /// Floors the min and ceils the max point to multiples of q: the box only grows.
    void Round(double q);
    /// min and max of the two corners per coordinate; marks the box non-empty and keeps the
    /// boundary kinds.
    void SetPoints(const Point2d& a, const Point2d& b);

    /// Whether the empty flag is set (coordinates are kept while it is).
    bool IsEmpty() const { return m_empty; }
    /// @{
    /// Exact tests honouring each side's kind: a point on an open side is outside, and two
    /// boxes that meet only on sides that are open on either one do not intersect. False when
    /// either box is empty.
    bool IsContaining(const Point2d& p) const;
    bool IsContaining(const Box2d& b) const;
    bool IsIntersecting(const Box2d& b) const;
    /// @}
    /// The overlap (larger mins, smaller maxes); when there is none, a zero-size rectangle
    /// at this box's centre. Flags and boundary kinds are not consulted.
    Rect2d GetIntersectingRect(const Box2d& b) const;
    /// p clamped into [min, max] per coordinate; p itself for an empty box.
    Point2d GetClip(const Point2d& p) const;
    /// The midpoint of the corners (also of an empty box's kept coordinates).
    Point2d GetCenter() const { return {(m_min.x + m_max.x) * 0.5, (m_min.y + m_max.y) * 0.5}; }
    /// @{
    /// Width, height and area; 0 for an empty box.
    double GetWidth() const { return m_empty ? 0 : m_max.x - m_min.x; }
    double GetHeight() const { return m_empty ? 0 : m_max.y - m_min.y; }
    double GetArea() const { return GetWidth() * GetHeight(); }
    /// @}
    /// 2 (width + height), or 0 when that reaches 40,000,000.
    double GetPerimeter() const;
    /// 0 inside, the gap to a side, or the distance to the nearest corner.
    double GetDistance(const Point2d& p) const;
    /// The square of GetDistance(); 0 for an empty box.
    double GetDistanceSq(const Point2d& p) const;
    /// @{
    /// The corners and the kind of each side.
    const Point2d& GetMinPoint() const { return m_min; }
    const Point2d& GetMaxPoint() const { return m_max; }
    Constants::Boundary GetMinXBoundary() const { return m_minXB; }
    Constants::Boundary GetMinYBoundary() const { return m_minYB; }
    Constants::Boundary GetMaxXBoundary() const { return m_maxXB; }
    Constants::Boundary GetMaxYBoundary() const { return m_maxYB; }
    /// @}
    /// The corners (min x, min y), (min x, max y), (max x, max y), (max x, min y); false and
    /// nothing written for an empty box or a null array.
    bool asArray(Point2d corners[4]) const;
    /// Floor of the min and ceiling of the max coordinates.
    Box2di toBox2di() const;
    /// The rectangle from the min to the max corner.
    Rect2d GetRect() const { return Rect2d(m_min, m_max); }

    /// @{
    /// Tests of the corner coordinates.
    bool hasNan() const { return m_min.hasNan() || m_max.hasNan(); }
    bool hasInfinity() const { return m_min.hasInfinity() || m_max.hasInfinity(); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    /// @}

    /// @{
    /// Compares the corners and the four side kinds; the empty flag is not compared.
    bool operator==(const Box2d& b) const {
        return m_min == b.m_min && m_max == b.m_max && m_minXB == b.m_minXB &&
               m_minYB == b.m_minYB && m_maxXB == b.m_maxXB && m_maxYB == b.m_maxYB;
    }
    bool operator!=(const Box2d& b) const { return !(*this == b); }
    /// @}

    /// Lexicographic by min x, min y, max x, max y.
    struct PLUMVALE_EXPORT BoxLessXY {
        bool operator()(const Box2d& a, const Box2d& b) const;
    };
    /// Lexicographic by min y, min x, max y, max x.
    struct PLUMVALE_EXPORT BoxLessYX {
        bool operator()(const Box2d& a, const Box2d& b) const;
    };

private:
    bool m_empty = true;
    Point2d m_min;
    Point2d m_max;
    Constants::Boundary m_minXB = Constants::Closed;
    Constants::Boundary m_minYB = Constants::Closed;
    Constants::Boundary m_maxXB = Constants::Closed;
    Constants::Boundary m_maxYB = Constants::Closed;
};

inline Box2d Rect2d::GetBox() const {
    return Box2d(topLeft(), bottomRight());
}

/// 3D box with closed sides.
class PLUMVALE_EXPORT Box3d {
public:
    /// Empty, coordinates 0.
    Box3d() = default;
    /// The single point p.
    explicit Box3d(const Point3d& p) : m_empty(false), m_min(p), m_max(p) {}
    /// The box spanning two corners given in any order.
    Box3d(const Point3d& a, const Point3d& b);
    /// The x/y extent of b with a z range of 0; empty when b is.
    explicit Box3d(const Box2d& b);

    /// @{
    /// Sets the empty flag only (coordinates stay); add() grows the box to cover p, and an empty
    /// box becomes the point p.
    void reset() { m_empty = true; }
    void add(const Point3d& p);
    /// @}
    /// Union.
    void add(const Box3d& b);
    /// Nothing on an empty box or for d <= 0.
    void enlarge(double d);
    /// Floors the min and ceils the max point to multiples of q.
    void round(double q);

    /// @{
    /// Closed tests, boundary included; false when either box is empty.
    bool isEmpty() const { return m_empty; }
    bool isContaining(const Point3d& p) const;
    bool isContaining(const Box3d& b) const;
    bool isIntersecting(const Box3d& b) const;
    /// @}
    /// The midpoint of the corners.
    Point3d center() const {
        return {(m_min.x + m_max.x) * 0.5, (m_min.y + m_max.y) * 0.5, (m_min.z + m_max.z) * 0.5};
    }
    /// @{
    /// The extents along x, y and z; 0 for an empty box.
    double width() const { return m_empty ? 0 : m_max.x - m_min.x; }
    double height() const { return m_empty ? 0 : m_max.y - m_min.y; }
    double depth() const { return m_empty ? 0 : m_max.z - m_min.z; }
    /// @}
    /// @{
    /// The corners.
    const Point3d& minPoint() const { return m_min; }
    const Point3d& maxPoint() const { return m_max; }
    /// @}
    /// The eight corners, x varying fastest, then y, then z; false for an empty box or a
    /// null array.
    bool asArray(Point3d corners[8]) const;
    /// Closed box of the x/y extent; empty when this box is.
    Box2d asBox2d() const;
    /// @{
    /// Tests of the two corners' coordinates (an empty box included): NaN, an infinity, either.
    bool hasNan() const { return m_min.hasNan() || m_max.hasNan(); }
    bool hasInfinity() const { return m_min.hasInfinity() || m_max.hasInfinity(); }
    bool hasNanOrInfinity() const { return hasNan() || hasInfinity(); }
    /// @}

    /// @{
    /// Compares the corners only; the empty flag is not compared, as in Box2d.
    bool operator==(const Box3d& b) const { return m_min == b.m_min && m_max == b.m_max; }
    bool operator!=(const Box3d& b) const { return !(*this == b); }
    /// @}

private:
    bool m_empty = true;
    Point3d m_min;
    Point3d m_max;
};

} // namespace Math
