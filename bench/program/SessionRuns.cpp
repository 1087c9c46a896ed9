// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionRuns.h"

#include "MockService.h"
#include "PlayerRuns.h"
#include "SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>
#include <stdexcept>

namespace lantern::bench {
namespace {

using namespace lantern::test;

constexpr int kQuestions = 300;
constexpr auto kBetweenQuestions = 10ms;

// The longest of many answers.
double LongestAnswer(const QDBusConnection& bus, const QDBusMessage& question)
{
    double longest = 0.0;
    for (int i = 0; i < kQuestions; ++i) {
        std::this_thread::sleep_for(kBetweenQuestions);
        const Moment asked = Clock::now();
        if (bus.call(question).type() != QDBusMessage::ReplyMessage)
            throw std::runtime_error("the player does not answer on the bus");
        longest = std::max(longest, Milliseconds(Clock::now() - asked));
    }
    return longest;
}

double PlayerAnswer(Stage& stage, const QDBusConnection& bus)
{
    QDBusMessage position = QDBusMessage::createMethodCall(
        QStringLiteral("org.mpris.MediaPlayer2.lyric_lantern"),
        QStringLiteral("/org/mpris/MediaPlayer2"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    position << QStringLiteral("org.mpris.MediaPlayer2.Player") << QStringLiteral("Position");
    const std::unique_ptr<Player> player = StartPlayer(stage);
    if (!Eventually([&] { return bus.call(position).type() == QDBusMessage::ReplyMessage; }, 10s,
                    50ms))
        throw std::runtime_error("the player is not on the bus");
    return LongestAnswer(bus, position);
}

double BusAnswer(const QDBusConnection& bus)
{
    return LongestAnswer(bus, QDBusMessage::createMethodCall(
                                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
}

} // namespace

std::vector<Measurement> MeasureSession(const Effort& effort)
{
    const SessionBus session;
    const MockService saver(session, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                            "org.freedesktop.ScreenSaver");
    saver.Add("Inhibit", "ss", "u", "ret = 7");
    saver.Add("UnInhibit", "u", "", "");
    Stage stage;
    PaintTheEmptyScreen(stage);
    const auto with = [&](const auto& measure) {
        return [&, measure] {
            stage.desktop = session.Environment();
            return measure();
        };
    };
    const auto without = [&](const auto& measure) {
        return [&, measure] {
            stage.desktop = {};
            return measure();
        };
    };
    Effort starts = effort;
    starts.rounds = effort.rounds * 4 - 1; // a tenth more has to be told from a busy moment
    const auto start = [&] { return PlayerStartToPicture(stage); };
    const auto playing = [&] { return PlayerPercent(stage, {}, effort); };
    const QDBusConnection bus = QDBusConnection::connectToBus(
        QString::fromStdString(session.Address()), QStringLiteral("bench"));
    return {Compare("start to the first painted frame, with a session's bus", "ms", "without one",
                    starts, with(start), without(start)),
            Compare("processor, playing at size 2, with a session's bus", "% of a core",
                    "without one", effort, with(playing), without(playing)),
            Compare("longest answer on the bus while playing", "ms", "that of the bus itself",
                    effort, with([&] { return PlayerAnswer(stage, bus); }),
                    [&] { return BusAnswer(bus); })};
}

} // namespace lantern::bench
