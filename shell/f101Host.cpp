// SPDX-License-Identifier: GPL-3.0-or-later
// What the members of the main window ask of it.
#include "f101.h"

#include "MediaTypes.h"
#include "PlayerSettings.h"
#include "ScreenMetrics.h"
#include "SystemColours.h"
#include "WindowLayout.h"
#include "modAPI.h"

namespace lantern {

// --- The display

ColourValue f101::WindowBackColor()
{
    return m_backColor;
}

void f101::SetWindowBackColor(ColourValue colour)
{
    m_backColor = colour;
    update();
}

void f101::SetPicBackColor(ColourValue colour)
{
    m_pic.SetBackColor(ResolveColour(colour));
}

// The frame is the window system's own, and keeps its colours.
void f101::SetSkinnerBackColor(ColourValue)
{
}

void f101::SetSystemTextBackColor(ColourValue colour)
{
    m_systemText.SetBackColor(colour);
}

ColourValue f101::SystemTextForeColor()
{
    return m_systemText.ForeColor();
}

void f101::SetSystemTextForeColor(ColourValue colour)
{
    m_systemText.SetForeColor(colour);
}

void f101::SetSystemTextCaption(const QString& caption)
{
    m_systemText.setText(caption);
}

void f101::ShowSystemText(bool visible)
{
    m_systemText.setVisible(visible);
}

TwipSize f101::PicSize()
{
    return {m_pic.width() * m_state.TwipsX, m_pic.height() * m_state.TwipsY};
}

WindowFrame f101::Frame()
{
    return {m_state.TwipsX, m_state.TwipsY, m_marginX, 0};
}

TwipSize f101::DesktopSize()
{
    const QSize pixels = DesktopRect().size();
    return {pixels.width() * m_state.TwipsX, pixels.height() * m_state.TwipsY};
}

bool f101::IsMaximised()
{
    return m_fullScreen.IsOn();
}

void f101::SetMaximised(bool maximised)
{
    if (maximised)
        m_fullScreen.Enter();
    else
        m_fullScreen.Leave();
}

void f101::CalcMargins()
{
    m_marginX = MarginXFor(IsMaximised(), m_state.TwipsX);
}

void f101::MoveWindow(const TwipRect& rect)
{
    m_fullScreen.Place(PixelsOf(rect).translated(DesktopRect().topLeft()));
}

void f101::LockWindowUpdate(bool locked)
{
    setUpdatesEnabled(!locked);
}

void f101::ShowToolbar(bool visible)
{
    SetPointersBlank(!visible);
    Layout();
}

void f101::ShowSkinner(bool)
{
}

double f101::SystemTimer()
{
    return 1 + static_cast<double>(m_systemTimer.nsecsElapsed()) * 1e-9;
}

// --- The clock

// The position is heard and seen, but no control tells it as a number yet.
std::int32_t f101::SliderValue()
{
    return 0;
}

std::int32_t f101::SliderMax()
{
    return 0;
}

void f101::SetSliderValue(std::int32_t)
{
}

void f101::CancelScroll()
{
}

void f101::SetTicker(std::int32_t, bool)
{
}

void f101::RefreshControls(std::int32_t, bool)
{
    m_display.HideExpiredStatus();
}

void f101::ReopenLastTrack()
{
    OpenMedia(m_track.CurrentMedia);
}

void f101::WheelMovesPosition()
{
    m_audio.WheelType = static_cast<std::int16_t>(WheelMode::TrackPosition);
}

// --- The loader

void f101::SetSliderValues(std::int32_t, std::int32_t, std::int32_t)
{
}

void f101::HideMessage()
{
    ShowSystemText(false);
}

void f101::ResetView()
{
    m_picture.RestView();
}

void f101::FreeSnapshots()
{
    m_picture.FreeSnapshots();
}

void f101::ResetPlayedPacket()
{
    m_picture.PlayedPacket = 0;
}

void f101::ClearPicture()
{
    m_interpreter.ClearPicture();
}

void f101::Play(std::int32_t positionMs)
{
    m_clock.Play(positionMs);
}

void f101::RememberLastPlayed(const QString& path)
{
    m_state.Settings->SetSetting(kLastPlayedKey.toString(), path);
}

// --- The audio control

void f101::ShowStatus(const QString& text)
{
    m_display.ShowStatus(text);
}

// The message line is the one place for these values.
void f101::SetValueText(AudioValue, const QString&)
{
}

void f101::SetDeviceText(const QString&)
{
}

bool f101::IsDeviceSaveOn()
{
    return m_audio.AudioSave;
}

void f101::SetOptionsOnTop(bool)
{
}

void f101::SetPointersBlank(bool blank)
{
    const Qt::CursorShape shape = blank ? Qt::BlankCursor : Qt::ArrowCursor;
    m_pic.setCursor(shape);
    setCursor(shape);
}

bool f101::ShowMenu(const std::vector<DeviceMenuItem>&)
{
    return true;
}

// --- The commands

void f101::ShowOpenDialog()
{
    SetOptionsOnTop(false);
    const QString filter = QStringLiteral("CDG / BIN / ZIP|*.cdg;*.bin;*.zip|Audio Files|*.%1")
                               .arg(JoinedAudioExtensions(u";*."));
    const QString path = lantern::ShowOpenDialog(
        this, QStringLiteral("cdg"), filter, QStringLiteral("Select a Karaoke File"),
        m_track.CurrentMedia, IsAudioExtension(m_track.CurrentMedia) ? 2 : 1, 1);
    SetOptionsOnTop(true);
    update();
    if (!path.isEmpty())
        OpenMedia(path);
}

// There is no options window yet.
void f101::ToggleOptions(bool)
{
}

void f101::ShowAbout()
{
}

void f101::OpenWebSite()
{
    lantern::OpenWebSite();
}

void f101::Exit()
{
    close();
}

} // namespace lantern
