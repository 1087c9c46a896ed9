// SPDX-License-Identifier: GPL-3.0-or-later
#include "InteractiveMove.h"

#include "WindowManagerGrab.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace lantern {
namespace {

Qt::MouseButtons ButtonsOf(const QEvent& event)
{
    return event.type() == QEvent::MouseMove ? static_cast<const QMouseEvent&>(event).buttons()
                                             : Qt::NoButton;
}

bool IsMouseEvent(const QEvent& event)
{
    return event.type() == QEvent::MouseMove || event.type() == QEvent::MouseButtonPress ||
           event.type() == QEvent::MouseButtonRelease ||
           event.type() == QEvent::MouseButtonDblClick;
}

bool IsEscape(const QEvent& event)
{
    return event.type() == QEvent::KeyPress &&
           static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
}

int Bounded(int length, int minimum, int maximum)
{
    return std::clamp(length, minimum, std::max(minimum, maximum));
}

} // namespace

Qt::Edges EdgesOf(HitCode code)
{
    switch (code) {
    case HitCode::Left:
        return Qt::LeftEdge;
    case HitCode::Right:
        return Qt::RightEdge;
    case HitCode::Top:
        return Qt::TopEdge;
    case HitCode::TopLeft:
        return Qt::TopEdge | Qt::LeftEdge;
    case HitCode::TopRight:
        return Qt::TopEdge | Qt::RightEdge;
    case HitCode::Bottom:
        return Qt::BottomEdge;
    case HitCode::BottomLeft:
        return Qt::BottomEdge | Qt::LeftEdge;
    case HitCode::BottomRight:
        return Qt::BottomEdge | Qt::RightEdge;
    case HitCode::Caption:
        break;
    }
    return {};
}

QRect DraggedGeometry(const QRect& start, QPoint distance, HitCode code, QSize minimum,
                      QSize maximum)
{
    const Qt::Edges edges = EdgesOf(code);
    if (!edges)
        return start.translated(distance);
    int width = start.width();
    int height = start.height();
    if (edges & (Qt::LeftEdge | Qt::RightEdge)) {
        width += edges.testFlag(Qt::LeftEdge) ? -distance.x() : distance.x();
        width = Bounded(width, std::max(minimum.width(), 1), maximum.width());
    }
    if (edges & (Qt::TopEdge | Qt::BottomEdge)) {
        height += edges.testFlag(Qt::TopEdge) ? -distance.y() : distance.y();
        height = Bounded(height, std::max(minimum.height(), 1), maximum.height());
    }
    const int left =
        edges.testFlag(Qt::LeftEdge) ? start.left() + start.width() - width : start.left();
    const int top =
        edges.testFlag(Qt::TopEdge) ? start.top() + start.height() - height : start.top();
    return {left, top, width, height};
}

bool EndsOperation(QEvent::Type type, Qt::MouseButtons buttons, bool wasDeactivated)
{
    switch (type) {
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Enter:
    case QEvent::Hide:
        return true;
    case QEvent::MouseMove:
        return buttons == Qt::NoButton;
    case QEvent::WindowActivate:
        return wasDeactivated;
    default:
        return false;
    }
}

InteractiveMove::~InteractiveMove()
{
    if (m_running)
        QCoreApplication::instance()->removeEventFilter(this);
}

void InteractiveMove::Start(QWidget& window, HitCode code, QPoint pointer, Ended ended)
{
    if (m_running)
        return;
    m_running = true;
    m_wasDeactivated = false;
    m_window = &window;
    m_code = code;
    m_startPointer = pointer;
    m_startGeometry = window.geometry();
    m_ended = std::move(ended);
    QCoreApplication::instance()->installEventFilter(this);
    if (!window.isVisible() || !IsLeftButtonDown()) {
        End(); // released in the meantime
        return;
    }
    m_bySystem = AskWindowSystem();
}

bool InteractiveMove::AskWindowSystem() const
{
    QWindow* handle = m_window->windowHandle();
    if (!handle)
        return false;
    return m_code == HitCode::Caption ? handle->startSystemMove()
                                      : handle->startSystemResize(EdgesOf(m_code));
}

bool InteractiveMove::eventFilter(QObject* watched, QEvent* event)
{
    // What the toolkit hands from its windows to the widgets is looked at there only.
    if (!watched->isWidgetType())
        return false;
    if (!m_window) {
        End();
        return false;
    }
    return m_bySystem ? WatchWindowSystem(*watched, *event) : Drag(*watched, *event);
}

bool InteractiveMove::WatchWindowSystem(QObject& watched, QEvent& event)
{
    const QEvent::Type type = event.type();
    const bool ofWindow = &watched == m_window;
    const bool concernsWindow = type == QEvent::WindowActivate || type == QEvent::Hide;
    if (type == QEvent::WindowDeactivate && ofWindow)
        m_wasDeactivated = true;
    const bool ends = EndsOperation(type, ButtonsOf(event), m_wasDeactivated);
    if (!ends || (concernsWindow && !ofWindow))
        return type == QEvent::MouseMove; // left over from before the window system took over
    const bool isRelease = type == QEvent::MouseButtonRelease;
    // A release that comes before the window manager has taken over is one that it never sees.
    if (isRelease && m_window->windowHandle())
        CancelWindowManagerGrab(*m_window->windowHandle());
    End();
    return isRelease;
}

bool InteractiveMove::Drag(QObject& watched, QEvent& event)
{
    const QEvent::Type type = event.type();
    if (IsEscape(event)) {
        m_window->setGeometry(m_startGeometry);
        End();
        return true;
    }
    if (type == QEvent::Hide && &watched == m_window) {
        End();
        return false;
    }
    if (!IsMouseEvent(event))
        return false;
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    if (!mouse.buttons().testFlag(Qt::LeftButton)) {
        End();
        return type == QEvent::MouseButtonRelease;
    }
    if (type == QEvent::MouseMove) {
        const QPoint distance = mouse.globalPosition().toPoint() - m_startPointer;
        m_window->setGeometry(DraggedGeometry(m_startGeometry, distance, m_code,
                                              m_window->minimumSize(), m_window->maximumSize()));
    }
    return true;
}

void InteractiveMove::End()
{
    QCoreApplication::instance()->removeEventFilter(this);
    m_running = false;
    const Ended ended = std::exchange(m_ended, {});
    if (ended)
        ended();
}

} // namespace lantern
