// SPDX-License-Identifier: GPL-3.0-or-later
#include "SingerWindow.h"

#include "Application.h"
#include "PictureMemory.h"
#include "ScreenMetrics.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace lantern {
namespace {

// A window manager answers within a few frames.
constexpr int kAnswerMs = 250;
constexpr int kTries = 3;

// Not a tool's window: those go with the main one when that is minimised.
constexpr Qt::WindowFlags kSingerFlags =
    Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnTopHint;

Qt::WindowFlags FlagsFor(WindowCare care)
{
    return care == WindowCare::Managed ? kSingerFlags
                                       : kSingerFlags | Qt::X11BypassWindowManagerHint;
}

// But for what is rounded at ratios between whole ones.
bool AreNear(const QRect& one, const QRect& other)
{
    return (one.topLeft() - other.topLeft()).manhattanLength() <= 2 &&
           (one.bottomRight() - other.bottomRight()).manhattanLength() <= 2;
}

} // namespace

QRect SingerPictureRect(const QSize& screen)
{
    const QSize picture = QSize(kVisibleWidth, kVisibleHeight).scaled(screen, Qt::KeepAspectRatio);
    return {
        QPoint((screen.width() - picture.width()) / 2, (screen.height() - picture.height()) / 2),
        picture};
}

SingerWindow::SingerWindow(QScreen& screen, InputTarget& player, WindowCare care)
    : QWidget(nullptr, FlagsFor(care)), m_screen(&screen), m_input(player), m_pic(this)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(kApplicationTitle + QStringLiteral(" Singer's Screen"));
    setCursor(Qt::BlankCursor);
    m_pic.setObjectName(QStringLiteral("SingerPic"));
    m_pic.setAccessibleName(QStringLiteral("Lyrics"));
    m_pic.setAcceptDrops(false);
    m_settleTimer.setSingleShot(true);
    m_settleTimer.setInterval(kAnswerMs);
    m_settleTimer.callOnTimeout(this, [this] { Settle(); });
    setScreen(&screen);
}

void SingerWindow::FillScreen()
{
    if (!m_screen)
        return;
    if (!isVisible()) {
        // Most window managers choose the screen by the place where a window comes up.
        setGeometry(m_screen->geometry());
        setWindowState(Qt::WindowFullScreen);
        show();
    }
    m_triesLeft = kTries;
    Settle();
}

// Some window systems leave the place as it was, or know of the screen's new one later than we do.
void SingerWindow::Settle()
{
    if (!m_screen || !KnowsWindowPlaces())
        return;
    const QRect wanted = m_screen->geometry();
    if (AreNear(windowHandle()->geometry(), wanted)) {
        m_triesLeft = kTries;
        return;
    }
    const bool isManaged = !windowFlags().testFlag(Qt::X11BypassWindowManagerHint);
    if (isManaged && m_triesLeft == 0) {
        if (Refused)
            Refused();
        return;
    }
    // Through the window behind the widget: QWidget::setGeometry would end the state.
    windowHandle()->setGeometry(wanted);
    if (m_triesLeft > 0) {
        --m_triesLeft;
        m_settleTimer.start();
    }
}

void SingerWindow::SetBorderColour(QRgb colour)
{
    if (std::exchange(m_borderColour, colour) == colour)
        return;
    m_pic.SetBackColor(colour);
    update();
}

void SingerWindow::Flush()
{
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(this, &request);
}

bool SingerWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && GotKeyboard)
        GotKeyboard();
    return QWidget::event(event);
}

void SingerWindow::resizeEvent(QResizeEvent*)
{
    m_pic.setGeometry(SingerPictureRect(size()));
    m_settleTimer.start();
}

void SingerWindow::moveEvent(QMoveEvent*)
{
    m_settleTimer.start();
}

// The picture covers its own area, but for pixels that its edges may cut.
void SingerWindow::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    for (const QRect& rect : event->region() - m_pic.geometry().adjusted(1, 1, -1, -1))
        painter.fillRect(rect, QColor::fromRgb(m_borderColour));
}

void SingerWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    if (CloseAsked)
        CloseAsked();
}

void SingerWindow::keyPressEvent(QKeyEvent* event)
{
    m_input.KeyPress(*event);
}

void SingerWindow::keyReleaseEvent(QKeyEvent* event)
{
    m_input.KeyRelease(*event);
}

void SingerWindow::wheelEvent(QWheelEvent* event)
{
    m_input.Wheel(*event);
}

bool SingerWindow::focusNextPrevChild(bool)
{
    return false;
}

} // namespace lantern
