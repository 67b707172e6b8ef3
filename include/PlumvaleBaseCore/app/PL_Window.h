// PL_Window: a thin, copyable handle on a Qt widget for the drawing code.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/app/UT_Rect.h>

class QWidget;

/// A handle on a widget (possibly none). It does not own the widget; copies name the same
/// widget. Every operation on a handle without a widget does nothing.
class PLUMVALE_EXPORT PL_Window {
public:
    /// @{
    /// No widget, or `widget`.
    PL_Window() = default;
    explicit PL_Window(QWidget* widget) : m_widget(widget) {}
    /// @}

    /// @{
    /// The same widget.
    bool operator==(const PL_Window& o) const { return m_widget == o.m_widget; }
    bool operator!=(const PL_Window& o) const { return m_widget != o.m_widget; }
    /// @}

    /// The widget, or null.
    QWidget* GetQWidget() const { return m_widget; }
    /// Schedules a repaint of the widget.
    void Invalidate() const;
    /// The widget's own rectangle: left, top, right, bottom, the right and bottom inclusive
    /// as Qt gives them (0, 0, width - 1, height - 1). `rect` is left as it was without one.
    void GetClientRect(UT_Rect& rect) const;
    /// The mouse cursor in the widget's coordinates; (0, 0) without a widget.
    UT_Point GetMouseLocation() const;

private:
    QWidget* m_widget = nullptr;
};
