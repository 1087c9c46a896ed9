// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopSession.h"

#include "Application.h"
#include "AudioControl.h"
#include "AudioEngine.h"
#include "CommandLink.h"
#include "Display.h"
#include "MediaMimeTypes.h"
#include "MediaTypes.h"
#include "NeighbourTracks.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "PlaybackClock.h"
#include "Rounding.h"
#include "Track.h"

#include <QPromise>
#include <QThreadPool>

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace lantern {
namespace {

// A share of 1, to the digits that a percentage of the engine holds: what was set reads back.
double ShareOf(double percentage)
{
    return std::round(percentage * 1e4) / 1e6;
}

// The player's sliders know whole percents, so anything between them would be set once more a
// moment later, and told so.
float WholePercentage(double share)
{
    return static_cast<float>(RoundToEven(share * 100));
}

// A speed is told as percent faster than normal.
double RateOf(float speed)
{
    return ShareOf(100 + static_cast<double>(speed));
}

MediaRates RatesOfThePlayer()
{
    constexpr float kEndless = std::numeric_limits<float>::infinity();
    return {RateOf(ClampAudioValue(AudioValue::Speed, -kEndless)),
            RateOf(ClampAudioValue(AudioValue::Speed, kEndless))};
}

MediaIdentity IdentityOfThePlayer()
{
    MediaIdentity identity = {.busName = kApplicationBusName,
                              .title = kApplicationTitle,
                              .desktopEntry = kApplicationId,
                              .mimeTypes = {},
                              .screenReason = QStringLiteral("Playing a track")};
    for (const QStringView type : kMediaMimeTypes)
        identity.mimeTypes += type.toString();
    return identity;
}

QByteArray UrlOf(const QString& path)
{
    if (!path.startsWith(u'/'))
        return {};
    return "file://" + NativeFromText(path).toPercentEncoding("/");
}

} // namespace

DesktopSession::DesktopSession(const CommandTargets& targets, CommandHost& window,
                               std::function<void()> showStage)
    : m_to(targets), m_window(window), m_showStage(std::move(showStage)),
      m_bus(*this, RatesOfThePlayer(), IdentityOfThePlayer())
{
    // Each lookout has a result.
    QObject::connect(&m_lookout, &QFutureWatcher<Neighbours>::finished, &m_context,
                     [this] { m_neighbours = m_lookout.result(); });
}

DesktopSession::~DesktopSession() = default;

void DesktopSession::Join()
{
    m_bus.Join();
}

void DesktopSession::Follow()
{
    m_bus.Follow();
}

void DesktopSession::Leave()
{
    m_bus.Leave();
    m_wish = {};
}

// A track that was remembered but not opened is one that the wish to play opens.
MediaState DesktopSession::State()
{
    NoteTrack();
    const bool isLoaded = m_to.track.ClipCount() > 0;
    const SoundStatus status = m_to.engine.GetSoundStatus();
    MediaState state;
    state.status = status == SoundStatus::Playing  ? MediaStatus::Playing
                   : status == SoundStatus::Paused ? MediaStatus::Paused
                                                   : MediaStatus::Stopped;
    if (!m_notedMedia.isEmpty())
        state.track = MediaTrack{m_title, m_url, isLoaded ? m_to.track.TotalLengthMs : 0};
    state.rate = RateOf(m_to.engine.GetEngineTempo());
    state.volume = ShareOf(static_cast<double>(m_to.engine.GetEngineVolume()));
    state.isFullScreen = m_to.display.NearestZoom() == kFullScreenStep;
    state.canSeek = isLoaded && m_to.track.TotalLengthMs > 0;
    state.canGoNext = m_neighbours.hasNext;
    state.canGoPrevious = m_neighbours.hasPrevious;
    return state;
}

void DesktopSession::NoteTrack()
{
    if (m_notedMedia == m_to.track.CurrentMedia)
        return;
    m_notedMedia = m_to.track.CurrentMedia;
    m_title = TrackTitle(m_notedMedia);
    m_url = UrlOf(m_notedMedia);
    LookForNeighbours();
}

// In the background: a folder may hold very many files, or be far away. Until it is known, what was
// beside the track before counts, so that no wish in between is lost: one too many does nothing.
void DesktopSession::LookForNeighbours()
{
    const auto promise = std::make_shared<QPromise<Neighbours>>();
    m_lookout.setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, path = m_notedMedia] {
        Neighbours found;
        if (!path.isEmpty())
            found = {!NeighbourTrack(path, 1).isEmpty(), !NeighbourTrack(path, -1).isEmpty()};
        promise->addResult(found);
        promise->finish();
    });
}

std::int64_t DesktopSession::PositionMs()
{
    return m_to.clock.GetPlayerPos();
}

void DesktopSession::Raise()
{
    m_window.TakeFocus({});
}

void DesktopSession::ShowStage(const QByteArray& activationToken)
{
    m_window.TakeFocus(activationToken);
    m_showStage();
}

void DesktopSession::Quit()
{
    m_wish.isToQuit = true;
    RunLater();
}

void DesktopSession::SetFullScreen(bool)
{
    m_to.display.SetZoom(kFullScreenStep, 1.0F); // there and back
}

void DesktopSession::Play()
{
    if (m_to.track.ClipCount() > 0)
        m_to.clock.PlayPause();
    else
        OpenFile(m_to.track.CurrentMedia);
}

void DesktopSession::Pause()
{
    m_to.clock.PlayPause();
}

void DesktopSession::Stop()
{
    m_to.clock.StopPlaying();
}

void DesktopSession::GoToNext()
{
    ++m_wish.places;
    RunLater();
}

void DesktopSession::GoToPrevious()
{
    --m_wish.places;
    RunLater();
}

void DesktopSession::SetPosition(std::int64_t positionMs)
{
    m_to.clock.SkipBy(positionMs - m_to.clock.GetPlayerPos());
}

void DesktopSession::SetRate(double rate)
{
    m_to.audio.SetSpeed(WholePercentage(rate - 1), true);
}

void DesktopSession::SetVolume(double volume)
{
    m_to.audio.SetVolume(WholePercentage(volume), true);
}

bool DesktopSession::OpenFile(const QString& path)
{
    const bool isTrack = IsMediaExtension(path) || IsAudioExtension(path);
    if (!isTrack || FileCheck(path) != QStringLiteral("FILE"))
        return false;
    m_wish.track = path;
    m_wish.places = 0;
    RunLater();
    return true;
}

void DesktopSession::RunLater()
{
    QMetaObject::invokeMethod(
        &m_context, [this] { RunWish(); }, Qt::QueuedConnection);
}

void DesktopSession::RunWish()
{
    const Wish wish = std::exchange(m_wish, {});
    if (wish.isToQuit) {
        m_to.window.Exit();
        return;
    }
    if (!wish.track.isEmpty())
        m_window.OpenMedia(wish.track);
    if (wish.places != 0)
        GoTo(wish.places);
}

void DesktopSession::GoTo(int places)
{
    if (m_to.track.MediaLoading || m_to.track.CurrentMedia.isEmpty())
        return;
    const QString track = NeighbourTrack(m_to.track.CurrentMedia, places);
    if (track.isEmpty())
        return;
    const SoundStatus status = m_to.engine.GetSoundStatus();
    m_window.OpenMedia(track);
    if (status == SoundStatus::Paused)
        m_to.engine.PauseSound();
    else if (status != SoundStatus::Playing)
        m_to.clock.StopPlaying();
}

} // namespace lantern
