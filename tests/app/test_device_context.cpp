// Tests of the device context on an offscreen image: pixels of each primitive, the clamps at
// the coordinate range, the constructed rectangle, the composition modes; and PL_Window.
#include <PlumvaleBaseCore/app/PL_DeviceContext.h>
#include <PlumvaleBaseCore/app/PL_Window.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <climits>
#include <functional>
#include <random>

namespace {

constexpr unsigned int kRed = 0x0000FF; // 0x00BBGGRR
constexpr QRgb kRedPixel = 0xFFFF0000;

QImage blank(int w = 40, int h = 30) {
    QImage image(w, h, QImage::Format_ARGB32);
    image.fill(Qt::white);
    return image;
}

// The image after `draw` on a context over it, pen and brush red, one pixel wide; the
// painter is shifted by `shift` first (to look at the far ends of the coordinate range).
QImage drawn(const std::function<void(PL_DeviceContext&)>& draw, QPoint shift = QPoint()) {
    QImage image = blank();
    QPainter painter(&image);
    painter.translate(shift);
    PL_DeviceContext dc(&painter);
    dc.ChangePen(kRed, 1);
    dc.ChangeBrush(kRed);
    draw(dc);
    return image;
}

// The same picture drawn with QPainter directly.
QImage reference(const std::function<void(QPainter&)>& draw, QPoint shift = QPoint()) {
    QImage image = blank();
    QPainter painter(&image);
    painter.translate(shift);
    painter.setPen(QPen(QBrush(Qt::red), 1, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.setBrush(Qt::red);
    draw(painter);
    return image;
}

// The painted pixels' bounding box (inclusive), empty when none.
QRect inkOf(const QImage& image) {
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != 0xFFFFFFFF) box |= QRect(x, y, 1, 1);
    return box;
}

struct GuiApp {
    int argc = 1;
    char name[10] = "app_tests";
    char* argv[2] = {name, nullptr};
    bool offscreen = qputenv("QT_QPA_PLATFORM", "offscreen"); // before the application
    QApplication app{argc, argv};
};

} // namespace

TEST(PL_DeviceContext, RectanglesPointsAndTheOrigin) {
    const auto filled = drawn([](PL_DeviceContext& dc) {
        dc.SetOrigin(UT_Point(1, 1));
        dc.FillRect(UT_Rect(UT_Point(2, 3), UT_Point(6, 5)));
    });
    EXPECT_EQ(inkOf(filled), QRect(QPoint(3, 4), QPoint(6, 5)));
    EXPECT_EQ(filled.pixel(3, 4), kRedPixel);
    const auto framed = drawn(
        [](PL_DeviceContext& dc) { dc.FrameRect(UT_Rect(UT_Point(10, 10), UT_Point(15, 14))); });
    EXPECT_EQ(inkOf(framed), QRect(QPoint(10, 10), QPoint(14, 13)));
    EXPECT_EQ(framed.pixel(12, 12), 0xFFFFFFFF); // an outline only

    // Points at the ends of the range, seen through a shifted painter.
    const auto points = drawn(
        [](PL_DeviceContext& dc) {
            dc.DrawPoint(UT_Point(16383, 5), kRed);
            dc.DrawPoint(UT_Point(16384, 7), kRed);
            dc.DrawPoint(UT_Point(16380, -16385), kRed);
        },
        QPoint(-16380, 0));
    EXPECT_EQ(inkOf(points), QRect(3, 5, 1, 1));
}

TEST(PL_DeviceContext, ClampsAtTheCoordinateRange) {
    // An ellipse corner at -20000 is drawn at -16384.
    const QPoint shift(16384 + 5, 0);
    EXPECT_EQ(drawn([](PL_DeviceContext& dc) { dc.Ellipse(-20000, 2, -16384 + 30, 26); }, shift),
              reference([](QPainter& p) { p.drawEllipse(QRect(-16384, 2, 29, 23)); }, shift));
    // Lines from far outside: a horizontal and a vertical one are clamped.
    EXPECT_EQ(drawn([](PL_DeviceContext& dc) {
                  dc.MoveTo(UT_Point(INT_MIN, 10));
                  dc.LineTo(UT_Point(20, 10));
                  dc.MoveTo(UT_Point(30, -40000));
                  dc.LineTo(UT_Point(30, 20));
              }),
              reference([](QPainter& p) {
                  p.drawLine(-16384, 10, 20, 10);
                  p.drawLine(30, -16384, 30, 20);
              }));
    // Wholly outside on one side: nothing.
    EXPECT_TRUE(inkOf(drawn([](PL_DeviceContext& dc) {
                    dc.MoveTo(UT_Point(-30000, 5));
                    dc.LineTo(UT_Point(-20000, 25));
                })).isNull());
    // Random segments with any int ends: the clipped line never leaves the box of its own
    // ends (the integer slope moves an end less than the true line would).
    std::mt19937 random(7);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX), near(-60, 60);
    for (int i = 0; i < 500; ++i) {
        const bool wide = i % 2 == 0;
        const UT_Point origin(i % 3, -(i % 5));
        const UT_Point a(wide ? any(random) : near(random), wide ? near(random) : any(random));
        const UT_Point b(near(random), near(random));
        const QRect ink = inkOf(drawn([&](PL_DeviceContext& dc) {
            dc.SetOrigin(origin);
            dc.MoveTo(a);
            dc.LineTo(b);
        }));
        const auto end = [&](const UT_Point& p) {
            return QPoint(PL_DeviceContext::ClipCoord(p.GetX() + 0LL + origin.GetX()),
                          PL_DeviceContext::ClipCoord(p.GetY() + 0LL + origin.GetY()));
        };
        const QRect box = QRect(end(a), end(b)).normalized().adjusted(-1, -1, 1, 1);
        EXPECT_TRUE(ink.isNull() || box.contains(ink)) << i;
    }
}

TEST(PL_DeviceContext, ConstructedRectangleAndViewport) {
    QImage image = blank();
    QPainter painter(&image);
    PL_DeviceContext dc(&painter);
    dc.MoveTo(UT_Point(10, 5));
    dc.LineTo(UT_Point(20, 30));
    UT_Rect r;
    dc.GetConstructedRect(r);
    EXPECT_EQ(r, UT_Rect(UT_Point(0, 30), UT_Point(20, 0)));
    dc.FillRect(UT_Rect(UT_Point(-5, 40), UT_Point(3, 50)));
    dc.GetConstructedRect(r);
    EXPECT_EQ(r, UT_Rect(UT_Point(-5, 50), UT_Point(20, 0)));

    EXPECT_EQ(dc.GetSize(), (UT_Size{40, 30}));
    dc.SetOrigin(UT_Point(5, 7));
    ASSERT_TRUE(dc.GetClipRect(r));
    EXPECT_EQ(r, UT_Rect(UT_Point(-5, -7), UT_Point(34, 22)));
    EXPECT_TRUE(dc.RectIsVisible(UT_Rect(UT_Point(-100, -100), UT_Point(0, 0))));
    EXPECT_FALSE(dc.RectIsVisible(UT_Rect(UT_Point(41, 0), UT_Point(60, 10))));
    EXPECT_TRUE(dc.RectIsVisible(UT_Rect(UT_Point(INT_MIN, 5), UT_Point(INT_MAX, 6))));
    PL_DeviceContext none;
    EXPECT_FALSE(none.GetClipRect(r));
    EXPECT_EQ(none.GetSize(), UT_Size());
}

TEST(PL_DeviceContext, CompositionModes) {
    QImage image = blank();
    QPainter painter(&image);
    PL_DeviceContext dc(&painter);
    dc.ChangeBrush(0x00FF00); // blue
    EXPECT_EQ(dc.SetROP2(PL_DeviceContext::DrawBlend), 1);
    dc.FillRect(UT_Rect(UT_Point(0, 0), UT_Point(10, 10)));
    EXPECT_EQ(dc.SetROP2(2), 0); // Qt's Clear
    dc.FillRect(UT_Rect(UT_Point(0, 0), UT_Point(5, 5)));
    EXPECT_EQ(dc.SetROP2(4), 0); // Qt's Destination: leaves the pixels
    dc.FillRect(UT_Rect(UT_Point(20, 0), UT_Point(25, 5)));
    EXPECT_EQ(dc.SetROP2(PL_DeviceContext::DrawReplace), 0);
    EXPECT_EQ(painter.compositionMode(), QPainter::CompositionMode_Source);
    painter.end();
    EXPECT_EQ(image.pixel(2, 2), 0x00000000u);
    EXPECT_EQ(image.pixel(7, 7), 0xFF00FF00u); // green: 0x00FF00 is green in 0x00BBGGRR
    EXPECT_EQ(image.pixel(22, 2), 0xFFFFFFFFu);
}

TEST(PL_DeviceContext, TextAndWindows) {
    GuiApp gui;
    QPixmap pixmap(60, 30);
    pixmap.fill(Qt::white);
    int height = 0, descent = 0;
    {
        PL_DeviceContext dc;
        dc.Create(pixmap);
        dc.Create(pixmap); // the first painter is ended and replaced
        dc.GetFontInfo(height, descent);
        EXPECT_GT(height, descent);
        EXPECT_GT(descent, 0);
        EXPECT_GT(dc.GetTextSize(UT_String("WWW")), dc.GetTextSize(UT_String("W")));
        dc.DrawTextW(UT_String("Hi"), UT_Point(2, 20), kRed);
        dc.DrawTextW(UT_String("Hi"), UT_Point(2, 16384), kRed); // out of range: nothing
    }
    const QRect ink = inkOf(pixmap.toImage());
    EXPECT_FALSE(ink.isNull());
    EXPECT_LE(ink.bottom(), 20 + descent);
    EXPECT_GE(ink.top(), 20 - height);

    QWidget widget;
    widget.resize(64, 48);
    const PL_Window window(&widget), none;
    UT_Rect client(UT_Point(1, 2), UT_Point(3, 4));
    none.GetClientRect(client);
    EXPECT_EQ(client, UT_Rect(UT_Point(1, 2), UT_Point(3, 4)));
    window.GetClientRect(client);
    EXPECT_EQ(client, UT_Rect(UT_Point(0, 0), UT_Point(63, 47)));
    EXPECT_TRUE(window == PL_Window(&widget) && window != none);
    EXPECT_EQ(none.GetMouseLocation(), UT_Point());
    window.Invalidate();
    none.Invalidate();
}
