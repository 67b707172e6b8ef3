// PL_DeviceContext: the classic drawing vocabulary over QPainter, with the coordinate clamps.
#include <PlumvaleBaseCore/app/PL_DeviceContext.h>
#include <PlumvaleBaseCore/app/PL_Window.h>

#include <QFontMetrics>
#include <QPainter>
#include <QPixmap>
#include <QPolygon>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {

QColor colourOf(unsigned int c) {
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
                  static_cast<int>((c >> 16) & 0xFF));
}

struct Point64 {
    long long x, y;
};

// Clips one axis of a segment (the `x` members of `a` and `b` through `axis`) to the
// coordinate range, moving an outside end along the line by the integer quotient of the
// differences. False when the segment lies wholly on one side.
template <typename Axis, typename Other>
bool clipAxis(Point64& a, Point64& b, Axis axis, Other other) {
    if (axis(a) > axis(b)) std::swap(a, b);
    if (axis(b) < PL_DeviceContext::kMinCoord || axis(a) > PL_DeviceContext::kMaxCoord)
        return false;
    const long long d = axis(b) - axis(a);
    if (d == 0) return true; // both ends inside on this axis
    const long long slope = (other(b) - other(a)) / d;
    if (axis(a) < PL_DeviceContext::kMinCoord) {
        other(a) += slope * (PL_DeviceContext::kMinCoord - axis(a));
        axis(a) = PL_DeviceContext::kMinCoord;
    }
    if (axis(b) > PL_DeviceContext::kMaxCoord) {
        other(b) -= slope * (axis(b) - PL_DeviceContext::kMaxCoord);
        axis(b) = PL_DeviceContext::kMaxCoord;
    }
    return true;
}

} // namespace

int PL_DeviceContext::ClipCoord(long long v) {
    return static_cast<int>(std::clamp<long long>(v, kMinCoord, kMaxCoord));
}

PL_DeviceContext::PL_DeviceContext(const PL_Window& window) {
    Create(window);
}

PL_DeviceContext::~PL_DeviceContext() {
    releaseOwned();
}

void PL_DeviceContext::releaseOwned() {
    if (m_ownsPainter) delete m_painter;
    m_painter = nullptr;
    m_ownsPainter = false;
}

void PL_DeviceContext::Create(const PL_Window& window) {
    releaseOwned();
    m_painter = window.GetQWidget() ? new QPainter(window.GetQWidget()) : new QPainter();
    m_ownsPainter = true;
}

void PL_DeviceContext::Create(QPixmap& pixmap) {
    releaseOwned();
    m_painter = new QPainter(&pixmap);
    m_ownsPainter = true;
}

UT_Size PL_DeviceContext::GetSize() const {
    if (!m_painter) return UT_Size();
    const QRect v = m_painter->viewport();
    return UT_Size{v.right() - v.left() + 1, v.bottom() - v.top() + 1};
}

bool PL_DeviceContext::GetClipRect(UT_Rect& rect) const {
    if (!m_painter) return false;
    const QRect v = m_painter->viewport();
    if (v.left() > v.right() || v.top() > v.bottom()) return false;
    rect.SetRect(v.left() - m_origin.GetX(), v.top() - m_origin.GetY(), v.right() - m_origin.GetX(),
                 v.bottom() - m_origin.GetY());
    return true;
}

bool PL_DeviceContext::RectIsVisible(const UT_Rect& rect) const {
    if (!m_painter) return false;
    const QRect clamped(QPoint(ClipCoord(rect.Left()), ClipCoord(rect.Top())),
                        QPoint(ClipCoord(rect.Right()), ClipCoord(rect.Bottom())));
    return clamped.normalized().intersects(m_painter->viewport());
}

void PL_DeviceContext::ChangeBrush(unsigned int colour) {
    if (m_painter) m_painter->setBrush(QBrush(colourOf(colour)));
}

void PL_DeviceContext::ChangePen(unsigned int colour, unsigned int width) {
    if (m_painter)
        m_painter->setPen(QPen(QBrush(colourOf(colour)), static_cast<qreal>(width), Qt::SolidLine,
                               Qt::SquareCap, Qt::BevelJoin));
}

int PL_DeviceContext::SetROP2(int mode) {
    QPainter::CompositionMode composition = static_cast<QPainter::CompositionMode>(mode);
    if (mode == DrawReplace) composition = QPainter::CompositionMode_Source;
    if (mode == DrawBlend) composition = QPainter::CompositionMode_SourceOver;
    if (m_painter) m_painter->setCompositionMode(composition);
    return composition == QPainter::CompositionMode_SourceOver ? 1 : 0;
}

void PL_DeviceContext::grow(int x, int y) {
    m_constructed.Left() = std::min(m_constructed.Left(), x);
    m_constructed.Right() = std::max(m_constructed.Right(), x);
    m_constructed.Top() = std::max(m_constructed.Top(), y);
    m_constructed.Bottom() = std::min(m_constructed.Bottom(), y);
}

void PL_DeviceContext::MoveTo(const UT_Point& p) {
    grow(p.GetX(), p.GetY());
    m_current = p;
}

void PL_DeviceContext::LineTo(const UT_Point& p) {
    grow(p.GetX(), p.GetY());
    const long long ox = m_origin.GetX(), oy = m_origin.GetY();
    Point64 a{m_current.GetX() + ox, m_current.GetY() + oy};
    Point64 b{p.GetX() + ox, p.GetY() + oy};
    m_current = p;
    const auto x = [](Point64& q) -> long long& { return q.x; };
    const auto y = [](Point64& q) -> long long& { return q.y; };
    if (!m_painter || !clipAxis(a, b, x, y) || !clipAxis(a, b, y, x)) return;
    // A coarse slope may leave the other axis a little outside: clamped at the end.
    m_painter->drawLine(ClipCoord(a.x), ClipCoord(a.y), ClipCoord(b.x), ClipCoord(b.y));
}

namespace {

// The offset rectangle in Qt's form: x from left to right - 1, y from top to bottom - 1.
QRect offsetRect(const UT_Rect& r, const UT_Point& origin) {
    return QRect(r.Left() + origin.GetX(), r.Top() + origin.GetY(), r.Width(), r.Height());
}

} // namespace

void PL_DeviceContext::FillRect(const UT_Rect& rect) {
    grow(rect.Left(), rect.Top());
    grow(rect.Right(), rect.Bottom());
    if (m_painter) m_painter->fillRect(offsetRect(rect, m_origin), m_painter->brush());
}

void PL_DeviceContext::FrameRect(const UT_Rect& rect) {
    grow(rect.Left(), rect.Top());
    grow(rect.Right(), rect.Bottom());
    if (!m_painter || rect.Width() <= 0 || rect.Height() <= 0) return;
    const QRect r = offsetRect(rect, m_origin);
    m_painter->save();
    m_painter->setBrush(Qt::NoBrush);
    // A one-pixel pen outlines the rectangle's own pixels: Qt's outline reaches one further.
    m_painter->drawRect(r.adjusted(0, 0, -1, -1));
    m_painter->restore();
}

void PL_DeviceContext::Ellipse(int left, int top, int right, int bottom) {
    if (!m_painter) return;
    const long long ox = m_origin.GetX(), oy = m_origin.GetY();
    const QPoint a(ClipCoord(left + ox), ClipCoord(top + oy));
    const QPoint b(ClipCoord(right + ox), ClipCoord(bottom + oy));
    // Qt's outline reaches the box's far edges; the box here excludes them.
    m_painter->drawEllipse(QRect(a.x(), a.y(), b.x() - a.x() - 1, b.y() - a.y() - 1));
}

void PL_DeviceContext::DrawPoint(const UT_Point& p, unsigned int colour) {
    const long long x = p.GetX() + static_cast<long long>(m_origin.GetX());
    const long long y = p.GetY() + static_cast<long long>(m_origin.GetY());
    if (!m_painter || ShouldClipCoord(x) || ShouldClipCoord(y)) return;
    const QPen previous = m_painter->pen();
    QPen pen = previous;
    pen.setColor(colourOf(colour));
    m_painter->setPen(pen);
    m_painter->drawPoint(static_cast<int>(x), static_cast<int>(y));
    m_painter->setPen(previous);
}

void PL_DeviceContext::DrawTextW(const UT_String& text, const UT_Point& p, unsigned int colour) {
    const long long x = p.GetX() + static_cast<long long>(m_origin.GetX());
    const long long y = p.GetY() + static_cast<long long>(m_origin.GetY());
    if (!m_painter || ShouldClipCoord(x) || ShouldClipCoord(y)) return;
    const QPen previous = m_painter->pen();
    m_painter->setPen(colourOf(colour));
    m_painter->drawText(QPoint(static_cast<int>(x), static_cast<int>(y)), text.ToQString());
    m_painter->setPen(previous);
}

int PL_DeviceContext::GetTextSize(const UT_String& text) const {
    return m_painter ? QFontMetrics(m_painter->font()).horizontalAdvance(text.ToQString()) : 0;
}

void PL_DeviceContext::GetFontInfo(int& height, int& descent) const {
    height = descent = 0;
    if (!m_painter) return;
    const QFontMetrics metrics(m_painter->font());
    height = metrics.height();
    descent = metrics.descent();
}

void PL_DeviceContext::FillPolygon(const std::vector<UT_Point>& points) {
    if (!m_painter || points.empty()) return;
    QPolygon polygon;
    polygon.reserve(static_cast<int>(points.size()));
    for (const UT_Point& p : points)
        polygon << QPoint(p.GetX() + m_origin.GetX(), p.GetY() + m_origin.GetY());
    const QPen previous = m_painter->pen();
    m_painter->setPen(Qt::NoPen);
    m_painter->drawPolygon(polygon);
    m_painter->setPen(previous);
}
