// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioControl.h"
#include "AudioEngine.h"
#include "CommandLink.h"
#include "Commands.h"
#include "Display.h"
#include "FullScreen.h"
#include "ImageClipboard.h"
#include "KeyRepeats.h"
#include "MediaLoader.h"
#include "PacketInterpreter.h"
#include "PicDrop.h"
#include "PictureMemory.h"
#include "PictureSurface.h"
#include "PlaybackClock.h"
#include "SystemColours.h"
#include "SystemText.h"
#include "Track.h"
#include "VirtualBuffers.h"
#include "WheelControl.h"
#include "WheelTurns.h"
#include "modPlayer.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

namespace lantern {

// Shows the user a message box with the warning icon.
using ShowWarning = std::function<void(const QString& text)>;

// The player's one main window, and the owner of all that belongs to playing. The work is done by
// its members; here is who stands where, the life cycle, and what the members ask of a window.
//
// Life cycle: construct, Load, show; it unloads itself when it is closed, and ends the program.
class f101 : public QWidget,
             public CommandHost,
             private DisplayHost,
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

    void TakeFocus() override;
    void OpenMedia(const QString& path) override;
    void MainPopup(std::int16_t index);
    void DoKeyDown(KeyCode keyCode, ShiftBits shift);
    void DoKeyUp(KeyCode keyCode, ShiftBits shift);
    void MouseWheel(std::int32_t keys, std::int32_t delta, std::int32_t x, std::int32_t y);
    void SetWheelType(std::int16_t number);
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
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void OpenCommandLine();
    void Unload();
    void Layout();
    QRect PixelsOf(const TwipRect& rect) const;

    // DisplayHost
    ColourValue WindowBackColor() override;
    void SetWindowBackColor(ColourValue colour) override;
    void SetPicBackColor(ColourValue colour) override;
    void SetSkinnerBackColor(ColourValue colour) override;
    void SetSystemTextBackColor(ColourValue colour) override;
    ColourValue SystemTextForeColor() override;
    void SetSystemTextForeColor(ColourValue colour) override;
    void SetSystemTextCaption(const QString& caption) override;
    void ShowSystemText(bool visible) override;
    TwipSize PicSize() override;
    WindowFrame Frame() override;
    TwipSize DesktopSize() override;
    bool IsMaximised() override; // AudioControlHost, too
    void SetMaximised(bool maximised) override;
    void CalcMargins() override;
    void MoveWindow(const TwipRect& rect) override;
    void LockWindowUpdate(bool locked) override;
    void ShowToolbar(bool visible) override;
    void ShowSkinner(bool visible) override;
    double SystemTimer() override;

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
    void ResetView() override;
    void FreeSnapshots() override;
    void ResetPlayedPacket() override;
    void ClearPicture() override;
    void Play(std::int32_t positionMs) override;
    void RememberLastPlayed(const QString& path) override;

    // AudioControlHost
    void ShowStatus(const QString& text) override;
    void SetValueText(AudioValue value, const QString& text) override;
    void SetDeviceText(const QString& name) override;
    bool IsDeviceSaveOn() override;
    void SetOptionsOnTop(bool onTop) override;
    void SetPointersBlank(bool blank) override;
    bool ShowMenu(const std::vector<DeviceMenuItem>& items) override;

    // CommandWindow
    void ShowOpenDialog() override;
    void ToggleOptions(bool force) override;
    void ShowAbout() override;
    void OpenWebSite() override;
    void Exit() override;

    ProgramState& m_state;
    ShowWarning m_showWarning;
    QElapsedTimer m_systemTimer;

    PictureSurface m_pic;
    PicDrop m_picDrop;
    SystemText m_systemText;
    FullScreen m_fullScreen;
    ImageClipboard m_clipboard;
    // Differs from every border colour, so that the first paint colours all surroundings.
    ColourValue m_backColor = SystemReference(SystemColour::ButtonFace);
    std::int32_t m_marginX = 0;

    Track m_track;
    VirtualBuffers m_buffers;
    PictureMemory m_picture;
    Display m_display;
    PacketInterpreter m_interpreter;

    std::unique_ptr<AudioEngine> m_engine;
    AudioControl m_audio;
    PlaybackClock m_clock;
    MediaLoader m_loader;
    WheelControl m_wheel;

    Commands m_commands;
    CommandLink m_link;
    WheelTurns m_wheelTurns;
    KeyRepeats m_keyRepeats;
    QTimer m_timer1;
    bool m_isLoaded = false;
};

} // namespace lantern
