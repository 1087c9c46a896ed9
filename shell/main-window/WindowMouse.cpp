// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowMouse.h"

#include "Control.h"
#include "WindowParts.h"

#include <QMouseEvent>

namespace lantern {

WindowMouse::WindowMouse(QWidget& window, WindowParts& parts) : m_window(window), m_parts(parts)
{
    window.setMouseTracking(true);
    parts.Pic().setMouseTracking(true);
    window.installEventFilter(this);
    parts.Pic().installEventFilter(this);
    parts.SystemText().installEventFilter(this);
    for (QWidget* surface : parts.Bar().BareSurfaces())
        surface->installEventFilter(this);
    // The skin moves the window itself.
    parts.Skinner().MouseUp = [this](const MouseReport& report) {
        if (report.button == RightButton && RightButtonUp)
            RightButtonUp();
    };
    parts.Skinner().DblClick = [this] {
        if (DoubleClick)
            DoubleClick();
    };
}

bool WindowMouse::eventFilter(QObject* watched, QEvent* event)
{
    // What the picture doesn't take goes on to the window, which would then see it twice.
    const bool isForPicture = watched == &m_parts.Pic();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        Press(static_cast<const QMouseEvent&>(*event));
        return isForPicture;
    case QEvent::MouseButtonDblClick:
        DoublePress(*watched, static_cast<const QMouseEvent&>(*event));
        return isForPicture;
    case QEvent::MouseMove:
        Move(*watched, static_cast<const QMouseEvent&>(*event));
        return isForPicture;
    case QEvent::MouseButtonRelease:
        Release(static_cast<const QMouseEvent&>(*event));
        return isForPicture;
    default:
        return false;
    }
}

void WindowMouse::Press(const QMouseEvent& event)
{
    if (PressReport(event).button == 0)
        return; // one that has no number is none at all
    m_mayMove = event.button() == Qt::LeftButton && !m_parts.IsMaximised();
    m_pressPlace = event.globalPosition().toPoint();
}

// It stands in the place of the second press.
void WindowMouse::DoublePress(const QObject& watched, const QMouseEvent& event)
{
    const bool meansFullScreen = &watched == &m_window || &watched == &m_parts.Pic();
    if (!meansFullScreen) {
        Press(event);
        return;
    }
    m_mayMove = false;
    if (event.button() == Qt::LeftButton && DoubleClick)
        DoubleClick();
}

void WindowMouse::Release(const QMouseEvent& event)
{
    if (PressReport(event).button == 0)
        return;
    m_mayMove = false;
    if (event.button() == Qt::RightButton && RightButtonUp)
        RightButtonUp();
}

// The window manager takes over from the first movement, not from the press.
void WindowMouse::Move(const QObject& watched, const QMouseEvent& event)
{
    if (m_mayMove && MoveReport(event).button == LeftButton) {
        m_mayMove = false;
        m_move.Start(m_window, HitCode::Caption, m_pressPlace);
    } else if (m_parts.IsMaximised()) {
        ShowBarFor(watched, event.position().toPoint());
    }
}

// Over the parts that stand on the window, and over the bar itself, nothing changes.
void WindowMouse::ShowBarFor(const QObject& watched, QPoint pointer)
{
    if (&watched == &m_parts.Pic())
        m_parts.ShowToolbar(false);
    else if (&watched == &m_window && !m_window.childAt(pointer))
        m_parts.ShowToolbar(m_parts.Bar().TBar().y() <= pointer.y());
}

} // namespace lantern
