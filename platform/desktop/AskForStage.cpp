// SPDX-License-Identifier: GPL-3.0-or-later
#include "AskForStage.h"

#include "MediaProperties.h"
#include "SilentBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>

#include <chrono>
#include <thread>

namespace lantern {
namespace {

using namespace std::chrono_literals;

constexpr auto kJoinsWithin = 3s;
constexpr auto kAgainIn = 100ms;
constexpr int kAnswersWithinMs = 3000;

bool IsNotThereYet(const QDBusMessage& answer)
{
    return answer.errorName() == QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown") ||
           answer.errorName() == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
}

} // namespace

bool AskForStage(const QString& busName, const QByteArray& activationToken)
{
    LeaveSilentBusOut();
    int argc = 0;
    const QCoreApplication toolkit(argc, nullptr); // the least that the bus is used with
    const QString name = QStringLiteral("lantern-ask");
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    if (!bus.isConnected())
        return false;
    QDBusMessage question = QDBusMessage::createMethodCall(
        kMediaRoot.toString() + u'.' + busName, kMediaPath.toString(), kMediaStage.toString(),
        QStringLiteral("Show"));
    question << QString::fromUtf8(activationToken);
    question.setAutoStartService(false);
    const auto end = std::chrono::steady_clock::now() + kJoinsWithin;
    QDBusMessage answer = bus.call(question, QDBus::Block, kAnswersWithinMs);
    while (IsNotThereYet(answer) && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kAgainIn);
        answer = bus.call(question, QDBus::Block, kAnswersWithinMs);
    }
    QDBusConnection::disconnectFromBus(name);
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace lantern
