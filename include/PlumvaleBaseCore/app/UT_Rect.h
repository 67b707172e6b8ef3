// UT_Point and UT_Rect: integer points and rectangles for pixel work.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/math/Box.h>

/// An integer point; y grows downward in pixel work, so points order by y first.
class PLUMVALE_EXPORT UT_Point {
public:
    /// @{
    /// (0, 0), or (x, y).
    constexpr UT_Point() = default;
    constexpr UT_Point(int x, int y) : m_x(x), m_y(y) {}
    /// @}

    /// @{
    /// The coordinates, also as modifiable references.
    int GetX() const { return m_x; }
    int GetY() const { return m_y; }
    int& GetX() { return m_x; }
    int& GetY() { return m_y; }
    /// @}

    /// @{
    /// Exact comparison; `<` orders by y, then x.
    bool operator==(const UT_Point& p) const { return m_x == p.m_x && m_y == p.m_y; }
    bool operator!=(const UT_Point& p) const { return !(*this == p); }
    bool operator<(const UT_Point& p) const { return m_y < p.m_y || (m_y == p.m_y && m_x < p.m_x); }
    /// @}

    /// @{
    /// Componentwise arithmetic, wrapping in 32 bits as the hardware does.
    UT_Point& operator+=(const UT_Point& p);
    UT_Point& operator-=(const UT_Point& p);
    UT_Point operator-(const UT_Point& p) const;
    UT_Point operator-() const;
    /// @}

    /// Each coordinate plus 0.5, truncated toward zero: (-1.7, 0) gives (-1, 0). Out of the
    /// int range (or NaN) the result saturates as TUMaths does.
    static UT_Point fromPoint2d(const Math::Point2d& p);
    /// Each coordinate plus 0.5, floored: (-1.7, 0) gives (-2, 0). The two conversions round
    /// negative halves differently, deliberately.
    static UT_Point fromVector2d(const Math::Vector2d& v);

private:
    int m_x = 0;
    int m_y = 0;
};

/// An integer rectangle: left, top, right, bottom, the first two the top-left corner and the
/// last two the bottom-right one. Right and bottom are excluded (PtInRect); nothing keeps
/// left <= right or top <= bottom but NormalizeRect(). Arithmetic wraps in 32 bits.
class PLUMVALE_EXPORT UT_Rect {
public:
    /// All 0.
    constexpr UT_Rect() = default;
    /// The arguments in the order top, left, bottom, right: deliberately not SetRect's.
    constexpr UT_Rect(int top, int left, int bottom, int right)
        : m_topLeft(left, top), m_bottomRight(right, bottom) {}
    /// The two corners.
    constexpr UT_Rect(const UT_Point& topLeft, const UT_Point& bottomRight)
        : m_topLeft(topLeft), m_bottomRight(bottomRight) {}
    /// Each corner by UT_Point::fromPoint2d.
    UT_Rect(const Math::Point2d& topLeft, const Math::Point2d& bottomRight);
    /// @{
    /// Left and top the floor of the minimum corner, right and bottom the ceiling of the
    /// maximum corner: the smallest rectangle of whole pixels covering the box. An empty
    /// Box2d is read from the coordinates it keeps.
    explicit UT_Rect(const Math::Box2d& box);
    explicit UT_Rect(const Math::Rect2d& rect);
    /// @}

    /// The four values as doubles, unchanged.
    Math::Rect2d toRect2d() const;
    /// Sets left, top, right, bottom.
    void SetRect(int left, int top, int right, int bottom);
    /// Right becomes left and bottom becomes top: empty, at the same position.
    void SetRectEmpty() { m_bottomRight = m_topLeft; }

    /// @{
    /// The fields, also as modifiable references.
    int Left() const { return m_topLeft.GetX(); }
    int Top() const { return m_topLeft.GetY(); }
    int Right() const { return m_bottomRight.GetX(); }
    int Bottom() const { return m_bottomRight.GetY(); }
    int& Left() { return m_topLeft.GetX(); }
    int& Top() { return m_topLeft.GetY(); }
    int& Right() { return m_bottomRight.GetX(); }
    int& Bottom() { return m_bottomRight.GetY(); }
    const UT_Point& TopLeft() const { return m_topLeft; }
    const UT_Point& BottomRight() const { return m_bottomRight; }
    UT_Point& TopLeft() { return m_topLeft; }
    UT_Point& BottomRight() { return m_bottomRight; }
    /// @}

    /// @{
    /// right - left and bottom - top (negative for an inverted rectangle).
    int Width() const { return Right() - Left(); }
    int Height() const { return Bottom() - Top(); }
    /// @}
    /// ((left + right) / 2, (top + bottom) / 2), the division truncating toward zero.
    UT_Point CenterPoint() const;

    /// Adds dx to left and right, dy to top and bottom.
    void OffsetRect(int dx, int dy);
    /// Moves left and right apart by dx each, top and bottom by dy each; on an axis whose
    /// first coordinate exceeds its second the amount is negated, so an inverted rectangle
    /// grows too.
    void InflateRect(int dx, int dy);
    /// left += dx, top += dy, right -= dx, bottom -= dy, without InflateRect's inversion
    /// handling: a deliberate asymmetry.
    void DeflateRect(int dx, int dy);
    /// Swaps left/right and top/bottom where needed, so that left <= right, top <= bottom.
    void NormalizeRect();

    /// left <= x < right and top <= y < bottom.
    bool PtInRect(const UT_Point& p) const;
    /// Whether a corner of `b` lies strictly inside `a`: a vertical edge of b strictly
    /// between a's left and right, and a horizontal edge strictly between its top and
    /// bottom. False when b encloses a or they only touch. This object is neither used nor
    /// changed.
    bool IntersectRect(const UT_Rect& a, const UT_Rect& b) const;

    /// @{
    /// Exact comparison of the four values.
    bool operator==(const UT_Rect& r) const {
        return m_topLeft == r.m_topLeft && m_bottomRight == r.m_bottomRight;
    }
    bool operator!=(const UT_Rect& r) const { return !(*this == r); }
    /// @}

private:
    UT_Point m_topLeft;
    UT_Point m_bottomRight;
};
