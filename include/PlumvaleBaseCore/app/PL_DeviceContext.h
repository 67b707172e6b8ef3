// PL_DeviceContext: a small drawing context with a classic device vocabulary over QPainter.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/app/UT_Rect.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <vector>

class PL_Window;
class QPainter;
class QPixmap;

/// A width and a height in pixels.
struct UT_Size {
    int cx = 0; ///< width
    int cy = 0; ///< height
    bool operator==(const UT_Size& o) const { return cx == o.cx && cy == o.cy; }
};

/// Drawing through a QPainter with an origin added to every coordinate.
///
/// Conventions:
/// - Colours are 0x00BBGGRR (red in the low byte, the upper byte ignored), drawn opaque.
/// - Coordinates are clamped to -16384..16383 (ClipCoord) where a primitive is clamped, and
///   a point outside that range is not drawn (ShouldClipCoord).
/// - Rectangles (UT_Rect) exclude their right and bottom edges: FillRect(0, 0, 4, 2) fills
///   x 0..3 and y 0..1, and FrameRect outlines that same area.
/// - The constructed rectangle starts at (0, 0, 0, 0) and grows by every point and rectangle
///   drawn, before the origin is added; its top collects the largest y and its bottom the
///   smallest (a y-up box), on purpose.
/// - Without a painter, drawing does nothing (the constructed rectangle still grows) and
///   the queries answer 0 or false.
class PLUMVALE_EXPORT PL_DeviceContext {
public:
    /// The composition chosen by SetROP2.
    enum DrawMode : int {
        DrawReplace = 0, ///< the source replaces the destination
        DrawBlend = 1    ///< the source over the destination
    };
    /// The font choice of ChangeFont (accepted and ignored).
    enum Font : int { DefaultFont = 0 };

    /// @{
    /// The coordinate range.
    static constexpr int kMinCoord = -16384;
    static constexpr int kMaxCoord = 16383;
    /// @}
    /// `v` clamped to the coordinate range.
    static int ClipCoord(long long v);
    /// Whether `v` lies outside the coordinate range.
    static bool ShouldClipCoord(long long v) { return v < kMinCoord || v > kMaxCoord; }

    /// No painter.
    PL_DeviceContext() = default;
    /// Draws with `painter`, which it does not own.
    explicit PL_DeviceContext(QPainter* painter) : m_painter(painter) {}
    /// Create(window).
    explicit PL_DeviceContext(const PL_Window& window);
    /// Destroys the painter when it owns it.
    virtual ~PL_DeviceContext();
    PL_DeviceContext(const PL_DeviceContext&) = delete;
    PL_DeviceContext& operator=(const PL_DeviceContext&) = delete;

    /// @{
    /// Creates and owns a painter on the window's widget (one without a device when there
    /// is no widget) or on the pixmap; a painter owned before is destroyed first.
    void Create(const PL_Window& window);
    void Create(QPixmap& pixmap);
    /// @}
    /// @{
    /// The painter; SetPainter does not change who owns which painter.
    void SetPainter(QPainter* painter) { m_painter = painter; }
    QPainter* GetPainter() const { return m_painter; }
    /// @}

    /// @{
    /// The origin added to every coordinate.
    void SetOrigin(const UT_Point& origin) { m_origin = origin; }
    const UT_Point& GetOrigin() const { return m_origin; }
    /// @}
    /// The viewport's width and height (far edge - near edge + 1).
    UT_Size GetSize() const;
    /// The viewport's corners (right and bottom inclusive) minus the origin; false when the
    /// viewport is inverted or there is no painter.
    bool GetClipRect(UT_Rect& rect) const;
    /// Whether `rect`, clamped to the coordinate range, meets the viewport.
    bool RectIsVisible(const UT_Rect& rect) const;
    /// The constructed rectangle.
    void GetConstructedRect(UT_Rect& rect) const { rect = m_constructed; }

    /// A solid brush of `colour`.
    void ChangeBrush(unsigned int colour);
    /// A solid pen of `colour`, `width` pixels wide, square caps and bevel joins.
    void ChangePen(unsigned int colour, unsigned int width);
    /// Mode 0: replace; 1: blend; another value is used as Qt's composition mode number.
    /// 1 when the composition is now the blend (mode 1), 0 otherwise (not the old mode).
    int SetROP2(int mode);

    /// Sets the current position (growing the constructed rectangle).
    void MoveTo(const UT_Point& p);
    /// A line from the current position to `p`, clipped to the coordinate range (the slope
    /// is the integer quotient of the differences, so steep lines clip coarsely; a vertical
    /// or horizontal line is clamped); `p` becomes the current position.
    void LineTo(const UT_Point& p);
    /// Fills `rect` with the brush.
    void FillRect(const UT_Rect& rect);
    /// Outlines `rect` with the pen.
    void FrameRect(const UT_Rect& rect);
    /// The ellipse in the box left, top, right (excluded), bottom (excluded), each corner
    /// clamped after the origin is added. Does not grow the constructed rectangle.
    void Ellipse(int left, int top, int right, int bottom);
    /// One point of `colour`, as wide as the pen, when it lies in the range; the pen is
    /// restored afterwards.
    void DrawPoint(const UT_Point& p, unsigned int colour);
    /// `text` in `colour` with its baseline starting at `p`, when `p` lies in the range.
    void DrawTextW(const UT_String& text, const UT_Point& p, unsigned int colour);
    /// The width of `text` in the current font; 0 without a painter.
    int GetTextSize(const UT_String& text) const;
    /// The current font's height and descent; both 0 without a painter.
    void GetFontInfo(int& height, int& descent) const;
    /// Fills the polygon with the brush (no outline).
    void FillPolygon(const std::vector<UT_Point>& points);

    /// @{
    /// Accepted and ignored.
    void BitBlt(int /*x*/, int /*y*/, int /*width*/, int /*height*/, PL_DeviceContext* /*source*/,
                int /*sourceX*/, int /*sourceY*/) {}
    void SetAntiAliasing(bool) {}
    void ChangeFont(Font) {}
    /// @}

private:
    void grow(int x, int y);
    void releaseOwned();

    QPainter* m_painter = nullptr;
    UT_Point m_origin;
    UT_Point m_current;
    UT_Rect m_constructed;
    bool m_ownsPainter = false;
};
