// SPDX-License-Identifier: GPL-3.0-or-later
// What the members of the main window ask of it.
#include "f101.h"

#include "DeviceMenu.h"
#include "MediaTypes.h"
#include "PlayerSettings.h"
#include "ScreenMenu.h"
#include "frmOptions.h"
#include "frmStage.h"
#include "modAPI.h"

#include <QCoreApplication>

#include <algorithm>

namespace lantern {

// --- The clock

std::int32_t f101::SliderValue()
{
    return m_parts.Bar().ctlSlider().Value();
}

std::int32_t f101::SliderMax()
{
    return m_parts.Bar().ctlSlider().Max();
}

void f101::SetSliderValue(std::int32_t positionMs)
{
    m_parts.Bar().ctlSlider().SetValue(positionMs);
}

void f101::CancelScroll()
{
    m_parts.Bar().ctlSlider().CancelScroll();
}

void f101::SetTicker(std::int32_t seconds, bool isPlaying)
{
    m_parts.Bar().PlayTicker().SetTicker(seconds, isPlaying);
}

void f101::RefreshControls(std::int32_t positionMs, bool isPlaying)
{
    m_refresh.Refresh(positionMs, isPlaying, m_parts.IsMaximised());
    m_stage.Follow(m_stageWindow && m_stageWindow->isVisible());
    m_display.HideExpiredStatus();
    m_desktop.Follow();
}

void f101::ReopenLastTrack()
{
    OpenMedia(m_track.CurrentMedia);
}

void f101::WheelMovesPosition()
{
    m_audio.WheelType = WheelMode::TrackPosition;
}

// --- The loader

void f101::SetSliderValues(std::int32_t minimum, std::int32_t maximum, std::int32_t value)
{
    m_parts.Bar().ctlSlider().SetValues(minimum, maximum, value);
}

void f101::HideMessage()
{
    m_parts.ShowSystemText(false);
}

void f101::ForgetPicture()
{
    m_picture.ResetView();
    m_picture.FreeSnapshots();
    m_picture.PlayedPacket = 0;
    m_interpreter.ClearPicture();
}

void f101::Play(std::int32_t positionMs)
{
    m_songs.SongOpens(); // by now it is loaded
    m_clock.Play(positionMs);
}

void f101::RememberLastPlayed(const QString& path)
{
    lantern::RememberLastPlayed(*m_state.Settings, path);
}

// --- The audio control

void f101::ShowStatus(const QString& text)
{
    m_display.ShowStatus(text);
}

void f101::SetValueText(AudioValue value, const QString& text)
{
    Options().ValueLabel(value).setText(text);
    if (value == AudioValue::KeyPitch || value == AudioValue::Speed)
        m_songs.TuneChanged();
}

void f101::SetDeviceText(const QString& name)
{
    Options().dev(1).SetCaption(name);
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
    m_parts.Refresh();
    if (!path.isEmpty())
        OpenMedia(path);
}

void f101::GoToTrack(int places)
{
    m_desktop.GoTo(places);
}

bool f101::IsAboutShown()
{
    return Options().IsAboutShown();
}

void f101::ShowAbout()
{
    KeepInSight(&Options());
    Options().ShowForm(kAboutForm.toString());
}

void f101::OpenWebSite()
{
    lantern::OpenWebSite();
}

void f101::Exit()
{
    close();
}

// --- The menus and the options

ContextMenuState f101::MenuState()
{
    const auto can = [this](CommandId command) { return m_parts.Bar().tBtn(command).Enabled(); };
    return {.canPlay = can(CommandId::Play),
            .canPause = can(CommandId::Pause),
            .canStop = can(CommandId::Stop),
            .canSkip = can(CommandId::Forward10Seconds),
            .isMaximised = m_parts.IsMaximised()};
}

void f101::ShowPopMenu()
{
    if (m_track.MediaLoading)
        return;
    RunMenu([this] { return m_popMenu.ShowCommands(ContextMenuItems(MenuState())); });
}

void f101::ShowDeviceMenu()
{
    RunMenu([this] {
        const QStringList names = m_audio.DeviceNames();
        const int chosen = ChosenDevice(names, m_audio.AudioDevice);
        return m_popMenu.ShowDevices(DeviceMenuItems(names, chosen));
    });
}

// Show is false if the window was destroyed while the menu was open. A menu that is open already,
// and what goes with it, stays as it is.
void f101::RunMenu(const std::function<bool()>& show)
{
    if (m_popMenu.IsOpen())
        return;
    SetOptionsOnTop(false);
    m_parts.SetPointersBlank(false);
    if (!show())
        return;
    if (m_parts.IsMaximised())
        m_parts.SetPointersBlank(true);
    SetOptionsOnTop(true);
}

void f101::MenuClick(const QString& key)
{
    SetOptionsOnTop(true);
    if (const std::optional<int> screen = ScreenOfKey(key))
        ChooseScreen(*screen);
    else if (key == kOptionsKey)
        ToggleOptions(true);
    else
        MainPopup(static_cast<CommandId>(key.toInt()));
}

frmOptions& f101::Options()
{
    if (!m_options) {
        OptionsHost& player = *this;
        const TwipsPerPixel twips = {m_state.TwipsX, m_state.TwipsY};
        m_options =
            std::make_unique<frmOptions>(*this, player, m_audio, m_engine->Spectrum(), twips);
        m_refresh.SetOptions(m_options.get());
    }
    return *m_options;
}

void f101::ToggleOptions(bool force)
{
    frmOptions& options = Options();
    const bool shows = force || !options.isVisible();
    if (shows)
        KeepInSight(&options);
    options.ShowForm((shows ? kOptionsForm : kNoForm).toString());
    if (options.isVisible())
        options.activateWindow();
}

frmStage& f101::Stage()
{
    if (!m_stageWindow) {
        OptionsHost& player = *this;
        const TwipsPerPixel twips = {m_state.TwipsX, m_state.TwipsY};
        m_stageWindow = std::make_unique<frmStage>(*this, player, m_stage, twips);
        m_stageWindow->RightButtonUp = [this] { ShowPopMenu(); };
        m_stageWindow->Do = [this](StageDeed deed) { ForgetSongs(deed); };
        m_stageWindow->Test = [this](bool isOn) {
            if (isOn)
                m_delayTest.Start();
            else
                m_delayTest.Stop();
            m_stageWindow->ShowTest(m_delayTest.IsRunning());
        };
        m_stageWindow->ChooseScreen = [this] { ShowScreenMenu(); };
        m_stageWindow->StepScreen = [this](int by) { StepScreen(by); };
        ShowSinger();
    }
    return *m_stageWindow;
}

void f101::ToggleStage()
{
    if (m_track.MediaLoading)
        return;
    if (Stage().isVisible())
        Stage().ShowForm(false);
    else
        ShowStage();
}

void f101::ShowStage()
{
    KeepInSight(&Stage());
    Stage().ShowForm(true);
}

// What is chosen on the stage window, and who in the player acts on it besides the engine.
void f101::ActOnStage(const StageSettings& settings)
{
    m_songs.RememberTunes(settings.remembersTunes);
    m_songs.EvenOut(settings.evensLoudness);
    m_parts.Pic().SetLook(settings.smoothLetters ? PictureLook::Smooth : PictureLook::Sharp);
    m_singer.SetLook(m_parts.Pic().Look());
    m_singer.Choose(settings.singerScreen);
    if (m_stageWindow)
        m_stageWindow->ShowSettings();
}

void f101::ShowSinger()
{
    if (!m_stageWindow)
        return;
    const ScreenIdentities there = SingerScreen::Screens();
    m_stageWindow->ShowSinger(ChosenCaption(m_singer.Chosen(), there),
                              SingerStatus(m_singer.State(), there));
}

void f101::ShowScreenMenu()
{
    const ScreenIdentities there = SingerScreen::Screens();
    m_offeredScreens = OfferedScreens(m_singer.Chosen(), there);
    const QWidget& button = m_stageWindow->ScreenButton();
    const QPoint place = button.mapToGlobal(button.rect().bottomLeft());
    RunMenu(
        [&] { return m_popMenu.ShowScreens(ScreenMenuItems(m_singer.Chosen(), there), place); });
}

// As in the menu, from none on; there is nothing beyond either end.
void f101::StepScreen(int by)
{
    m_offeredScreens = OfferedScreens(m_singer.Chosen(), SingerScreen::Screens());
    const std::optional<std::size_t> now = FindScreen(m_singer.Chosen(), m_offeredScreens);
    const int number = (now ? static_cast<int>(*now) : -1) + by;
    ChooseScreen(std::clamp(number, -1, static_cast<int>(m_offeredScreens.size()) - 1));
}

// By its place in the menu; none of them switches it off.
void f101::ChooseScreen(int number)
{
    ScreenIdentity chosen;
    if (number >= 0 && number < std::ssize(m_offeredScreens))
        chosen = m_offeredScreens[static_cast<std::size_t>(number)];
    m_stage.Set(&StageSettings::singerScreen, chosen);
    m_singer.OpenAgain();
}

// What has gone of all songs can't be had back.
void f101::ForgetSongs(StageDeed deed)
{
    if (deed == StageDeed::ForgetSong) {
        m_songs.ForgetSong();
        return;
    }
    SetOptionsOnTop(false);
    const MessageAnswer answer =
        ShowMessage(QStringLiteral("Forget the key, the speed and the loudness of all songs?"),
                    YesNo | QuestionIcon);
    SetOptionsOnTop(true);
    if (answer == MessageAnswer::Yes && m_isLoaded)
        m_songs.ForgetAllSongs();
}

// Under the singer's picture nobody finds it, and over the picture everybody sees it.
void f101::KeepInSight(QWidget* window)
{
    if (window && m_singer.Covers(window->frameGeometry()))
        window->move(screen()->geometry().center() - window->rect().center());
}

void f101::HideSideWindows()
{
    if (m_options)
        m_options->ShowForm(kNoForm.toString());
    if (m_stageWindow)
        m_stageWindow->ShowForm(false);
}

// A menu or a dialog that opens next is not to come up behind the options, nor behind the stage
// window.
void f101::SetOptionsOnTop(bool onTop)
{
    QWidget* const windows[] = {m_options.get(), m_stageWindow.get()};
    for (QWidget* const window : windows) {
        if (!window || !window->isVisible())
            continue;
        SetTopMost(*window, onTop);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

} // namespace lantern
