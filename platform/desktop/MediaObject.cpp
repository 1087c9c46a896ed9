// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaObject.h"

#include "MediaProperties.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>

namespace lantern {
namespace {

const QString kIntrospectable = QStringLiteral("org.freedesktop.DBus.Introspectable");
const QString kPeer = QStringLiteral("org.freedesktop.DBus.Peer");
const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr uint kDoNotQueue = 4; // of RequestName
constexpr uint kIsOwner = 1;    // of its answer

QString ErrorName(const char* name)
{
    return QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(name);
}

QDBusMessage Refused(const QDBusMessage& message, const char* name, const QString& text)
{
    return message.createErrorReply(ErrorName(name), text);
}

QDBusMessage ReplyWith(const QDBusMessage& message, MediaAnswer answer)
{
    switch (answer) {
    case MediaAnswer::Done:
        break;
    case MediaAnswer::NotSupported:
        return Refused(message, "NotSupported", QStringLiteral("The player can't do that"));
    case MediaAnswer::InvalidValue:
        return Refused(message, "InvalidArgs", QStringLiteral("The value can't be used"));
    }
    return message.createReply();
}

QDBusMessage WrongType(const QDBusMessage& message, QStringView wanted)
{
    return Refused(message, "InvalidArgs", QStringLiteral("The type has to be \"%1\"").arg(wanted));
}

bool IsInterface(const QString& name)
{
    return name == kMediaRoot || name == kMediaPlayer || name == kMediaStage;
}

QDBusMessage RequestName(const QString& name)
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    request << name << kDoNotQueue;
    return request;
}

// Only those who have changed.
QVariantMap Differences(const QVariantMap& before, const QVariantMap& now)
{
    QVariantMap changed;
    for (auto property = now.begin(); property != now.end(); ++property) {
        if (before.value(property.key()) != property.value())
            changed.insert(property.key(), property.value());
    }
    return changed;
}

} // namespace

MediaObject::MediaObject(MediaSession& session, MediaIdentity identity)
    : m_session(session), m_identity(std::move(identity)), m_bus(QString())
{
    m_session.Changed = [this] { TellChanges(); };
    m_session.Seeked = [this](std::int64_t positionMs) { TellSeeked(positionMs); };
}

MediaObject::~MediaObject()
{
    Leave();
}

void MediaObject::Join(const QDBusConnection& bus, qint64 processId)
{
    m_bus = bus;
    m_isJoined = m_bus.registerVirtualObject(kMediaPath.toString(), this);
    if (!m_isJoined)
        return;
    m_toldRoot = Properties(kMediaRoot, true);
    m_toldPlayer = Properties(kMediaPlayer, true);
    const QString name = kMediaRoot.toString() + u'.' + m_identity.busName;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(RequestName(name)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [=, this] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (m_isJoined && (reply.isError() || reply.value() != kIsOwner))
            m_bus.send(RequestName(name + QStringLiteral(".instance%1").arg(processId)));
    });
}

void MediaObject::Leave()
{
    if (!m_isJoined)
        return;
    m_isJoined = false;
    m_bus.unregisterObject(kMediaPath.toString());
    m_bus = QDBusConnection(QString());
}

QString MediaObject::introspect(const QString&) const
{
    QString xml;
    for (const QStringView interface : {kMediaRoot, kMediaPlayer, kMediaStage}) {
        xml += QStringLiteral("<interface name=\"%1\">\n").arg(interface);
        for (const MediaMethod& method : MediaMethods()) {
            if (method.interface != interface)
                continue;
            xml += QStringLiteral("<method name=\"%1\">\n").arg(method.name);
            qsizetype i = 0; // each of the types is one letter
            for (const QString& name : method.arguments.toString().split(u' ', Qt::SkipEmptyParts))
                xml += QStringLiteral("<arg direction=\"in\" name=\"%1\" type=\"%2\"/>\n")
                           .arg(name, method.type[i++]);
            xml += QStringLiteral("</method>\n");
        }
        for (const MediaProperty& property : MediaProperties()) {
            if (property.interface != interface)
                continue;
            xml += QStringLiteral("<property name=\"%1\" type=\"%2\" access=\"%3\">\n"
                                  "<annotation name=\"org.freedesktop.DBus.Property."
                                  "EmitsChangedSignal\" value=\"%4\"/>\n</property>\n")
                       .arg(property.name, property.type, property.set ? u"readwrite" : u"read",
                            property.isTold ? u"true" : u"false");
        }
        if (interface == kMediaPlayer)
            xml += QStringLiteral("<signal name=\"Seeked\">\n"
                                  "<arg name=\"Position\" type=\"x\"/>\n</signal>\n");
        xml += QStringLiteral("</interface>\n");
    }
    return xml;
}

bool MediaObject::handleMessage(const QDBusMessage& message, const QDBusConnection& bus)
{
    const QString interface = message.interface();
    if (!m_isJoined || interface == kIntrospectable || interface == kPeer)
        return false; // the toolkit knows what to answer
    m_session.Follow(MediaSession::Moment::clock::now());
    const QDBusMessage answer =
        interface == kPropertiesInterface ? AnswerToProperties(message) : AnswerTo(message);
    // Whoever has the answer finds the signals of what it changed before it.
    m_session.Follow(MediaSession::Moment::clock::now());
    if (message.isReplyRequired())
        bus.send(answer);
    return true;
}

QDBusMessage MediaObject::AnswerTo(const QDBusMessage& message)
{
    const QString interface = message.interface();
    // A message may leave the interface out.
    if (!interface.isEmpty() && !IsInterface(interface))
        return Refused(message, "UnknownInterface", QStringLiteral("There is no such interface"));
    const std::span<const MediaMethod> methods = MediaMethods();
    const auto method = std::ranges::find_if(methods, [&](const MediaMethod& one) {
        return one.name == message.member() && (interface.isEmpty() || one.interface == interface);
    });
    if (method == methods.end())
        return Refused(message, "UnknownMethod", QStringLiteral("There is no such method"));
    if (method->type != message.signature())
        return WrongType(message, method->type);
    return ReplyWith(message, method->run(m_session, m_identity, message.arguments()));
}

QDBusMessage MediaObject::AnswerToProperties(const QDBusMessage& message)
{
    const QString member = message.member();
    const QStringView type = member == QStringLiteral("Get")      ? QStringView(u"ss")
                             : member == QStringLiteral("GetAll") ? QStringView(u"s")
                             : member == QStringLiteral("Set")    ? QStringView(u"ssv")
                                                                  : QStringView();
    if (type.isEmpty())
        return Refused(message, "UnknownMethod", QStringLiteral("There is no such method"));
    if (type != message.signature())
        return WrongType(message, type);
    const QString interface = message.arguments().at(0).toString();
    if (!IsInterface(interface))
        return Refused(message, "UnknownInterface", QStringLiteral("There is no such interface"));
    if (member == QStringLiteral("GetAll"))
        return message.createReply(QVariant(Properties(interface, false)));
    const std::span<const MediaProperty> properties = MediaProperties();
    const QString name = message.arguments().at(1).toString();
    const auto property = std::ranges::find_if(properties, [&](const MediaProperty& one) {
        return one.interface == interface && one.name == name;
    });
    if (property == properties.end())
        return Refused(message, "UnknownProperty", QStringLiteral("There is no such property"));
    if (member == QStringLiteral("Get"))
        return message.createReply(
            QVariant::fromValue(QDBusVariant(property->get(m_session, m_identity))));
    if (!property->set)
        return Refused(message, "PropertyReadOnly", QStringLiteral("It can only be read"));
    const QVariant value = message.arguments().at(2).value<QDBusVariant>().variant();
    const QMetaType::Type wanted = property->type == u"b" ? QMetaType::Bool : QMetaType::Double;
    if (value.typeId() != wanted)
        return WrongType(message, property->type);
    return ReplyWith(message, property->set(m_session, value));
}

QVariantMap MediaObject::Properties(QStringView interface, bool onlyTold) const
{
    QVariantMap values;
    for (const MediaProperty& property : MediaProperties()) {
        if (property.interface == interface && (property.isTold || !onlyTold))
            values.insert(property.name.toString(), property.get(m_session, m_identity));
    }
    return values;
}

void MediaObject::TellChanges()
{
    if (!m_isJoined)
        return;
    TellChanges(kMediaRoot, m_toldRoot);
    TellChanges(kMediaPlayer, m_toldPlayer);
}

void MediaObject::TellChanges(QStringView interface, QVariantMap& told)
{
    const QVariantMap now = Properties(interface, true);
    const QVariantMap changed = Differences(told, now);
    told = now;
    if (changed.isEmpty())
        return;
    QDBusMessage signal = QDBusMessage::createSignal(kMediaPath.toString(), kPropertiesInterface,
                                                     QStringLiteral("PropertiesChanged"));
    signal << interface.toString() << changed << QStringList();
    m_bus.send(signal);
}

void MediaObject::TellSeeked(std::int64_t positionMs)
{
    if (!m_isJoined)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(kMediaPath.toString(), kMediaPlayer.toString(),
                                                     QStringLiteral("Seeked"));
    signal << qlonglong{positionMs} * kUsPerMs;
    m_bus.send(signal);
}

} // namespace lantern
