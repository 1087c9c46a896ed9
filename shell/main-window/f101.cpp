// SPDX-License-Identifier: GPL-3.0-or-later
#include "f101.h"

#include "AccessibleRole.h"
#include "Application.h"
#include "Complaint.h"
#include "LastErrorText.h"
#include "MakeZipHandler.h"
#include "PlayerSettings.h"
#include "SqliteSongStore.h"
#include "Version.h"
#include "WindowActivation.h"
#include "WindowLayout.h"
#include "frmOptions.h"
#include "frmStage.h"
#include "modAPI.h"

#include <QCoreApplication>

#include <cmath>
#include <utility>

namespace lantern {
namespace {

constexpr int kTickMs = 10;
constexpr int kJoinDelayMs = 200;

// A key that alone means nothing.
bool IsModifier(KeyCode keyCode)
{
    return keyCode == KeyCode::None || keyCode == KeyCode::Shift || keyCode == KeyCode::Control ||
           keyCode == KeyCode::Alt;
}

QString Caption()
{
    return QStringLiteral("%1 %2.%3.%4")
        .arg(kApplicationTitle)
        .arg(kMajorVersion)
        .arg(kMinorVersion)
        .arg(kRevision, 2, 10, QChar(u'0'));
}

} // namespace

f101::f101(ProgramState& state, std::unique_ptr<AudioEngine> engine, ShowWarning showWarning)
    : m_state(state), m_showWarning(std::move(showWarning)),
      m_parts(*this, {state.TwipsX, state.TwipsY}), m_mouse(*this, m_parts),
      m_picDrop(m_parts.Pic(), [this](const QString& path) { OpenMedia(path); }), m_popMenu(*this),
      m_picture(m_buffers), m_display(m_picture, m_parts, m_clipboard),
      m_singer(*this, *this, m_picture), m_pace(m_display, m_parts),
      m_interpreter(m_picture, m_pace), m_engine(std::move(engine)), m_audio(*m_engine, *this),
      m_stage(*m_engine, state.UserDataPath), m_refresh(m_parts.Bar(), *m_engine, m_audio, m_track),
      m_clock(*m_engine, m_track, m_picture, m_interpreter, m_display, *this),
      m_loader(m_track, *m_engine, *this, {[] { return MakeZipHandler(); }, state.AppPath}),
      m_songs(m_track, *m_engine, m_audio,
              [&state] { return MakeSqliteSongStore(state.SongsFile); }),
      m_delayTest(m_track, *m_engine, m_clock, *this),
      m_wheel(m_audio, m_track, [this](std::int32_t deltaMs) { m_clock.SkipBy(deltaMs); }),
      m_commands(Targets()), m_desktop(Targets(), *this, [this] { ShowStage(); }),
      m_link(state.InstanceMutex, *this), m_input(*this)
{
    SetAccessibleRole(*this, QAccessible::Window);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    m_timer1.setTimerType(Qt::PreciseTimer);
    m_timer1.setInterval(kTickMs);
    ConnectParts();
}

void f101::ConnectParts()
{
    m_parts.LaidOut = [this] {
        if (m_isLoaded)
            m_display.PaintDisplay();
    };
    m_parts.Pic().PaintPicture = [this] { ShowPictures(); };
    m_singer.PictureLost = [this] { ShowPictures(); };
    m_singer.Changed = [this] { ShowSinger(); };
    m_singer.Opened = [this] {
        KeepInSight(m_options.get());
        KeepInSight(m_stageWindow.get());
    };
    m_parts.Bar().Click = [this](CommandId command) { MainPopup(command); };
    m_parts.Bar().SliderChange = [this] { m_clock.HandleSliderScroll(); };
    m_parts.Bar().VolumeChange = [this] { VolumeMoved(); };
    m_mouse.RightButtonUp = [this] { ShowPopMenu(); };
    m_mouse.DoubleClick = [this] { MainPopup(CommandId::FullScreen); };
    m_popMenu.Click = [this](const QString& key) { MenuClick(key); };
    m_engine->SoundDone = [this] {
        if (m_delayTest.IsRunning())
            m_delayTest.GoOn();
        else
            m_clock.HandleSoundDone();
    };
    m_delayTest.Ended = [this] {
        if (m_stageWindow)
            m_stageWindow->ShowTest(false);
        UpdatePlayer();
    };
    m_stage.Changed = [this](const StageSettings& settings) { ActOnStage(settings); };
    m_stage.SaveFailed = ShowFileError;
    // A slider that the next refresh moved would take the wheel along.
    m_songs.TuneSet = [this] { m_refresh.SetOptions(m_options.get()); };
    m_songs.Trouble = [this](const QString& reason) { ShowStatus(reason); };
    m_timer1.callOnTimeout(this, [this] { UpdatePlayer(); });
    m_paintTimer.setSingleShot(true);
    m_paintTimer.callOnTimeout(this, [this] { m_parts.PaintSoon(); });
}

f101::~f101()
{
    Unload();
}

// Each step stands on those before it; the settings, for one, set the volume of a running engine.
bool f101::Load()
{
    if (const QString message = m_audio.StartEngine(); !message.isEmpty()) {
        m_showWarning(message);
        return false;
    }
    m_isLoaded = true;
    SetWindowIcons(*this, QStringLiteral("lyric-lantern"), true);
    setWindowTitle(Caption());
    setWindowFlag(Qt::FramelessWindowHint);
    setMinimumSize(MinimumPixels(Toolbar::Height() / m_state.TwipsY));
    setMaximumSize(kMaximumPixels);
    m_audio.WheelType = WheelMode::Volume;
    LoadPlayerSettings(*m_state.Settings, m_track, m_display.ZoomStep, m_audio);
    m_stage.Load();
    m_refresh.SetOptions(m_options.get()); // no hand has moved its sliders to these values
    ShowStatus(QString());
    m_picture.SetupGraphics(true, &m_parts.Pic());
    m_parts.Bar().SetupToolbar();
    m_parts.Skinner().Initialize(this, true, true);
    m_loader.ClearMedia();
    const int zoomStep = m_display.ZoomStep;
    if (zoomStep == kFullScreenStep)
        m_display.SetZoom(kDefaultZoomStep, 1.0F); // the size behind the full screen
    m_display.SetZoom(zoomStep, 1.0F);
    UpdatePlayer();
    m_audio.SetAudioDevice(m_audio.AudioDevice);
    OpenCommandLine();
    m_timer1.start();
    return true;
}

void f101::OpenCommandLine()
{
    if (m_state.DebugRun)
        return;
    const QString track = GetCommandArgs(m_state.Arguments);
    if (track.trimmed().isEmpty())
        return;
    const QString message = m_loader.OpenMedia(track);
    if (m_track.ClipCount() == 0)
        Complain(OpeningComplaint(message, track));
}

// The lock goes before all that takes time: a new start may then run beside this one.
void f101::Unload()
{
    if (!m_isLoaded)
        return;
    m_isLoaded = false;
    m_timer1.stop();
    m_desktop.Leave();
    if (m_options)
        m_options->hide();
    if (m_stageWindow)
        m_stageWindow->hide();
    ReleaseInstance(m_state);
    m_singer.Choose({});
    m_delayTest.Stop();
    m_engine->StopSound();
    SaveSettingsToStore(*m_state.Settings, m_display.NearestZoom(), *m_engine, m_audio);
    m_stage.Save();
    m_songs.End();
    m_picture.SetupGraphics(false);
}

void f101::closeEvent(QCloseEvent*)
{
    Unload();
    QCoreApplication::exit();
}

CommandTargets f101::Targets()
{
    return {*this, m_track, *m_engine, m_clock, m_display, m_audio, m_wheel};
}

// What a start shows comes first.
void f101::JoinDesktop()
{
    QTimer::singleShot(kJoinDelayMs, this, [this] {
        if (m_isLoaded)
            m_desktop.Join();
    });
}

void f101::TakeFocus(const QByteArray& activationToken)
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    ActivateBy(activationToken, *this);
}

void f101::OpenMedia(const QString& path)
{
    // The link may bring a track while a message box still stands where the window will be.
    if (!m_isLoaded)
        return;
    m_delayTest.Stop();
    m_loader.OpenMedia(path);
}

void f101::MainPopup(CommandId command)
{
    m_delayTest.Stop(); // what is meant for the track acts on the track
    m_commands.MainPopup(command);
}

void f101::DoKeyDown(KeyCode keyCode, ShiftBits shift)
{
    if (!IsModifier(keyCode))
        m_delayTest.Stop();
    m_commands.DoKeyDown(keyCode, shift);
}

void f101::DoKeyUp(KeyCode keyCode, ShiftBits shift)
{
    m_commands.DoKeyUp(keyCode, shift);
}

void f101::MouseWheel(std::int32_t keys, std::int32_t delta, std::int32_t x, std::int32_t y)
{
    m_wheel.MouseWheel(keys, delta, x, y);
}

void f101::VolumeMoved()
{
    if (m_track.MediaLoading)
        return;
    m_audio.SetVolume(static_cast<float>(m_parts.Bar().ctlVolume().Value()), true);
    m_audio.WheelType = WheelMode::Volume;
}

void f101::SetWheelType(WheelMode mode)
{
    m_audio.SetWheelType(mode);
}

void f101::UpdatePlayer()
{
    m_delayTest.Follow();
    m_clock.UpdatePlayer();
    const int trouble = m_engine->GetSoundTrouble();
    if (std::exchange(m_soundTrouble, trouble) != trouble && trouble != 0)
        ShowStatus(ErrorText(trouble));
}

void f101::paintEvent(QPaintEvent* event)
{
    m_parts.PaintBackground(event->region());
}

void f101::resizeEvent(QResizeEvent*)
{
    m_parts.Layout();
}

void f101::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::WindowStateChange) {
        if (isMinimized())
            HideSideWindows();
        m_parts.FollowWindowState();
    }
    QWidget::changeEvent(event);
}

bool f101::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && m_isLoaded) {
        m_picture.RealizePalette();
        m_parts.Refresh();
    }
    return event->type() == QEvent::UpdateRequest ? Paint(event) : QWidget::event(event);
}

// All that the window has to paint is painted here, except what another window uncovers.
bool f101::Paint(QEvent* request)
{
    if (const double seconds = m_pace.SecondsToWait(); seconds > 0) {
        m_paintTimer.start(static_cast<int>(std::ceil(seconds * 1000)));
        return true;
    }
    const double begin = m_parts.SystemTimer();
    BringPictures();
    const bool isDone = QWidget::event(request);
    m_singer.Flush();
    m_pace.NotePainted(begin);
    return isDone;
}

void f101::ShowPictures()
{
    m_display.PaintDisplay();
    BringPictures();
}

// Both show the packet of the last painting that was asked for, and none after it.
void f101::BringPictures()
{
    if (m_display.ShowPicture())
        m_singer.ShowPicture(m_parts.WindowBackColor());
}

void f101::keyPressEvent(QKeyEvent* event)
{
    m_input.KeyPress(*event);
}

void f101::keyReleaseEvent(QKeyEvent* event)
{
    m_input.KeyRelease(*event);
}

void f101::wheelEvent(QWheelEvent* event)
{
    m_input.Wheel(*event);
}

// No key stays on a control.
bool f101::focusNextPrevChild(bool)
{
    return false;
}

} // namespace lantern
