// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OwnerDrawn.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace lantern {

// Sends a control the mouse as the window system does.
class ControlHand {
public:
    explicit ControlHand(QWidget& control) : m_control(&control) {}

    void Press(double x, double y, Qt::MouseButton button = Qt::LeftButton)
    {
        m_held |= button;
        Send(QEvent::MouseButtonPress, x, y, button);
    }
    void DoublePress(double x, double y, Qt::MouseButton button = Qt::LeftButton)
    {
        m_held |= button;
        Send(QEvent::MouseButtonDblClick, x, y, button);
    }
    void Move(double x, double y) { Send(QEvent::MouseMove, x, y, Qt::NoButton); }
    void Release(double x, double y, Qt::MouseButton button = Qt::LeftButton)
    {
        m_held &= ~Qt::MouseButtons(button);
        Send(QEvent::MouseButtonRelease, x, y, button);
    }
    void Hold(Qt::KeyboardModifiers modifiers) { m_modifiers = modifiers; }

private:
    void Send(QEvent::Type type, double x, double y, Qt::MouseButton button)
    {
        const QPointF place(x, y);
        QMouseEvent event(type, place, m_control->mapToGlobal(place), button, m_held, m_modifiers);
        QApplication::sendEvent(m_control, &event);
    }

    QWidget* m_control;
    Qt::MouseButtons m_held;
    Qt::KeyboardModifiers m_modifiers;
};

// What a picture of a control shows at a pixel of the layout, whatever the ratio of the screen.
inline QRgb ShownAt(const QImage& image, int x, int y)
{
    const double ratio = image.devicePixelRatio();
    return image.pixel(static_cast<int>((x + 0.5) * ratio), static_cast<int>((y + 0.5) * ratio));
}
inline QRgb ShownAt(const OwnerDrawn& control, int x, int y)
{
    return ShownAt(control.SurfaceImage(), x, y);
}

} // namespace lantern
