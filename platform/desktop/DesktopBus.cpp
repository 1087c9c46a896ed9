// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopBus.h"

#include "BusConnection.h"
#include "MediaObject.h"

#include <QCoreApplication>

namespace lantern {

class DesktopBus::Parts {
public:
    Parts(MediaSessionHost& host, MediaRates rates, MediaIdentity identity)
        : m_session(host, rates), m_object(m_session, std::move(identity))
    {
    }

    void Join(const QString& address)
    {
        m_connection.Connect(address, [this](const QDBusConnection& bus) {
            m_session.Follow(MediaSession::Moment::clock::now());
            m_object.Join(bus, QCoreApplication::applicationPid());
            m_isJoined = true;
        });
    }

    void Follow()
    {
        if (m_isJoined)
            m_session.Follow(MediaSession::Moment::clock::now());
    }

private:
    MediaSession m_session;
    bool m_isJoined = false;
    // The object goes before the connection that it is on.
    BusConnection m_connection;
    MediaObject m_object;
};

DesktopBus::DesktopBus(MediaSessionHost& host, MediaRates rates, MediaIdentity identity)
    : m_parts(std::make_unique<Parts>(host, rates, std::move(identity)))
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
