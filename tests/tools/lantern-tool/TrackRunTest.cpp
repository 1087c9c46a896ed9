// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackRun.h"
#include "OutputName.h"
#include "ProgressBar.h"

#include <QStringList>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <new>
#include <set>
#include <thread>

namespace lantern::tool {
namespace {

using namespace std::chrono_literals;
using ::testing::internal::CaptureStderr;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStderr;
using ::testing::internal::GetCapturedStdout;

// The tracks 0, 1, ... as words that name no folder.
QStringList Numbers(int count)
{
    QStringList words;
    for (int i = 0; i < count; ++i)
        words += QString::number(i);
    return words;
}

// Does what the test says with each number.
class NumberCommand final : public TrackCommand {
public:
    explicit NumberCommand(std::function<TrackResult(int)> work) : m_work(std::move(work)) {}

    TrackResult DoTrack(const WantedTrack& track, const TellProgress&) override
    {
        return m_work(track.path.toInt());
    }
    QByteArray Begin(bool several) override { return several ? "(" : "["; }
    QByteArray End() override { return ")"; }

private:
    std::function<TrackResult(int)> m_work;
};

struct RunOutcome {
    int code = 0;
    std::string output;
    std::string error;
};

RunOutcome RunNumbers(int count, int jobs, std::function<TrackResult(int)> work)
{
    NumberCommand command(std::move(work));
    CaptureStdout();
    CaptureStderr();
    RunOutcome run;
    run.code =
        RunTracks(command, Numbers(count), {.quiet = true, .jobs = jobs, .several = count > 1});
    run.output = GetCapturedStdout();
    run.error = GetCapturedStderr();
    return run;
}

TrackResult Text(int number)
{
    TrackResult result;
    result.output = QByteArray::number(number) + ' ';
    return result;
}

TEST(TrackRun, PrintsInTheOrderOfTheTracksWhateverIsDoneFirst)
{
    const std::string expected = "(0 1 2 3 4 5 6 7 8 9 )";
    for (const int jobs : {1, 2, 3, 64}) {
        const RunOutcome run = RunNumbers(10, jobs, [](int number) {
            std::this_thread::sleep_for(std::chrono::milliseconds((10 - number) % 4));
            return Text(number);
        });
        EXPECT_EQ(run.output, expected) << jobs;
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.error, "");
    }
    EXPECT_EQ(RunNumbers(1, 4, Text).output, "[0 )");
}

// All that come at once are held until there are as many as there should be at a time.
TEST(TrackRun, DoesAsManyAtATimeAsItIsTold)
{
    for (const int jobs : {1, 3}) {
        std::mutex mutex;
        std::condition_variable more;
        int atOnce = 0;
        int most = 0;
        RunNumbers(6, jobs, [&](int number) {
            std::unique_lock lock(mutex);
            most = std::max(most, ++atOnce);
            more.notify_all();
            more.wait_for(lock, 10s, [&] { return most >= jobs; });
            --atOnce;
            return Text(number);
        });
        EXPECT_EQ(most, jobs);
    }
}

// What waits to be printed would fill the memory.
TEST(TrackRun, NoThreadGoesFarAheadOfWhatIsPrinted)
{
    std::atomic<int> furthest = 0;
    const RunOutcome run = RunNumbers(500, 2, [&](int number) {
        if (number == 0) {
            // Until the other one has come as far as it may, and a moment longer.
            for (int i = 0; i < 1000 && furthest < 31; ++i)
                std::this_thread::sleep_for(10ms);
            std::this_thread::sleep_for(50ms);
            EXPECT_EQ(furthest, 31);
        }
        furthest = std::max<int>(furthest, number);
        return Text(number);
    });
    EXPECT_EQ(furthest, 499);
    EXPECT_EQ(std::ranges::count(run.output, ' '), 500);
}

TEST(TrackRun, TheExitCodeIsTheHighestAndEachErrorALine)
{
    for (const int jobs : {1, 2}) {
        const RunOutcome run = RunNumbers(5, jobs, [](int number) {
            if (number == 3)
                throw std::bad_alloc();
            return number == 1 ? TrackResult::Failure(QStringLiteral("a\nb"), 7) : Text(number);
        });
        EXPECT_EQ(run.code, 7);
        EXPECT_EQ(run.output, "(0 2 4 )");
        EXPECT_EQ(run.error, "lantern-tool: a?b\nlantern-tool: Out of memory: 3\n");
    }
}

TEST(ProgressBarTest, ItTellsHowFarItIs)
{
    EXPECT_EQ(ProgressText(0, 1, 0s), "[..............................]   0%");
    EXPECT_EQ(ProgressText(0.5, 1, 2s), "[###############...............]  50%");
    EXPECT_EQ(ProgressText(0.5, 1, 30s), "[###############...............]  50%, 30 s left");
    EXPECT_EQ(ProgressText(1, 1, 30s), "[##############################] 100%");
    EXPECT_EQ(ProgressText(3.5, 10, 700s),
              "[##########....................]  35%, 3 of 10 tracks, 22 min left");
    EXPECT_EQ(ProgressText(20, 1000, 147s),
              "[..............................]   2%, 20 of 1000 tracks, 2 h 0 min left");
    EXPECT_EQ(ProgressText(19, 1000, 147s),
              "[..............................]   1%, 19 of 1000 tracks");
    EXPECT_EQ(ProgressText(0, 0, 0s), "[##############################] 100%");
}

TEST(OutputNameTest, PatternsAreFilledInOnce)
{
    const WantedTrack one = {.path = QStringLiteral("/songs/a %d %t.b.cdg")};
    const auto path = [](const char* out, const WantedTrack& track, const char* number) {
        return OutputName(QString::fromLatin1(out), track, QStringLiteral(".x"))
            .Path(QString::fromLatin1(number))
            .toStdString();
    };
    EXPECT_EQ(path("out", one, "7"), "out");
    EXPECT_EQ(path("%t-%d-%f-%x-%", one, "7"), "a %d %t.b-7-/songs-%x-%");
    EXPECT_EQ(path("%d", one, ""), "%d");
    EXPECT_EQ(path("%f/%t", {.path = QStringLiteral("a.cdg")}, ""), "./a");
    EXPECT_EQ(path("%f/%t", {.path = QStringLiteral("/a.cdg")}, ""), "//a");

    const WantedTrack many = {
        .path = QStringLiteral("x/b/a.cdg"), .folder = QStringLiteral("b/"), .isOneOfMany = true};
    EXPECT_EQ(path("out", many, "7"), "out/b/a.x");
    EXPECT_EQ(path("%d/", many, "7"), "%d/b/a.x");
    EXPECT_EQ(path("%t %d", many, "7"), "a 7");
}

TEST(OutputNameTest, AnOutputBelongsToOneOfSeveralTracks)
{
    const WantedTrack first = {.path = QStringLiteral("claim/1"), .isOneOfMany = true};
    const WantedTrack second = {.path = QStringLiteral("claim/2"), .isOneOfMany = true};
    const QString out = QStringLiteral("/claimed");
    EXPECT_TRUE(ClaimOutput(out, first).isEmpty());
    EXPECT_TRUE(ClaimOutput(out, first).isEmpty());
    EXPECT_EQ(ClaimOutput(out, second).toStdString(),
              "Cannot write /claimed: it is the output of claim/1");
    EXPECT_TRUE(ClaimOutput(out + u'2', second).isEmpty());
    EXPECT_TRUE(ClaimOutput(out, {.path = QStringLiteral("claim/3")}).isEmpty());
}

} // namespace
} // namespace lantern::tool
