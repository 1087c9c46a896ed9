// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

// A player as the desktop sees it: what it shows of it in a panel or on a lock screen, and what its
// keys and other programs may ask. The rules are those of MPRIS, version 2.2; the bus that it all
// goes over is told in DesktopBus.h.
namespace lantern {

// The bus counts microseconds.
inline constexpr std::int64_t kUsPerMs = 1000;

enum class MediaStatus { Playing, Paused, Stopped };

struct MediaTrack {
    QString title;
    QByteArray url; // with all that needs it escaped; empty for none
    std::int64_t lengthMs = 0;

    bool operator==(const MediaTrack&) const = default;
};

// Rate and volume are 1 where nothing is changed.
struct MediaState {
    MediaStatus status = MediaStatus::Stopped;
    std::optional<MediaTrack> track; // that is loaded, or would be by the wish to play
    double rate = 1;
    double volume = 1;
    bool isFullScreen = false;
    bool canSeek = false;
    bool canGoNext = false;
    bool canGoPrevious = false;

    bool operator==(const MediaState&) const = default;
};

// The slowest and the fastest.
struct MediaRates {
    double minimum = 1;
    double maximum = 1;
};

// The player, as the session acts on it. All calls come on the user-interface thread, from its
// event loop. A wish is sensible when it comes (a position within the track, a rate within the
// limits), and may be left undone all the same.
class MediaSessionHost {
public:
    virtual ~MediaSessionHost() = default;

    virtual MediaState State() = 0;
    virtual std::int64_t PositionMs() = 0;

    virtual void Raise() = 0;
    // The window with what singers and their hosts choose. A token lets it come to the front where
    // the desktop wants one; it may be empty.
    virtual void ShowStage(const QByteArray& activationToken) = 0;
    virtual void Quit() = 0; // not at once, but when the event loop runs again
    virtual void SetFullScreen(bool isOn) = 0;
    virtual void Play() = 0;  // only while it doesn't
    virtual void Pause() = 0; // only while it plays
    virtual void Stop() = 0;
    virtual void GoToNext() = 0;
    virtual void GoToPrevious() = 0;
    virtual void SetPosition(std::int64_t positionMs) = 0;
    virtual void SetRate(double rate) = 0;
    virtual void SetVolume(double volume) = 0;
    // The path is lossless text, see PathText.h. False if it is no file that the player takes.
    virtual bool OpenFile(const QString& path) = 0;
};

enum class MediaAnswer { Done, NotSupported, InvalidValue };

// The rules between a desktop and a player. A wish that can't be fulfilled does nothing; where the
// text asks for an error, the answer says which.
//
// Life cycle: construct, set the two functions, then any call at any time. Everything runs on the
// user-interface thread.
class MediaSession {
public:
    using Moment = std::chrono::steady_clock::time_point;

    // The host is borrowed and outlives the session.
    MediaSession(MediaSessionHost& host, MediaRates rates);

    // Called from Follow: when the state or the track's number differs from before, and when the
    // position has jumped, which is to where it is now.
    std::function<void()> Changed;
    std::function<void(std::int64_t positionMs)> Seeked;

    // Looks at the player, and tells what is new. As often as one likes, and before and after each
    // wish.
    void Follow(Moment now);

    const MediaState& State() const { return m_state; } // when last looked at
    int TrackNumber() const { return m_trackNumber; }   // another one for each track
    MediaRates Rates() const { return m_rates; }
    std::int64_t PositionMs() { return m_host.PositionMs(); }

    MediaAnswer Raise();
    MediaAnswer ShowStage(const QByteArray& activationToken);
    MediaAnswer Quit();
    MediaAnswer SetFullScreen(bool isOn);
    MediaAnswer Play();
    MediaAnswer Pause();
    MediaAnswer PlayPause();
    MediaAnswer Stop();
    MediaAnswer Next();
    MediaAnswer Previous();
    // Beyond the end it is a wish for the next track, before the start for the start.
    MediaAnswer Seek(std::int64_t offsetUs);
    // Only of the track with that number, and only within it.
    MediaAnswer SetPosition(int trackNumber, std::int64_t positionUs);
    MediaAnswer SetRate(double rate);
    MediaAnswer SetVolume(double volume);
    MediaAnswer OpenUri(const QString& uri);

private:
    void FollowPosition(const MediaState& before, bool isOtherTrack, Moment now);
    std::int64_t ExpectedMs(const MediaState& before, Moment now) const;

    MediaSessionHost& m_host;
    const MediaRates m_rates;
    MediaState m_state;
    int m_trackNumber = 0;
    // Where the position was when others were last told of it, by a signal or by a change of state.
    std::int64_t m_toldMs = 0;
    Moment m_toldAt;
    Moment m_startedAt;
};

} // namespace lantern
