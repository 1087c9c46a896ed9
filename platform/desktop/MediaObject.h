// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DesktopBus.h"
#include "MediaSession.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <chrono>

namespace lantern {

// The session as an object on the bus. Whatever comes is answered: a wish that the rules allow, or
// any other message with an error that says what is wrong with it.
//
// It handles messages itself, rather than to have the toolkit find methods for them: so the types
// are taken exactly as they are written down, and nothing else of the object can be reached.
class MediaObject : public QDBusVirtualObject {
public:
    // The session is borrowed and outlives the object.
    MediaObject(MediaSession& session, MediaIdentity identity);

    ~MediaObject() override;

    // Puts it on the bus and asks for its name, without waiting for the answer. The number is added
    // to a name that somebody else has.
    void Join(const QDBusConnection& bus, qint64 processId);
    void Leave(); // nothing comes or goes any more

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

private:
    QDBusMessage AnswerTo(const QDBusMessage& message);
    QDBusMessage AnswerToProperties(const QDBusMessage& message);
    QVariantMap Properties(QStringView interface, bool onlyTold) const;
    void TellChanges(QStringView interface, QVariantMap& told);
    void TellChanges();
    void TellSeeked(std::int64_t positionMs);

    MediaSession& m_session;
    const MediaIdentity m_identity;
    QDBusConnection m_bus;
    bool m_isJoined = false;
    QVariantMap m_toldRoot; // what others know of the properties
    QVariantMap m_toldPlayer;
};

} // namespace lantern
