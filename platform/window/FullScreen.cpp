// SPDX-License-Identifier: GPL-3.0-or-later
#include "FullScreen.h"

#include <QScreen>
#include <QWidget>
#include <QWindow>

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
    // Read while it still is the normal one: on the way back it is too late.
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
        Place(m_normalGeometry);
    m_settleTimer.start();
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
