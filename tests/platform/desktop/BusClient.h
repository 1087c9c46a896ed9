// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <string>

namespace lantern {

// Another program on a bus, in the same process as what it talks to: events go on while it waits.
class BusClient {
public:
    explicit BusClient(const test::SessionBus& bus)
        : m_name(QStringLiteral("client-%1").arg(++s_count)),
          m_connection(QDBusConnection::connectToBus(QString::fromStdString(bus.Address()), m_name))
    {
    }
    ~BusClient() { Disconnect(); }

    void Disconnect()
    {
        QDBusConnection::disconnectFromBus(m_name);
        m_connection = QDBusConnection(QString());
    }

    QDBusConnection& Connection() { return m_connection; }

    template <typename Predicate>
    static bool Soon(Predicate&& predicate, test::Clock::duration atMost = std::chrono::seconds(20))
    {
        return test::Eventually(
            [&] {
                QCoreApplication::processEvents();
                return predicate();
            },
            atMost, std::chrono::milliseconds(1));
    }

    QDBusMessage Ask(const QDBusMessage& message)
    {
        const QDBusPendingCall call = m_connection.asyncCall(message);
        if (!Soon([&] { return call.isFinished(); }))
            return QDBusMessage::createError(QStringLiteral("no.answer"), {});
        return call.reply();
    }

    QDBusMessage Call(const QString& service, const QString& path, const QString& interface,
                      const QString& member, const QVariantList& arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, member);
        message.setArguments(arguments);
        return Ask(message);
    }

    bool HasOwner(const QString& service)
    {
        const QDBusMessage answer =
            Call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"), {service});
        return answer.arguments().value(0).toBool();
    }

private:
    static inline int s_count = 0;
    const QString m_name;
    QDBusConnection m_connection;
};

} // namespace lantern
