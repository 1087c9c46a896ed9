// SPDX-License-Identifier: GPL-3.0-or-later
#include "BusConnection.h"

#include <QMetaObject>

namespace lantern {
namespace {

QString NewName()
{
    static int count = 0;
    return QStringLiteral("lantern-%1").arg(++count);
}

} // namespace

BusConnection::BusConnection() : m_name(NewName())
{
}

BusConnection::~BusConnection()
{
    if (m_maker.joinable())
        m_maker.join();
    QDBusConnection::disconnectFromBus(m_name);
}

void BusConnection::Connect(const QString& address,
                            std::function<void(const QDBusConnection&)> connected)
{
    m_maker = std::thread([this, address, connected = std::move(connected)] {
        const QDBusConnection bus =
            address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name)
                              : QDBusConnection::connectToBus(address, m_name);
        QMetaObject::invokeMethod(
            &m_receiver, [bus, connected] { connected(bus); }, Qt::QueuedConnection);
    });
}

} // namespace lantern
