// SPDX-License-Identifier: GPL-3.0-or-later
#include "FullScreen.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace lantern {
namespace {

// A window manager answers within a few frames.
constexpr int kSettleMs = 250;

} // namespace

FullScreen::FullScreen(QWidget& window) : m_window(window), m_normalGeometry(window.geometry())
{
    for (QTimer* timer : {&m_settleTimer, &m_doubtTimer}) {
        timer->setSingleShot(true);
        timer->setInterval(kSettleMs);
    }
    m_settleTimer.callOnTimeout(this, [this] { Settle(); });
    m_doubtTimer.callOnTimeout(this, [this] { KeepGeometry(); });
    window.installEventFilter(this);
}

bool FullScreen::IsOn() const
{
    return m_window.isFullScreen();
}

void FullScreen::Enter()
{
    if (IsOn())
        return;
    KeepGeometry();
    m_hasLeft = false;
    m_window.setWindowState(m_window.windowState() | Qt::WindowFullScreen);
    m_settleTimer.start();
}

void FullScreen::Leave()
{
    const bool wasOn = IsOn();
    const QRect normal = m_normalGeometry;
    m_window.setWindowState(m_window.windowState() & ~(Qt::WindowFullScreen | Qt::WindowMaximized));
    if (!wasOn)
        return;
    m_hasLeft = true;
    // The window system answers later; the layout needs the geometry now.
    if (normal.isValid())
        Place(OnSomeScreen(normal));
    m_settleTimer.start();
}

// A screen may have been unplugged while the window filled another one.
QRect FullScreen::OnSomeScreen(QRect geometry) const
{
    const auto shows = [&](const QScreen* screen) {
        return screen->geometry().intersects(geometry);
    };
    if (std::ranges::none_of(QGuiApplication::screens(), shows) && m_window.screen())
        geometry.moveCenter(m_window.screen()->geometry().center());
    return geometry;
}

void FullScreen::Place(const QRect& geometry)
{
    m_normalGeometry = geometry;
    m_window.setGeometry(geometry);
}

bool FullScreen::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::WindowStateChange && ComesBackMaximised())
        QMetaObject::invokeMethod(this, &FullScreen::EndMaximised, Qt::QueuedConnection);
    if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::WindowStateChange)
        FollowGeometry();
    return QObject::eventFilter(watched, event);
}

// Window managers remember that a window was maximised before it filled the screen, and make it so
// again.
bool FullScreen::ComesBackMaximised() const
{
    return m_hasLeft && m_settleTimer.isActive() && m_window.isMaximized() && !IsOn();
}

void FullScreen::EndMaximised()
{
    if (!ComesBackMaximised())
        return;
    m_hasLeft = false; // once: the next time it is the user's wish
    m_window.setWindowState(m_window.windowState() & ~Qt::WindowMaximized);
    Place(m_normalGeometry);
    m_settleTimer.start();
}

// The size of a full screen or of a maximised window may come before the state that it belongs to.
void FullScreen::FollowGeometry()
{
    m_doubtTimer.stop();
    if (FillsAScreen(Geometry()))
        m_doubtTimer.start();
    else
        KeepGeometry();
}

// While the window system has yet to answer, the geometry may be that of the last full screen, and
// while the window is minimised, that of the next.
void FullScreen::KeepGeometry()
{
    constexpr Qt::WindowStates kNotNormal =
        Qt::WindowFullScreen | Qt::WindowMaximized | Qt::WindowMinimized;
    if (!m_settleTimer.isActive() && (m_window.windowState() & kNotNormal) == 0)
        m_normalGeometry = Geometry();
}

// A widget takes the two halves of a new geometry one after the other, its window at once.
QRect FullScreen::Geometry() const
{
    const QWindow* handle = m_window.windowHandle();
    return handle ? handle->geometry() : m_window.geometry();
}

bool FullScreen::FillsAScreen(const QRect& geometry)
{
    return std::ranges::any_of(QGuiApplication::screens(), [&](const QScreen* screen) {
        const QSize room = screen->availableSize();
        return geometry.width() >= room.width() && geometry.height() >= room.height();
    });
}

void FullScreen::Settle()
{
    const QScreen* screen = m_window.screen();
    QWindow* handle = m_window.windowHandle();
    if (!handle || !screen || m_window.isMinimized())
        return;
    // Through the window behind the widget: QWidget::setGeometry would end the state.
    if (IsOn() && m_window.size() != screen->size())
        handle->setGeometry(screen->geometry());
    else if (!IsOn() && m_window.size() != m_normalGeometry.size())
        m_window.setGeometry(m_normalGeometry);
    else
        KeepGeometry();
}

} // namespace lantern
