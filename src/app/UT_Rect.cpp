// UT_Point and UT_Rect: conversions from the geometry types and the rectangle operations.
#include <PlumvaleBaseCore/app/UT_Rect.h>

#include <PlumvaleBaseCore/numerics/TUMaths.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace {

// Sums and differences wrap in 32 bits, as the hardware's do, without signed overflow.
int wrapAdd(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
int wrapSub(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

// Truncation toward zero of v, saturated to the int range.
int truncated(double v) {
    return v < 0 ? TUMaths::iceiling(v) : TUMaths::ifloor(v);
}

// lo < v < hi.
bool strictlyBetween(int v, int lo, int hi) {
    return lo < v && v < hi;
}

} // namespace

UT_Point& UT_Point::operator+=(const UT_Point& p) {
    m_x = wrapAdd(m_x, p.m_x);
    m_y = wrapAdd(m_y, p.m_y);
    return *this;
}

UT_Point& UT_Point::operator-=(const UT_Point& p) {
    m_x = wrapSub(m_x, p.m_x);
    m_y = wrapSub(m_y, p.m_y);
    return *this;
}

UT_Point UT_Point::operator-(const UT_Point& p) const {
    UT_Point r = *this;
    return r -= p;
}

UT_Point UT_Point::operator-() const {
    return UT_Point() - *this;
}

UT_Point UT_Point::fromPoint2d(const Math::Point2d& p) {
    return {truncated(p.x + 0.5), truncated(p.y + 0.5)};
}

UT_Point UT_Point::fromVector2d(const Math::Vector2d& v) {
    return {TUMaths::ifloor(v.x + 0.5), TUMaths::ifloor(v.y + 0.5)};
}

UT_Rect::UT_Rect(const Math::Point2d& topLeft, const Math::Point2d& bottomRight)
    : m_topLeft(UT_Point::fromPoint2d(topLeft)), m_bottomRight(UT_Point::fromPoint2d(bottomRight)) {
}

UT_Rect::UT_Rect(const Math::Box2d& box)
    : m_topLeft(TUMaths::ifloor(box.GetMinPoint().x), TUMaths::ifloor(box.GetMinPoint().y)),
      m_bottomRight(TUMaths::iceiling(box.GetMaxPoint().x),
                    TUMaths::iceiling(box.GetMaxPoint().y)) {}

UT_Rect::UT_Rect(const Math::Rect2d& rect) : UT_Rect(rect.GetBox()) {}

Math::Rect2d UT_Rect::toRect2d() const {
    return {double(Left()), double(Top()), double(Right()), double(Bottom())};
}

void UT_Rect::SetRect(int left, int top, int right, int bottom) {
    m_topLeft = UT_Point(left, top);
    m_bottomRight = UT_Point(right, bottom);
}

UT_Point UT_Rect::CenterPoint() const {
    // In 64 bits: the sum of two ints does not overflow there.
    return {static_cast<int>((std::int64_t(Left()) + Right()) / 2),
            static_cast<int>((std::int64_t(Top()) + Bottom()) / 2)};
}

void UT_Rect::OffsetRect(int dx, int dy) {
    const UT_Point d(dx, dy);
    m_topLeft += d;
    m_bottomRight += d;
}

void UT_Rect::InflateRect(int dx, int dy) {
    if (Left() > Right()) dx = wrapSub(0, dx);
    if (Top() > Bottom()) dy = wrapSub(0, dy);
    DeflateRect(wrapSub(0, dx), wrapSub(0, dy));
}

void UT_Rect::DeflateRect(int dx, int dy) {
    m_topLeft += UT_Point(dx, dy);
    m_bottomRight -= UT_Point(dx, dy);
}

void UT_Rect::NormalizeRect() {
    if (Left() > Right()) std::swap(Left(), Right());
    if (Top() > Bottom()) std::swap(Top(), Bottom());
}

bool UT_Rect::PtInRect(const UT_Point& p) const {
    return Left() <= p.GetX() && p.GetX() < Right() && Top() <= p.GetY() && p.GetY() < Bottom();
}

bool UT_Rect::IntersectRect(const UT_Rect& a, const UT_Rect& b) const {
    const bool vertical = strictlyBetween(b.Left(), a.Left(), a.Right()) ||
                          strictlyBetween(b.Right(), a.Left(), a.Right());
    const bool horizontal = strictlyBetween(b.Top(), a.Top(), a.Bottom()) ||
                            strictlyBetween(b.Bottom(), a.Top(), a.Bottom());
    return vertical && horizontal;
}
