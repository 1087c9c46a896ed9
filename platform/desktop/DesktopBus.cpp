// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopBus.h"

#include "BusConnection.h"
#include "MediaObject.h"
#include "ScreenWays.h"

#include <QCoreApplication>

#include <optional>

namespace lantern {

class DesktopBus::Parts {
public:
    Parts(MediaSessionHost& host, MediaRates rates, const MediaIdentity& identity)
        : m_session(host, rates), m_wish{identity.desktopEntry, identity.screenReason},
          m_object(m_session, identity)
    {
    }

    void Join(const QString& address)
    {
        m_connection.Connect(address, [this](const QDBusConnection& bus) {
            m_screen.emplace(ScreenWays(bus, m_wish));
            Follow();
            if (bus.isConnected())
                m_object.Join(bus, QCoreApplication::applicationPid());
        });
    }

    void Follow()
    {
        if (!m_screen)
            return;
        m_session.Follow(MediaSession::Moment::clock::now());
        m_screen->Follow(m_session.State().status == MediaStatus::Playing);
    }

private:
    MediaSession m_session;
    const ScreenWish m_wish;
    // What uses the connection goes before it.
    BusConnection m_connection;
    MediaObject m_object;
    std::optional<ScreenGuard> m_screen; // once it is known whether there is a bus
};

DesktopBus::DesktopBus(MediaSessionHost& host, MediaRates rates, const MediaIdentity& identity)
    : m_parts(std::make_unique<Parts>(host, rates, identity))
{
}

DesktopBus::~DesktopBus() = default;

void DesktopBus::Join(const QString& address)
{
    m_parts->Join(address);
}

void DesktopBus::Follow()
{
    if (m_parts)
        m_parts->Follow();
}

void DesktopBus::Leave()
{
    m_parts.reset();
}

} // namespace lantern
