// SPDX-License-Identifier: GPL-3.0-or-later
#include "Display.h"

#include <cstddef>

namespace lantern {
namespace {

constexpr double kMessageSeconds = 3.0;

ColourValue TableColour(const ColourBytes& table, std::int16_t entry)
{
    const auto first = static_cast<std::size_t>(entry) * 3;
    return ColourValue{table[first]} | ColourValue{table[first + 1]} << 8 |
           ColourValue{table[first + 2]} << 16;
}

} // namespace

Display::Display(PictureMemory& picture, DisplayHost& host, ClipSink& clipboard)
    : m_picture(picture), m_host(host), m_clipboard(clipboard)
{
}

void Display::PaintDisplay()
{
    ColourSurroundings();
    m_isPictureDue = true;
    m_picture.PictureDirty = false;
    m_host.PaintSoon();
}

bool Display::ShowPicture()
{
    if (!m_isPictureDue)
        return false;
    m_isPictureDue = false;
    const TwipSize pic = m_host.PicSize();
    const WindowFrame frame = m_host.Frame();
    m_picture.Buffers().FGvbscale(m_picture.ViewLeft, m_picture.ViewLeft + kVisibleWidth - 1,
                                  m_picture.ViewTop, m_picture.ViewTop + kVisibleHeight - 1, 0,
                                  pic.width / frame.twipsX, 0, pic.height / frame.twipsY);
    return true;
}

// Every paint compares, so that a steady border costs no update of a control.
void Display::ColourSurroundings()
{
    const ColourValue colour = TableColour(m_picture.ColourTable, m_picture.BorderColour);
    if (m_host.WindowBackColor() != colour) {
        m_host.SetWindowBackColor(colour);
        m_host.SetPicBackColor(colour);
        m_host.SetSkinnerBackColor(colour);
        m_host.SetSystemTextBackColor(colour);
    }
    const ColourValue inverse = kWhite - colour;
    if (m_host.SystemTextForeColor() != inverse)
        m_host.SetSystemTextForeColor(inverse);
}

int Display::NearestZoom()
{
    if (m_host.IsMaximised())
        return kFullScreenStep;
    const TwipSize pic = m_host.PicSize();
    const WindowFrame frame = m_host.Frame();
    return NearestZoomForArea(std::int64_t{pic.width / frame.twipsX} * (pic.height / frame.twipsY));
}

void Display::SetZoom(int zoom, float factor)
{
    ZoomStep = ValidZoomStep(zoom);
    m_host.LockWindowUpdate(true);
    if (ZoomStep == kFullScreenStep)
        ToggleFullScreen();
    else
        SizeWindow(factor);
    m_host.LockWindowUpdate(false);
}

void Display::SizeWindow(float factor)
{
    m_host.SetMaximised(false);
    m_host.CalcMargins();
    const TwipSize size = WindowSizeForZoom(ZoomStep, factor, m_host.Frame());
    m_host.MoveWindow(CentredOn(m_host.DesktopSize(), size));
    m_host.ShowToolbar(true);
    m_host.ShowSkinner(true);
}

void Display::ToggleFullScreen()
{
    const bool toFullScreen = !m_host.IsMaximised();
    m_host.SetMaximised(toFullScreen);
    if (!toFullScreen)
        ZoomStep = NearestZoom();
    m_host.ShowToolbar(!toFullScreen);
    m_host.ShowSkinner(!toFullScreen);
}

void Display::ZoomIn()
{
    SetZoom(NextZoomStep(NearestZoom()), 1.0F);
}

void Display::ZoomOut()
{
    SetZoom(PreviousZoomStep(NearestZoom()), 1.0F);
}

void Display::CopyToClipboard()
{
    m_picture.Buffers().FGvb2clip(m_picture.ViewLeft, m_picture.ViewLeft + kVisibleWidth - 1,
                                  m_picture.ViewTop, m_picture.ViewTop + kVisibleHeight - 1,
                                  m_clipboard);
    ShowStatus(QStringLiteral("Screen Copied to Clipboard"));
}

void Display::ShowStatus(const QString& text)
{
    const QChar blank = u' ';
    m_host.SetSystemTextCaption(blank + text + blank);
    m_host.ShowSystemText(true);
    MessageTime = m_host.SystemTimer();
}

void Display::HideExpiredStatus()
{
    if (MessageTime == 0 || m_host.SystemTimer() - MessageTime <= kMessageSeconds)
        return;
    MessageTime = 0;
    m_host.ShowSystemText(false);
}

} // namespace lantern
