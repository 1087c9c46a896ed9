// SPDX-License-Identifier: GPL-3.0-or-later
#include "FullScreen.h"

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

FullScreen::FullScreen(QWidget& window) : m_window(window)
{
    m_settleTimer.setSingleShot(true);
    m_settleTimer.setInterval(kSettleMs);
    QObject::connect(&m_settleTimer, &QTimer::timeout, &m_window, [this] { Settle(); });
}

bool FullScreen::IsOn() const
{
    return m_window.isFullScreen();
}

void FullScreen::Enter()
{
    if (IsOn())
        return;
    // Read while it still is the normal one: on the way back it is too late. While the window
    // system has yet to answer, it may be that of the last full screen.
    if (!m_settleTimer.isActive())
        m_normalGeometry = m_window.geometry();
    m_window.setWindowState(m_window.windowState() | Qt::WindowFullScreen);
    m_settleTimer.start();
}

void FullScreen::Leave()
{
    const bool wasOn = IsOn();
    m_window.setWindowState(m_window.windowState() & ~(Qt::WindowFullScreen | Qt::WindowMaximized));
    if (!wasOn)
        return;
    // The window system answers later; the layout needs the geometry now.
    if (m_normalGeometry.isValid())
        Place(OnSomeScreen(m_normalGeometry));
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
}

} // namespace lantern
