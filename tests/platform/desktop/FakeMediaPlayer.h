// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaSession.h"

#include <string>
#include <utility>
#include <vector>

namespace lantern {

// A player that does as it is told, and whose time stands still until a test moves it. Each wish is
// logged.
class FakeMediaPlayer : public MediaSessionHost {
public:
    static MediaTrack Song(const char* name, std::int64_t lengthMs = 100'000)
    {
        return {QString::fromUtf8(name), QByteArray("file:///songs/") + name, lengthMs};
    }

    MediaState Now = {.track = Song("song"), .canSeek = true};
    std::int64_t At = 0;
    QString Taken = QStringLiteral("/songs/other.cdg"); // the one file that it can open
    std::vector<std::string> Log;

    std::vector<std::string> TakeLog() { return std::exchange(Log, {}); }

    MediaState State() override { return Now; }
    std::int64_t PositionMs() override { return At; }
    void Raise() override { Log.emplace_back("Raise"); }
    void ShowStage(const QByteArray& activationToken) override
    {
        Log.push_back("ShowStage " + activationToken.toStdString());
    }
    void Quit() override { Log.emplace_back("Quit"); }
    void SetFullScreen(bool isOn) override
    {
        Log.emplace_back(isOn ? "FullScreen" : "Window");
        Now.isFullScreen = isOn;
    }
    void Play() override { Become("Play", MediaStatus::Playing); }
    void Pause() override { Become("Pause", MediaStatus::Paused); }
    void Stop() override
    {
        Become("Stop", MediaStatus::Stopped);
        At = 0;
    }
    void GoToNext() override { GoTo("Next", "next"); }
    void GoToPrevious() override { GoTo("Previous", "previous"); }
    void SetPosition(std::int64_t positionMs) override
    {
        Log.push_back("SetPosition " + std::to_string(positionMs));
        At = positionMs;
    }
    void SetRate(double rate) override
    {
        Log.push_back("SetRate " + QString::number(rate).toStdString());
        Now.rate = rate;
    }
    void SetVolume(double volume) override
    {
        Log.push_back("SetVolume " + QString::number(volume).toStdString());
        Now.volume = volume;
    }
    bool OpenFile(const QString& path) override
    {
        Log.push_back("OpenFile " + path.toStdString());
        if (path != Taken)
            return false;
        GoTo("", "other");
        return true;
    }

private:
    void Become(const char* wish, MediaStatus status)
    {
        Log.emplace_back(wish);
        Now.status = status;
    }
    void GoTo(const char* wish, const char* song)
    {
        if (*wish != '\0')
            Log.emplace_back(wish);
        Now.track = Song(song);
        At = 0;
    }
};

} // namespace lantern
