// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenGuard.h"
#include "BusClient.h"
#include "ScreenWays.h"

#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;
using Log = std::vector<std::string>;

// Answers at once if it knows what, and otherwise when the test says so.
class FakeWay : public ScreenWay {
public:
    FakeWay(std::string name, Log& log, std::optional<bool> answer)
        : m_name(std::move(name)), m_log(log), m_answer(answer)
    {
    }

    void Keep(std::function<void(bool isKept)> answered) override
    {
        m_log.push_back("keep " + m_name);
        Answer = std::move(answered);
        if (m_answer)
            Answer(*m_answer);
    }
    void GiveBack() override { m_log.push_back("give back " + m_name); }

    std::function<void(bool isKept)> Answer;

private:
    const std::string m_name;
    Log& m_log;
    const std::optional<bool> m_answer;
};

class ScreenGuards : public ::testing::Test {
protected:
    FakeWay& Add(const char* name, std::optional<bool> answer)
    {
        ways.push_back(std::make_unique<FakeWay>(name, log, answer));
        return static_cast<FakeWay&>(*ways.back());
    }
    Log TakeLog() { return std::exchange(log, {}); }

    Log log;
    std::vector<std::unique_ptr<ScreenWay>> ways;
};

TEST_F(ScreenGuards, TheScreenIsKeptOnceAndGivenBackOnce)
{
    Add("a", true);
    Add("b", true);
    ScreenGuard guard(std::move(ways));
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), IsEmpty());
    guard.Follow(true);
    guard.Follow(true);
    EXPECT_THAT(TakeLog(), ElementsAre("keep a"));
    guard.Follow(false);
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), ElementsAre("give back a"));
}

TEST_F(ScreenGuards, AWayThatLeadsNowhereIsFollowedByTheNext)
{
    Add("a", false);
    FakeWay& late = Add("b", {});
    Add("c", true);
    ScreenGuard guard(std::move(ways));
    guard.Follow(true);
    EXPECT_THAT(TakeLog(), ElementsAre("keep a", "keep b"));
    late.Answer(false);
    EXPECT_THAT(TakeLog(), ElementsAre("keep c"));
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), ElementsAre("give back c"));
    guard.Follow(true);
    EXPECT_THAT(TakeLog(), ElementsAre("keep a", "keep b")) << "a service may have come";
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), ElementsAre("give back b"));
}

TEST_F(ScreenGuards, WhereNoWayLeadsThereNothingIsGivenBack)
{
    Add("a", false);
    {
        ScreenGuard guard(std::move(ways));
        guard.Follow(true);
        guard.Follow(false);
        guard.Follow(true);
    }
    EXPECT_THAT(TakeLog(), ElementsAre("keep a", "keep a"));
    ScreenGuard none({});
    none.Follow(true);
    none.Follow(false);
}

TEST_F(ScreenGuards, ItsEndGivesBack)
{
    Add("a", true);
    {
        ScreenGuard guard(std::move(ways));
        guard.Follow(true);
    }
    EXPECT_THAT(TakeLog(), ElementsAre("keep a", "give back a"));
}

TEST_F(ScreenGuards, AWayThatMayLeadThereByNowIsTriedAgainWhileItIsWanted)
{
    FakeWay& first = Add("a", false);
    FakeWay& second = Add("b", true);
    FakeWay& third = Add("c", true);
    ScreenGuard guard(std::move(ways));
    first.Changed();
    EXPECT_THAT(TakeLog(), IsEmpty()) << "nobody wants it";
    guard.Follow(true);
    TakeLog();
    third.Changed();
    EXPECT_THAT(TakeLog(), IsEmpty()) << "an earlier way leads there";
    second.Changed();
    EXPECT_THAT(TakeLog(), ElementsAre("give back b", "keep a", "keep b"));
    first.Changed();
    EXPECT_THAT(TakeLog(), ElementsAre("give back b", "keep a", "keep b"));
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), ElementsAre("give back b"));
    second.Changed();
    EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(ScreenGuards, AWayThatIsLostIsFollowedByTheNextAtOnce)
{
    FakeWay& first = Add("a", true);
    Add("b", true);
    ScreenGuard guard(std::move(ways));
    guard.Follow(true);
    first.Answer(false);
    EXPECT_THAT(TakeLog(), ElementsAre("keep a", "keep b"));
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), ElementsAre("give back b"));
}

TEST_F(ScreenGuards, WhereNoWayLedThereTheFirstThatMayIsTried)
{
    FakeWay& only = Add("a", {});
    ScreenGuard guard(std::move(ways));
    guard.Follow(true);
    only.Answer(false);
    only.Changed();
    EXPECT_THAT(TakeLog(), ElementsAre("keep a", "keep a"));
    only.Answer(true);
    guard.Follow(false);
    EXPECT_THAT(TakeLog(), ElementsAre("give back a"));
}

// A service that answers as the test says.
class FakeService : public QDBusVirtualObject {
public:
    FakeService(BusClient& client, const char* name, const char* path) : m_client(client)
    {
        m_client.Connection().registerService(QLatin1String(name));
        m_client.Connection().registerVirtualObject(QLatin1String(path), this,
                                                    QDBusConnection::SubPath);
    }

    QVariant Answer;     // none: an error
    bool Answers = true; // at once
    QDBusMessage Unanswered;
    Log Heard;
    QVariantList Asked;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        const QVariant first = message.arguments().value(0);
        Heard.push_back(message.member().toStdString() +
                        (first.typeId() == QMetaType::UInt ? " " + std::to_string(first.toUInt())
                                                           : std::string()) +
                        (message.member() == QStringLiteral("Close")
                             ? " " + message.path().toStdString()
                             : std::string()));
        if (message.member() == QStringLiteral("Inhibit")) {
            Asked = message.arguments();
            Unanswered = message;
            if (Answers)
                Reply(bus);
        }
        return true;
    }
    void Reply(const QDBusConnection& bus)
    {
        bus.send(Answer.isValid() ? Unanswered.createReply(Answer)
                                  : Unanswered.createErrorReply(QDBusError::Failed, {}));
    }

private:
    BusClient& m_client;
};

class BusScreenWays : public ::testing::Test {
protected:
    // The answer to a wish; none if it doesn't come in a moment.
    std::optional<bool> Kept(ScreenWay& way)
    {
        const auto answer = std::make_shared<std::optional<bool>>();
        way.Keep([answer](bool isKept) { *answer = isKept; });
        BusClient::Soon([&] { return answer->has_value(); }, 500ms);
        return *answer;
    }
    bool Hears(const FakeService& service, const Log& log)
    {
        return BusClient::Soon([&] { return service.Heard == log; }, 5s);
    }

    const test::SessionBus bus;
    BusClient desktop{bus};
    BusClient program{bus};
    const ScreenWish wish = {QStringLiteral("org.example.player"), QStringLiteral("Singing")};
};

constexpr const char* kSession = "org.freedesktop.ScreenSaver";
constexpr const char* kSessionPath = "/org/freedesktop/ScreenSaver";

TEST_F(BusScreenWays, TheSessionsServiceIsAskedAndGetsItsCookieBack)
{
    FakeService service(desktop, kSession, kSessionPath);
    service.Answer = 7U;
    const auto way = SessionScreenWay(program.Connection(), wish);
    EXPECT_EQ(Kept(*way), true);
    EXPECT_EQ(service.Asked, (QVariantList{wish.program, wish.reason}));
    way->GiveBack();
    EXPECT_TRUE(Hears(service, {"Inhibit", "UnInhibit 7"}));
}

TEST_F(BusScreenWays, ThePortalIsAskedForNoIdleAndNoSuspendAndItsRequestIsClosed)
{
    FakeService service(desktop, "org.freedesktop.portal.Desktop",
                        "/org/freedesktop/portal/desktop");
    const QString handle = QStringLiteral("/org/freedesktop/portal/desktop/request/1_2/a");
    service.Answer = QVariant::fromValue(QDBusObjectPath(handle));
    const auto way = PortalScreenWay(program.Connection(), wish);
    EXPECT_EQ(Kept(*way), true);
    EXPECT_EQ(service.Asked.value(0), QString());
    EXPECT_EQ(service.Asked.value(1), 12U);
    way->GiveBack();
    EXPECT_TRUE(Hears(service, {"Inhibit", "Close " + handle.toStdString()}));
}

TEST_F(BusScreenWays, NoServiceAnErrorAndAnAnswerThatIsNoneAreRefusals)
{
    const auto way = SessionScreenWay(program.Connection(), wish);
    EXPECT_EQ(Kept(*way), false);
    FakeService service(desktop, kSession, kSessionPath);
    EXPECT_EQ(Kept(*way), false);
    for (const QVariant& answer : {QVariant(QStringLiteral("7")), QVariant(7), QVariant(true)}) {
        service.Answer = answer;
        EXPECT_EQ(Kept(*way), false);
    }
    way->GiveBack();
    EXPECT_EQ(service.Heard.size(), 4U);
}

TEST_F(BusScreenWays, WhatIsGrantedTooLateIsGivenBackAtOnce)
{
    FakeService service(desktop, kSession, kSessionPath);
    service.Answers = false;
    service.Answer = 9U;
    const auto way = SessionScreenWay(program.Connection(), wish);
    EXPECT_EQ(Kept(*way), std::nullopt);
    way->GiveBack();
    service.Reply(desktop.Connection());
    EXPECT_TRUE(Hears(service, {"Inhibit", "UnInhibit 9"}));
}

TEST_F(BusScreenWays, AServiceThatDoesNotAnswerIsNotWaitedForForEver)
{
    FakeService service(desktop, kSession, kSessionPath);
    service.Answers = false;
    service.Answer = 9U;
    const auto way = SessionScreenWay(program.Connection(), wish);
    std::optional<bool> answer;
    way->Keep([&](bool isKept) { answer = isKept; });
    EXPECT_TRUE(BusClient::Soon([&] { return answer.has_value(); }, 10s));
    EXPECT_EQ(answer, false);
    service.Reply(desktop.Connection());
    EXPECT_TRUE(Hears(service, {"Inhibit", "UnInhibit 9"}));
}

// Counts how often it is worth to ask anew.
class BusScreenWaysThatChange : public BusScreenWays {
protected:
    BusScreenWaysThatChange()
    {
        way->Changed = [this] { ++changes; };
    }
    bool Changes(int count)
    {
        return BusClient::Soon([&] { return changes == count; }, 5s) &&
               !BusClient::Soon([&] { return changes != count; }, 1500ms);
    }

    const std::unique_ptr<ScreenWay> way = SessionScreenWay(program.Connection(), wish);
    int changes = 0;
};

TEST_F(BusScreenWaysThatChange, AServiceThatCameIsWorthToBeAsked)
{
    EXPECT_EQ(Kept(*way), false);
    const FakeService service(desktop, kSession, kSessionPath);
    EXPECT_TRUE(Changes(1));
    desktop.Connection().unregisterService(QLatin1String(kSession));
    EXPECT_TRUE(Changes(1)) << "nothing is lost with it";
}

TEST_F(BusScreenWaysThatChange, WithTheServiceWhatItGrantedIsGone)
{
    {
        FakeService service(desktop, kSession, kSessionPath);
        service.Answer = 7U;
        Log answers;
        way->Keep([&](bool isKept) { answers.push_back(isKept ? "kept" : "lost"); });
        EXPECT_TRUE(BusClient::Soon([&] { return answers == Log{"kept"}; }, 5s));
        desktop.Connection().unregisterService(QLatin1String(kSession));
        EXPECT_TRUE(BusClient::Soon([&] { return answers == Log{"kept", "lost"}; }, 5s));
        EXPECT_EQ(changes, 0) << "a moment later";
        EXPECT_TRUE(Changes(1));
        desktop.Connection().unregisterObject(QLatin1String(kSessionPath));
    }
    FakeService other(desktop, kSession, kSessionPath);
    other.Answer = 7U;
    EXPECT_TRUE(Changes(2));
    way->GiveBack();
    EXPECT_EQ(Kept(*way), true);
    EXPECT_THAT(other.Heard, ElementsAre("Inhibit")) << "the other one granted nothing before";
}

TEST_F(BusScreenWaysThatChange, AServiceThatIsBackAtOnceIsAskedOnce)
{
    FakeService service(desktop, kSession, kSessionPath);
    service.Answer = 7U;
    EXPECT_EQ(Kept(*way), true);
    for (int i = 0; i < 5; ++i) {
        desktop.Connection().unregisterService(QLatin1String(kSession));
        desktop.Connection().registerService(QLatin1String(kSession));
    }
    EXPECT_TRUE(Changes(1));
}

TEST_F(BusScreenWaysThatChange, AServiceThatDiesOfTheWishIsNotAskedAgain)
{
    {
        BusClient dying(bus);
        FakeService service(dying, kSession, kSessionPath);
        service.Answers = false;
        std::optional<bool> answer;
        way->Keep([&](bool isKept) { answer = isKept; });
        EXPECT_TRUE(BusClient::Soon([&] { return service.Heard.size() == 1; }, 5s));
        dying.Disconnect();
        EXPECT_TRUE(BusClient::Soon([&] { return answer.has_value(); }, 2s));
        EXPECT_EQ(answer, false);
    }
    EXPECT_TRUE(Changes(0));
}

TEST(DisplayScreenWays, RefuseWhereThereIsNoX11)
{
    std::optional<bool> answer;
    const auto way = DisplayScreenWay();
    way->Keep([&](bool isKept) { answer = isKept; });
    EXPECT_EQ(answer, false);
    way->GiveBack();
}

} // namespace
} // namespace lantern
