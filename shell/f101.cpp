// SPDX-License-Identifier: GPL-3.0-or-later
#include "f101.h"

#include "Application.h"
#include "KeyMap.h"
#include "MakeZipHandler.h"
#include "PlayerSettings.h"
#include "Rounding.h"
#include "SystemColours.h"
#include "WindowLayout.h"
#include "modAPI.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace lantern {
namespace {

constexpr int kTickMs = 10;
constexpr std::int32_t kSystemTextHeight = 225; // twips

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
    : m_state(state), m_showWarning(std::move(showWarning)), m_pic(this),
      m_picDrop(m_pic, [this](const QString& path) { OpenMedia(path); }), m_systemText(this),
      m_fullScreen(*this), m_picture(m_buffers), m_display(m_picture, *this, m_clipboard),
      m_interpreter(m_picture, m_display), m_engine(std::move(engine)), m_audio(*m_engine, *this),
      m_clock(*m_engine, m_track, m_picture, m_interpreter, m_display, *this),
      m_loader(m_track, *m_engine, *this, {[] { return MakeZipHandler(); }, state.AppPath}),
      m_wheel(m_audio, m_track, [this](std::int32_t deltaMs) { m_clock.SkipBy(deltaMs); }),
      m_commands({*this, m_track, *m_engine, m_clock, m_display, m_audio, m_wheel}),
      m_link(state.InstanceMutex, *this)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    m_pic.setObjectName(QStringLiteral("pic"));
    m_pic.setAccessibleName(QStringLiteral("Lyrics"));
    m_pic.PaintPicture = [this] { m_display.PaintDisplay(); };
    m_engine->SoundDone = [this] { m_clock.HandleSoundDone(); };
    m_timer1.setTimerType(Qt::PreciseTimer);
    m_timer1.setInterval(kTickMs);
    m_timer1.callOnTimeout(this, [this] { UpdatePlayer(); });
    m_systemTimer.start();
}

f101::~f101()
{
    Unload();
}

// Each step stands on those before it; the settings, for one, set the volume of a running engine.
bool f101::Load()
{
    m_timer1.stop();
    if (const QString message = m_audio.StartEngine(); !message.isEmpty()) {
        m_showWarning(message);
        return false;
    }
    m_isLoaded = true;
    SetWindowIcons(*this, QStringLiteral("lyric-lantern"), true);
    setWindowTitle(Caption());
    setMinimumSize(MinimumPixels(0));
    m_audio.WheelType = static_cast<std::int16_t>(WheelMode::Volume);
    LoadPlayerSettings(*m_state.Settings, m_track, m_display.ZoomStep, m_audio);
    ShowStatus(QString());
    m_picture.SetupGraphics(true, &m_pic);
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
    if (const QString track = GetCommandArgs(m_state.Arguments); !track.trimmed().isEmpty())
        OpenMedia(track);
}

// The lock goes first: a new start may then run beside this one.
void f101::Unload()
{
    if (!m_isLoaded)
        return;
    m_isLoaded = false;
    m_timer1.stop();
    ReleaseInstance(m_state);
    m_engine->StopSound();
    SaveSettingsToStore(*m_state.Settings, m_display.NearestZoom(), *m_engine, m_audio);
    m_picture.SetupGraphics(false);
}

void f101::closeEvent(QCloseEvent* event)
{
    Unload();
    event->accept();
    QCoreApplication::exit();
}

void f101::TakeFocus()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void f101::OpenMedia(const QString& path)
{
    // The link may bring a track while a message box still stands where the window will be.
    if (m_isLoaded)
        m_loader.OpenMedia(path);
}

void f101::MainPopup(std::int16_t index)
{
    m_commands.MainPopup(index);
}

void f101::DoKeyDown(KeyCode keyCode, ShiftBits shift)
{
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

void f101::SetWheelType(std::int16_t number)
{
    m_audio.SetWheelType(number);
}

void f101::UpdatePlayer()
{
    m_clock.UpdatePlayer();
}

QRect f101::PixelsOf(const TwipRect& rect) const
{
    const auto nearest = [](std::int32_t twips, std::int32_t perPixel) {
        return RoundToEven(static_cast<double>(twips) / perPixel);
    };
    return {nearest(rect.left, m_state.TwipsX), nearest(rect.top, m_state.TwipsY),
            rect.width / m_state.TwipsX, rect.height / m_state.TwipsY};
}

void f101::Layout()
{
    if (!m_isLoaded || isMinimized())
        return;
    CalcMargins();
    const TwipSize client = {width() * m_state.TwipsX, height() * m_state.TwipsY};
    const TwipRect picture = PictureRect(client, m_marginX, 0);
    m_pic.setGeometry(PixelsOf(picture));
    m_systemText.setGeometry(PixelsOf(SystemTextRect(picture, kSystemTextHeight, m_state.TwipsY)));
    m_display.PaintDisplay();
}

void f101::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    for (const QRect& exposed : event->region())
        painter.fillRect(exposed, QColor::fromRgb(ResolveColour(m_backColor)));
}

void f101::resizeEvent(QResizeEvent*)
{
    Layout();
}

void f101::changeEvent(QEvent* event)
{
    // The window system changes the state, too, and then nobody else sees to what goes with it.
    if (event->type() == QEvent::WindowStateChange) {
        ShowSkinner(!IsMaximised());
        ShowToolbar(!IsMaximised());
    }
    QWidget::changeEvent(event);
}

bool f101::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && m_isLoaded) {
        m_picture.RealizePalette();
        update();
    }
    return QWidget::event(event);
}

void f101::keyPressEvent(QKeyEvent* event)
{
    const KeyCode key = KeyCodeOf(*event);
    // The release before an unmarked repeat has already counted as one.
    if (m_keyRepeats.IsRepeat(*event) &&
        std::ranges::find(kRepeatingKeys, key) == kRepeatingKeys.end())
        return;
    DoKeyDown(key, ShiftBitsOf(*event));
}

void f101::keyReleaseEvent(QKeyEvent* event)
{
    m_keyRepeats.NoteRelease(*event);
    // Some systems tell of releases while a key that repeats is still down.
    if (!event->isAutoRepeat())
        DoKeyUp(KeyCodeOf(*event), ShiftBitsOf(*event));
}

void f101::wheelEvent(QWheelEvent* event)
{
    if (const int notch = m_wheelTurns.Add(event->angleDelta().y()); notch != 0)
        MouseWheel(0, notch, 0, 0);
    event->accept();
}

void f101::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        MainPopup(10);
}

} // namespace lantern
