// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenWays.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <QVariantMap>

#include <filesystem>
#include <limits>
#include <system_error>

namespace lantern {
namespace {

// After so long the next way is tried. The answer may still come.
constexpr int kPatienceMs = 3000;
// A service that starts has its name before all that it serves. And where one ends whenever it has
// granted the wish, it isn't started more often than that.
constexpr int kSettledMs = 1000;

// The message that asks, and the one that gives back what the answer to it holds. No message: the
// answer was none.
struct Request {
    QDBusMessage ask;
    QDBusMessage (*giveBack)(const QVariant& answer) = nullptr;
};

bool IsMessage(const QDBusMessage& message)
{
    return message.type() != QDBusMessage::InvalidMessage;
}

class BusScreenWay : public ScreenWay {
public:
    BusScreenWay(const QDBusConnection& bus, const Request& request)
        : m_bus(bus), m_request(request),
          m_lookout(request.ask.service(), bus, QDBusServiceWatcher::WatchForOwnerChange)
    {
        QObject::connect(&m_lookout, &QDBusServiceWatcher::serviceOwnerChanged, &m_context,
                         [this](const QString&, const QString& before, const QString& now) {
                             HearOfOwner(before, now);
                         });
        m_settled.setInterval(kSettledMs);
        m_settled.setSingleShot(true);
        QObject::connect(&m_settled, &QTimer::timeout, &m_context, [this] {
            if (Changed)
                Changed();
        });
    }
    ~BusScreenWay() override { GiveBack(); }

    void Keep(std::function<void(bool isKept)> answered) override
    {
        m_settled.stop();
        const auto asked = std::make_shared<Asked>(Asked{std::move(answered), {}});
        m_asked = asked;
        // An answer that nobody waits for any more would leave the screen on for ever.
        const QDBusPendingCall call =
            m_bus.asyncCall(m_request.ask, std::numeric_limits<int>::max());
        auto* watcher = new QDBusPendingCallWatcher(call, &m_context);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [=, this] {
            watcher->deleteLater();
            Hear(asked, watcher->reply());
        });
        QTimer::singleShot(kPatienceMs, &m_context, [=, this] {
            if (m_asked == asked && !IsMessage(asked->giveBack))
                Refuse();
        });
    }

    void GiveBack() override
    {
        if (m_asked && IsMessage(m_asked->giveBack))
            m_bus.send(m_asked->giveBack);
        m_asked.reset();
    }

private:
    struct Asked {
        std::function<void(bool isKept)> answered;
        QDBusMessage giveBack; // once it is granted
    };

    void Hear(const std::shared_ptr<Asked>& asked, const QDBusMessage& reply)
    {
        const QDBusMessage giveBack = reply.type() == QDBusMessage::ReplyMessage
                                          ? m_request.giveBack(reply.arguments().value(0))
                                          : QDBusMessage();
        if (m_asked != asked) { // nobody wants it any more
            if (IsMessage(giveBack))
                m_bus.send(giveBack);
            return;
        }
        if (!IsMessage(giveBack)) {
            Refuse();
            return;
        }
        asked->giveBack = giveBack;
        asked->answered(true);
    }

    // No owner is an empty name.
    void HearOfOwner(const QString& before, const QString& now)
    {
        if (m_asked && before.isEmpty())
            return; // the bus has started it to be asked
        const bool isGranted = m_asked && IsMessage(m_asked->giveBack);
        if (isGranted || !now.isEmpty())
            m_settled.start();
        if (isGranted)
            Refuse(); // whoever comes next knows nothing of it
    }

    void Refuse()
    {
        const std::shared_ptr<Asked> asked = std::exchange(m_asked, nullptr);
        asked->answered(false);
    }

    QDBusConnection m_bus;
    const Request m_request;
    std::shared_ptr<Asked> m_asked;
    QDBusServiceWatcher m_lookout;
    QTimer m_settled;
    QObject m_context; // answers and timers go with it
};

Request PortalRequest(const ScreenWish& wish)
{
    constexpr uint kNoSuspend = 4;
    constexpr uint kNoIdle = 8;
    Request request = {
        .ask = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"),
                                              QStringLiteral("/org/freedesktop/portal/desktop"),
                                              QStringLiteral("org.freedesktop.portal.Inhibit"),
                                              QStringLiteral("Inhibit")),
        .giveBack = [](const QVariant& answer) {
            const QString handle = answer.value<QDBusObjectPath>().path();
            if (handle.isEmpty())
                return QDBusMessage();
            return QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.portal.Desktop"), handle,
                QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close"));
        }};
    request.ask << QString() << (kNoSuspend | kNoIdle)
                << QVariantMap{{QStringLiteral("reason"), wish.reason}};
    return request;
}

QDBusMessage SessionMessage(const char* method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QStringLiteral("/org/freedesktop/ScreenSaver"),
                                          QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QLatin1String(method));
}

Request SessionRequest(const ScreenWish& wish)
{
    Request request = {.ask = SessionMessage("Inhibit"), .giveBack = [](const QVariant& answer) {
                           if (answer.typeId() != QMetaType::UInt)
                               return QDBusMessage();
                           return SessionMessage("UnInhibit") << answer;
                       }};
    request.ask << wish.program << wish.reason;
    return request;
}

bool IsInSandbox()
{
    std::error_code error;
    return std::filesystem::exists("/.flatpak-info", error) || !qEnvironmentVariableIsEmpty("SNAP");
}

} // namespace

std::unique_ptr<ScreenWay> PortalScreenWay(const QDBusConnection& bus, const ScreenWish& wish)
{
    return std::make_unique<BusScreenWay>(bus, PortalRequest(wish));
}

std::unique_ptr<ScreenWay> SessionScreenWay(const QDBusConnection& bus, const ScreenWish& wish)
{
    return std::make_unique<BusScreenWay>(bus, SessionRequest(wish));
}

std::vector<std::unique_ptr<ScreenWay>> ScreenWays(const QDBusConnection& bus,
                                                   const ScreenWish& wish)
{
    std::vector<std::unique_ptr<ScreenWay>> ways;
    if (bus.isConnected() && IsInSandbox())
        ways.push_back(PortalScreenWay(bus, wish));
    if (bus.isConnected())
        ways.push_back(SessionScreenWay(bus, wish));
    ways.push_back(DisplayScreenWay());
    return ways;
}

} // namespace lantern
