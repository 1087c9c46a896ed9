// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Commands.h"
#include "DesktopBus.h"

#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include <functional>

namespace lantern {

class CommandHost;

// The player towards the desktop: what its panel shows, and what its media keys and other programs
// ask. It acts as the user's own hand would.
//
// Life cycle: construct, Join when the window is shown, Follow at each tick, Leave before the
// player goes. GoTo is for any time.
class DesktopSession : private MediaSessionHost {
public:
    // What it acts on outlives it.
    DesktopSession(const CommandTargets& targets, CommandHost& window,
                   std::function<void()> showStage);
    ~DesktopSession() override;

    void Join();
    void Follow();
    void Leave();

    // To the track that lies so many places behind the current one in its folder, or before it. It
    // plays if the current one does. Nothing happens if there is none.
    void GoTo(int places);

private:
    // MediaSessionHost
    MediaState State() override;
    std::int64_t PositionMs() override;
    void Raise() override;
    void ShowStage(const QByteArray& activationToken) override;
    void Quit() override;
    void SetFullScreen(bool isOn) override;
    void Play() override;
    void Pause() override;
    void Stop() override;
    void GoToNext() override;
    void GoToPrevious() override;
    void SetPosition(std::int64_t positionMs) override;
    void SetRate(double rate) override;
    void SetVolume(double volume) override;
    bool OpenFile(const QString& path) override;

    // Which sides of a track have another one.
    struct Neighbours {
        bool hasNext = false;
        bool hasPrevious = false;
    };
    void NoteTrack();
    void LookForNeighbours();
    void RunLater();
    void RunWish();

    // What takes long, or ends the player. It is done when the message that asks for it has been
    // answered; of several, the last.
    struct Wish {
        QString track; // to open; empty for none
        int places = 0;
        bool isToQuit = false;
    };

    CommandTargets m_to;
    CommandHost& m_window;
    const std::function<void()> m_showStage;
    QString m_notedMedia; // what the three below are of
    QString m_title;
    QByteArray m_url;
    Neighbours m_neighbours;
    Wish m_wish;
    QObject m_context; // calls that are put off go with it
    QFutureWatcher<Neighbours> m_lookout;
    DesktopBus m_bus;
};

} // namespace lantern
