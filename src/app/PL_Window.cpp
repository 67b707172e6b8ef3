// PL_Window: repaint requests, the client rectangle and the mouse position of a widget.
#include <PlumvaleBaseCore/app/PL_Window.h>

#include <QCursor>
#include <QWidget>

void PL_Window::Invalidate() const {
    if (m_widget) m_widget->update();
}

void PL_Window::GetClientRect(UT_Rect& rect) const {
    if (!m_widget) return;
    const QRect r = m_widget->rect();
    rect.SetRect(r.left(), r.top(), r.right(), r.bottom());
}

UT_Point PL_Window::GetMouseLocation() const {
    if (!m_widget) return UT_Point();
    const QPoint p = m_widget->mapFromGlobal(QCursor::pos());
    return UT_Point(p.x(), p.y());
}
