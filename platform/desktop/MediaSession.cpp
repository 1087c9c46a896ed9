// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaSession.h"

#include "PathText.h"
#include "UriList.h"

#include <QSysInfo>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace lantern {
namespace {

// A smaller difference is not worth a signal: it is no more than what a busy machine makes.
constexpr std::int64_t kJumpMs = 300;
constexpr auto kLongestBeginning = std::chrono::seconds(1);
// Each byte of a path may be escaped, and there may be a host.
constexpr qsizetype kLongestUri = qsizetype{3} * PATH_MAX + 1000;

} // namespace

MediaSession::MediaSession(MediaSessionHost& host, MediaRates rates) : m_host(host), m_rates(rates)
{
}

void MediaSession::Follow(Moment now)
{
    const MediaState before = m_state;
    m_state = m_host.State();
    const auto isSameTrack = [](const std::optional<MediaTrack>& a,
                                const std::optional<MediaTrack>& b) {
        return a.has_value() == b.has_value() && (!a || (a->url == b->url && a->title == b->title));
    };
    const bool isOtherTrack = !isSameTrack(before.track, m_state.track);
    if (isOtherTrack && m_state.track)
        ++m_trackNumber;
    if (m_state != before && Changed)
        Changed();
    FollowPosition(before, isOtherTrack, now);
}

// A stop and a new track tell where the position is by themselves.
void MediaSession::FollowPosition(const MediaState& before, bool isOtherTrack, Moment now)
{
    const std::int64_t positionMs = m_host.PositionMs();
    const bool isKnown = isOtherTrack || (m_state.status == MediaStatus::Stopped &&
                                          before.status != MediaStatus::Stopped);
    // What was started is heard a moment later, and runs from there.
    if (positionMs == m_toldMs && now - m_startedAt < kLongestBeginning)
        m_toldAt = now;
    const bool jumps = !isKnown && std::abs(positionMs - ExpectedMs(before, now)) > kJumpMs;
    if (jumps && Seeked)
        Seeked(positionMs);
    if (jumps || isKnown || before.status != m_state.status || before.rate != m_state.rate) {
        m_toldMs = positionMs;
        m_toldAt = now;
        m_startedAt = now;
    }
}

std::int64_t MediaSession::ExpectedMs(const MediaState& before, Moment now) const
{
    if (before.status != MediaStatus::Playing)
        return m_toldMs;
    const std::chrono::duration<double, std::milli> passed = now - m_toldAt;
    return m_toldMs + std::llround(passed.count() * before.rate);
}

MediaAnswer MediaSession::ShowStage(const QByteArray& activationToken)
{
    m_host.ShowStage(activationToken);
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Raise()
{
    m_host.Raise();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Quit()
{
    m_host.Quit();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::SetFullScreen(bool isOn)
{
    if (isOn != m_state.isFullScreen)
        m_host.SetFullScreen(isOn);
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Play()
{
    if (m_state.track && m_state.status != MediaStatus::Playing)
        m_host.Play();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Pause()
{
    if (m_state.status == MediaStatus::Playing)
        m_host.Pause();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::PlayPause()
{
    if (!m_state.track)
        return MediaAnswer::NotSupported;
    return m_state.status == MediaStatus::Playing ? Pause() : Play();
}

MediaAnswer MediaSession::Stop()
{
    if (m_state.status != MediaStatus::Stopped)
        m_host.Stop();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Next()
{
    if (m_state.canGoNext)
        m_host.GoToNext();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Previous()
{
    if (m_state.canGoPrevious)
        m_host.GoToPrevious();
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::Seek(std::int64_t offsetUs)
{
    if (!m_state.canSeek || !m_state.track)
        return MediaAnswer::Done;
    // An offset may be any number, but none beyond this makes a difference.
    const std::int64_t lengthMs = m_state.track->lengthMs;
    const std::int64_t offsetMs = std::clamp(offsetUs / kUsPerMs, -lengthMs - 1, lengthMs + 1);
    const std::int64_t targetMs = m_host.PositionMs() + offsetMs;
    if (targetMs > lengthMs)
        return Next();
    m_host.SetPosition(std::max<std::int64_t>(targetMs, 0));
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::SetPosition(int trackNumber, std::int64_t positionUs)
{
    const bool isMeant = m_state.canSeek && m_state.track && trackNumber == m_trackNumber;
    if (isMeant && positionUs >= 0 && positionUs <= m_state.track->lengthMs * kUsPerMs)
        m_host.SetPosition(positionUs / kUsPerMs);
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::SetRate(double rate)
{
    if (!std::isfinite(rate))
        return MediaAnswer::InvalidValue;
    if (rate == 0)
        return Pause();
    m_host.SetRate(std::clamp(rate, m_rates.minimum, m_rates.maximum));
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::SetVolume(double volume)
{
    if (!std::isfinite(volume))
        return MediaAnswer::InvalidValue;
    m_host.SetVolume(std::clamp(volume, 0.0, 1.0));
    return MediaAnswer::Done;
}

MediaAnswer MediaSession::OpenUri(const QString& uri)
{
    if (uri.size() > kLongestUri)
        return MediaAnswer::NotSupported;
    const QByteArray ownHost = QSysInfo::machineHostName().toUtf8();
    const std::optional<QByteArray> name = FileNameOfUri(uri.toUtf8(), ownHost);
    const bool isTaken = name && m_host.OpenFile(TextFromNative(*name));
    return isTaken ? MediaAnswer::Done : MediaAnswer::NotSupported;
}

} // namespace lantern
