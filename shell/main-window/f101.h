// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioControl.h"
#include "AudioEngine.h"
#include "CommandLink.h"
#include "Commands.h"
#include "ContextMenu.h"
#include "ControlRefresh.h"
#include "DelayTest.h"
#include "DesktopSession.h"
#include "Display.h"
#include "ImageClipboard.h"
#include "MediaLoader.h"
#include "OptionsHost.h"
#include "PacketInterpreter.h"
#include "PaintPace.h"
#include "PicDrop.h"
#include "PictureMemory.h"
#include "PlaybackClock.h"
#include "PopMenu.h"
#include "SingerScreen.h"
#include "SongKeeper.h"
#include "StageControl.h"
#include "Track.h"
#include "VirtualBuffers.h"
#include "WheelControl.h"
#include "WindowInput.h"
#include "WindowMouse.h"
#include "WindowParts.h"
#include "modPlayer.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

namespace lantern {

class frmOptions;
class frmStage;
enum class StageDeed : std::uint8_t;

// Shows the user a message box with the warning icon.
using ShowWarning = std::function<void(const QString& text)>;

// The player's one main window, and the owner of all that belongs to playing. The work is done by
// its members; here is who stands where, the life cycle, and what the members ask of a window.
//
// Life cycle: construct, Load, show; it unloads itself when it is closed, and ends the program.
class f101 : public QWidget,
             public CommandHost,
             private OptionsHost,
             private PlaybackHost,
             private MediaHost,
             private AudioControlHost,
             private CommandWindow {
public:
    // The state is borrowed and outlives the window.
    f101(ProgramState& state, std::unique_ptr<AudioEngine> engine, ShowWarning showWarning);
    ~f101() override;

    // Starts everything, shows nothing yet, and opens the track that the command line names. False
    // if there is no sound to be had: the user has been told, and the program can't go on.
    [[nodiscard]] bool Load();

    // Once it is shown: the desktop learns of the player, and may act on it.
    void JoinDesktop();

    void TakeFocus(const QByteArray& activationToken) override;
    void OpenMedia(const QString& path) override;
    void MainPopup(CommandId command);
    void DoKeyDown(KeyCode keyCode, ShiftBits shift) override;
    void DoKeyUp(KeyCode keyCode, ShiftBits shift) override;
    void MouseWheel(std::int32_t keys, std::int32_t delta, std::int32_t x, std::int32_t y) override;
    // Returns when the menu has closed and what was chosen has run.
    void ShowPopMenu() override;
    void ShowDeviceMenu() override;
    void ToggleOptions(bool force) override;
    void ToggleStage() override;
    void ShowStage();
    void SetOptionsOnTop(bool onTop);
    void SetWheelType(WheelMode mode);
    void UpdatePlayer();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    CommandTargets Targets();
    void ConnectParts();
    bool Paint(QEvent* request);
    void OpenCommandLine();
    void Unload();
    void VolumeMoved();
    void MenuClick(const QString& key);
    void RunMenu(const std::function<bool()>& show);
    ContextMenuState MenuState();
    frmOptions& Options();
    frmStage& Stage();
    void HideSideWindows();
    void KeepInSight(QWidget* window);
    void ActOnStage(const StageSettings& settings);
    void ForgetSongs(StageDeed deed);
    void ShowSinger();
    void ShowScreenMenu();
    void ChooseScreen(int number);
    void StepScreen(int by);
    void ShowPictures();
    void BringPictures();

    // PlaybackHost
    std::int32_t SliderValue() override;
    std::int32_t SliderMax() override;
    void SetSliderValue(std::int32_t positionMs) override;
    void CancelScroll() override;
    void SetTicker(std::int32_t seconds, bool isPlaying) override; // MediaHost, too
    void RefreshControls(std::int32_t positionMs, bool isPlaying) override;
    void ReopenLastTrack() override;
    void WheelMovesPosition() override;

    // MediaHost
    void SetSliderValues(std::int32_t minimum, std::int32_t maximum, std::int32_t value) override;
    void HideMessage() override;
    void ForgetPicture() override;
    void Play(std::int32_t positionMs) override;
    void RememberLastPlayed(const QString& path) override;

    // AudioControlHost
    void ShowStatus(const QString& text) override;
    void SetValueText(AudioValue value, const QString& text) override;
    void SetDeviceText(const QString& name) override;

    // CommandWindow
    void ShowOpenDialog() override;
    void GoToTrack(int places) override;
    bool IsAboutShown() override;
    void ShowAbout() override;
    void OpenWebSite() override; // OptionsHost, too
    void Exit() override;

    ProgramState& m_state;
    ShowWarning m_showWarning;

    WindowParts m_parts;
    WindowMouse m_mouse;
    PicDrop m_picDrop;
    PopMenu m_popMenu;
    ImageClipboard m_clipboard;

    Track m_track;
    VirtualBuffers m_buffers;
    PictureMemory m_picture;
    Display m_display;
    SingerScreen m_singer;
    PaintPace m_pace;
    PacketInterpreter m_interpreter;

    std::unique_ptr<AudioEngine> m_engine;
    int m_soundTrouble = 0; // as last told
    AudioControl m_audio;
    StageControl m_stage;
    ControlRefresh m_refresh;
    PlaybackClock m_clock;
    MediaLoader m_loader;
    SongKeeper m_songs;
    DelayTest m_delayTest;
    WheelControl m_wheel;

    Commands m_commands;
    DesktopSession m_desktop;
    CommandLink m_link;
    WindowInput m_input;
    ScreenIdentities m_offeredScreens; // by the last menu of them
    QTimer m_timer1;
    QTimer m_paintTimer;                     // runs while a painting is held back
    std::unique_ptr<frmOptions> m_options;   // made at the first touch
    std::unique_ptr<frmStage> m_stageWindow; // likewise
    bool m_isLoaded = false;
};

} // namespace lantern
