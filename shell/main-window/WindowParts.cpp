// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowParts.h"

#include "AccessibleRole.h"
#include "ArtPictures.h"
#include "PlayerLook.h"
#include "ScreenMetrics.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QPixmap>

namespace lantern {
namespace {

constexpr ColourValue kMessageGround = 16576; // orange

} // namespace

WindowParts::WindowParts(QWidget& window, TwipsPerPixel twips)
    : m_window(window), m_twips(twips), m_skinner(&window), m_pic(&window), m_systemText(&window),
      m_bar(window, m_pic, twips), m_fullScreen(window),
      m_blankPointer(QPixmap::fromImage(BlankPointer()->ImageAt(1)))
{
    m_skinner.setObjectName(QStringLiteral("Skinner"));
    m_skinner.setAccessibleName(QStringLiteral("Window frame"));
    m_pic.setObjectName(QStringLiteral("pic"));
    m_pic.setAccessibleName(QStringLiteral("Lyrics"));
    SetAccessibleRole(m_pic, QAccessible::Graphic);
    m_pic.setFocusPolicy(Qt::StrongFocus); // the keyboard's focus rests on it
    m_systemText.setObjectName(QStringLiteral("SystemText"));
    m_systemText.SetFrameBorder(kNoBorder);
    m_systemText.SetFrameAlign(AlignCaptionCentre);
    m_systemText.SetFrameFont(MessageFont());
    m_systemText.SetForeColor(kWhite);
    m_systemText.SetBackColor(kMessageGround);
    m_systemText.SetCaption(QString());
    m_systemText.hide();
    // A widget without a pointer of its own has that of the window, which may be the blank one.
    m_systemText.setCursor(Qt::ArrowCursor);
    m_bar.TBar().setCursor(Qt::ArrowCursor);
    m_systemTimer.start();
}

void WindowParts::Layout()
{
    if (m_window.isMinimized())
        return;
    CalcMargins();
    const WindowLayout layout =
        LayoutWindow({.client = {m_window.width() * m_twips.x, m_window.height() * m_twips.y},
                      .twips = m_twips,
                      .isMaximised = IsMaximised(),
                      .isBarVisible = m_bar.IsVisible()});
    m_skinner.setGeometry(PixelsOf(layout.skinner, m_twips));
    m_bar.Place(layout.bar);
    m_pic.setGeometry(PixelsOf(layout.pic, m_twips));
    m_systemText.setGeometry(PixelsOf(layout.systemText, m_twips));
    if (LaidOut)
        LaidOut();
}

void WindowParts::SetPointersBlank(bool blank)
{
    const QCursor pointer = blank ? m_blankPointer : QCursor(Qt::ArrowCursor);
    m_pic.setCursor(pointer);
    m_window.setCursor(pointer);
}

// The picture covers its own area, but for pixels that its edges may cut.
void WindowParts::PaintBackground(const QRegion& exposed)
{
    QPainter painter(&m_window);
    for (const QRect& rect : exposed - m_pic.geometry().adjusted(1, 1, -1, -1))
        painter.fillRect(rect, QColor::fromRgb(ResolveColour(m_backColor)));
}

// The skin covers the window, which the toolkit then leaves out. What stands on the skin follows
// it.
void WindowParts::Refresh()
{
    m_window.update();
    m_skinner.update();
}

void WindowParts::FollowWindowState()
{
    if (m_window.isMinimized())
        return;
    ShowSkinner(!IsMaximised());
    ShowToolbar(!IsMaximised());
}

void WindowParts::SetWindowBackColor(ColourValue colour)
{
    m_backColor = colour;
    m_window.update();
}

void WindowParts::SetPicBackColor(ColourValue colour)
{
    m_pic.SetBackColor(ResolveColour(colour));
}

void WindowParts::SetSystemTextCaption(const QString& caption)
{
    m_systemText.SetCaption(caption);
}

TwipSize WindowParts::PicSize()
{
    return {m_pic.width() * m_twips.x, m_pic.height() * m_twips.y};
}

WindowFrame WindowParts::Frame()
{
    return {m_twips.x, m_twips.y, m_marginX, Toolbar::Height()};
}

TwipSize WindowParts::DesktopSize()
{
    const QSize pixels = DesktopRect().size();
    return {pixels.width() * m_twips.x, pixels.height() * m_twips.y};
}

void WindowParts::SetMaximised(bool maximised)
{
    if (maximised)
        m_fullScreen.Enter();
    else
        m_fullScreen.Leave();
}

void WindowParts::CalcMargins()
{
    m_marginX = MarginXFor(IsMaximised(), m_twips.x);
}

void WindowParts::MoveWindow(const TwipRect& rect)
{
    m_fullScreen.Place(PixelsOf(rect, m_twips).translated(DesktopRect().topLeft()));
}

void WindowParts::LockWindowUpdate(bool locked)
{
    m_window.setUpdatesEnabled(!locked);
}

void WindowParts::ShowToolbar(bool visible)
{
    m_bar.SetVisible(visible);
    SetPointersBlank(!visible);
    Layout();
}

// The toolkit's own request for a painting, of which never more than one waits.
void WindowParts::PaintSoon()
{
    QCoreApplication::postEvent(&m_window, new QEvent(QEvent::UpdateRequest), Qt::LowEventPriority);
}

double WindowParts::SystemTimer()
{
    return 1 + static_cast<double>(m_systemTimer.nsecsElapsed()) * 1e-9;
}

} // namespace lantern
