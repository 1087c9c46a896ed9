// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaSession.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace lantern {

// Who a player is, among all programs of the desktop.
struct MediaIdentity {
    QString busName; // behind "org.mpris.MediaPlayer2."; letters, digits and lines below
    QString title;
    QString desktopEntry; // the name of its file, without the ending
    QStringList mimeTypes;
    QString screenReason; // why the screen stays on while it plays
};

// What a player shares with the desktop around it, most of it over the bus of the user's session:
// that is where its media session is to be found. While it plays, the screen stays on.
//
// Life cycle: construct, Join once its window is shown, Follow every few milliseconds, Leave. There
// may be no bus, or one that doesn't answer: then nobody finds the session, and nobody waits.
// Everything is called on the user-interface thread.
class DesktopBus {
public:
    // The host is borrowed and outlives this.
    DesktopBus(MediaSessionHost& host, MediaRates rates, const MediaIdentity& identity);
    ~DesktopBus();

    // Returns at once, and joins in the background. With an address, it is another bus than that of
    // the session.
    void Join(const QString& address = {});
    // Tells the desktop what is new of the player.
    void Follow();
    // Nothing comes any more.
    void Leave();

private:
    class Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace lantern
