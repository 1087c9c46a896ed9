// SPDX-License-Identifier: GPL-3.0-or-later
// The runner of all test programs, with a program whose cases end in every way.
#include "Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <future>
#include <sys/file.h>
#include <unistd.h>

using testing::HasSubstr;
using testing::Not;

namespace lantern::test {
namespace {

struct Ran {
    std::optional<int> code;
    std::string said;
};

class RunCases : public testing::Test {
protected:
    Ran Run(std::vector<std::string> options, const EnvironmentChanges& changes = {})
    {
        EnvironmentChanges environment = {{"SAMPLES_FOLDER", folder.Path().string()},
                                          {"LANTERN_CASES", std::nullopt}};
        environment.insert(environment.end(), changes.begin(), changes.end());
        options.insert(options.begin(), {"python3", RUN_CASES});
        options.emplace_back(CASE_SAMPLES);
        const auto said = folder / ("said-" + std::to_string(++m_runs));
        Process process({options, environment, said});
        const std::optional<int> code = process.WaitForExit(5min);
        return {code, ReadFile(said)};
    }

    ScratchFolder folder;

private:
    std::atomic<int> m_runs = 0;
};

TEST_F(RunCases, SaysNothingOfACaseThatPasses)
{
    const Ran ran = Run({"--filter=Samples.Passes:ZLast.*"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.said, "    cases: 2 passed, 0 failed, 0 skipped\n");
}

TEST_F(RunCases, ShowsEachCaseWhereThatIsWanted)
{
    const Ran ran = Run({"--show-all", "--filter=Samples.Passes"});
    EXPECT_THAT(ran.said, HasSubstr("passed Samples.Passes ("));
}

TEST_F(RunCases, PrintsAFailureAndTriesItOnceMore)
{
    const Ran ran = Run({"--filter=Samples.Passes:Samples.Fails:ZLast.*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("FAILED Samples.Fails ("));
    EXPECT_THAT(ran.said, HasSubstr("said by the one that fails"));
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.Fails: FAILED"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 2 passed, 1 failed, 0 skipped"));
    EXPECT_THAT(ran.said, Not(HasSubstr("said by the one that passes")));
}

TEST_F(RunCases, PassesWhatPassesAtTheSecondTryAndTellsIt)
{
    const Ran ran = Run({"--filter=Samples.FailsTheFirstTime"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said, HasSubstr("FAILED Samples.FailsTheFirstTime ("));
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.FailsTheFirstTime: passed"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 0 failed, 0 skipped"));
}

TEST_F(RunCases, TriesAgainWhileTheMachineStalls)
{
    const Ran ran = Run({"--filter=Samples.StallsAndFailsThreeTimes"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.StallsAndFailsThreeTimes: FAILED, and "
                                    "the machine stalled\n"));
    EXPECT_THAT(ran.said, HasSubstr("fourth try of Samples.StallsAndFailsThreeTimes: passed"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 0 failed, 0 skipped"));
}

TEST_F(RunCases, GivesUpACaseThatFailsHoweverOftenTheMachineStalled)
{
    const Ran ran = Run({"--filter=Samples.StallsAndFails"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("fifth try of Samples.StallsAndFails: FAILED"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 0 passed, 1 failed, 0 skipped"));
}

TEST_F(RunCases, SkipsAMomentThatAMachineWhichStallsNeverLetItMeasure)
{
    const Ran ran = Run({"--moments", "--filter=Samples.StallsAndFails"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said, HasSubstr("fifth try of Samples.StallsAndFails: FAILED"));
    EXPECT_THAT(ran.said, HasSubstr("not measured: Samples.StallsAndFails, as the machine stood "));
    EXPECT_THAT(ran.said, HasSubstr("cases: 0 passed, 0 failed, 1 skipped"));
}

TEST_F(RunCases, FailsAMomentThatTheMachineHardlySpoiled)
{
    EXPECT_EQ(Run({"--moments", "--filter=Samples.Fails"}).code, 1);
    const auto fails = [this] {
        const Ran ran = Run({"--moments", "--filter=Samples.StallsALittleAndFails"});
        return ran.code == 1 &&
               ran.said.find("cases: 0 passed, 1 failed, 0 skipped") != std::string::npos;
    };
    EXPECT_TRUE(Eventually(fails, 60s)); // the machine may stall by itself, too
}

TEST_F(RunCases, ASecondTryMaySkip)
{
    const Ran ran = Run({"--filter=Samples.FailsThenSkips"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.FailsThenSkips: skipped"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 0 passed, 0 failed, 1 skipped"));
}

// A machine that stalls by itself spoils a run. It does not spoil each.
TEST_F(RunCases, TriesNoMoreThanTwiceWithoutAStall)
{
    const auto triesTwice = [this] {
        const std::string said = Run({"--filter=Samples.Fails"}).said;
        return said.find("second try of Samples.Fails: FAILED\n") != std::string::npos &&
               said.find("third try") == std::string::npos;
    };
    EXPECT_TRUE(Eventually(triesTwice, 20s));
}

TEST_F(RunCases, TriesACrashNoMoreThanTwice)
{
    const Ran ran = Run({"--filter=Samples.StallsAndCrashes"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.StallsAndCrashes: FAILED"));
    EXPECT_THAT(ran.said, Not(HasSubstr("third try")));
}

TEST_F(RunCases, TriesAgainWhenNothingRunsBeside)
{
    const std::string machine = folder / "machine";
    auto busy = std::async(std::launch::async, [&] {
        return Run({"--machine", machine, "--filter=Samples.IsBusyForAWhile"});
    });
    ASSERT_TRUE(Eventually([this] { return std::filesystem::exists(folder / "busy"); }));
    const Ran ran = Run({"--machine", machine, "--filter=Samples.FailsBesideABusyOne"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said, HasSubstr("FAILED Samples.FailsBesideABusyOne ("));
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.FailsBesideABusyOne: passed"));
    EXPECT_EQ(busy.get().code, 0);
}

TEST_F(RunCases, WhatStaysBehindAllOthersDoesNotWaitForOneThatHasTheMachineAlone)
{
    const std::string machine = folder / "machine";
    const int alone = open(machine.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(alone, LOCK_EX), 0);
    const Ran ran =
        Run({"--behind", "--machine", machine, "--filter=Samples.StaysBehindAllOthers"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.said, "    cases: 1 passed, 0 failed, 0 skipped\n");
    close(alone);
}

TEST_F(RunCases, NamesTheCaseThatCrashesAndGoesOnBehindIt)
{
    const Ran ran = Run({"--filter=Samples.Crashes:Samples.Skips:ZLast.*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("the last words\nSamples.Crashes was ended by SIGSEGV\n"));
    EXPECT_THAT(ran.said, HasSubstr("second try of Samples.Crashes: FAILED"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 1 failed, 1 skipped"));
}

TEST_F(RunCases, NamesTheCaseThatHangsAndGoesOnBehindIt)
{
    const Ran ran = Run({"--limit", "1.5", "--filter=Samples.Hangs:ZLast.*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("Samples.Hangs did not end within 1.5 seconds"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 1 failed, 0 skipped"));
}

TEST_F(RunCases, NamesTheCaseThatEndsTheProgramWithoutAFailure)
{
    const Ran ran = Run({"--filter=Samples.Leaves:ZLast.*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("Samples.Leaves ended with the exit code 0"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 1 failed, 0 skipped"));
}

TEST_F(RunCases, TriesNoneAgainWhereManyFail)
{
    const auto triesNone = [this] {
        const Ran ran = Run({"--filter=*Many.Fail/*"});
        EXPECT_EQ(ran.code, 1);
        EXPECT_THAT(ran.said, HasSubstr("cases: 0 passed, 13 failed, 0 skipped"));
        return ran.said.find("13 cases failed: they get no second try") != std::string::npos &&
               ran.said.find("second try of") == std::string::npos;
    };
    EXPECT_TRUE(Eventually(triesNone, 60s)); // unless the machine stalls by itself
}

TEST_F(RunCases, TriesManyAgainWhereTheMachineStalledMeanwhile)
{
    const Ran ran = Run({"--filter=*Many.StallAndFailTheFirstTime/*"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said,
                HasSubstr("second try of Cases/Many.StallAndFailTheFirstTime/12: passed"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 13 passed, 0 failed, 0 skipped"));
}

TEST_F(RunCases, GivesUpAProgramThatCrashesAgainAndAgain)
{
    const Ran ran = Run({"--filter=*Many.Crash/*:ZLast.*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said,
                HasSubstr("FAILED: 5 cases crashed or hung: those behind them did not run"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 5 failed, 0 skipped"));
}

TEST_F(RunCases, FailsWhenTheProgramFailsBehindItsCases)
{
    const Ran ran = Run({"--filter=Samples.Passes"}, {{"SAMPLES_LEAVE_BADLY", "yes"}});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said,
                HasSubstr("FAILED: outside of its cases the program ended with the exit code 23"));
}

TEST_F(RunCases, FailsWhenNoCaseFits)
{
    EXPECT_EQ(Run({"--filter=Nothing.*"}).code, 1);
}

TEST_F(RunCases, FailsWhenTheProgramCannotBeStarted)
{
    Ran ran = Run({"--filter=*", "/nowhere/program"});
    EXPECT_NE(ran.code, 0);
}

TEST_F(RunCases, DoesNotWaitForWhatACaseLeftBehind)
{
    const Moment start = Clock::now();
    EXPECT_EQ(Run({"--filter=Samples.LeavesAChildBehind"}).code, 0);
    EXPECT_LT(Clock::now() - start, 15s);
}

TEST_F(RunCases, KnowsCasesByParametersOfAnyKind)
{
    const Ran ran = Run({"--filter=*Words*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("second try of All/Words.HaveNoLineBreak/1: FAILED"));
    EXPECT_THAT(ran.said, HasSubstr("cases: 1 passed, 1 failed, 0 skipped"));
}

TEST_F(RunCases, RunsOnlyTheCasesThatTheEnvironmentAsksFor)
{
    const Ran ran =
        Run({"--show-all", "--filter=-Samples.Fails"}, {{"LANTERN_CASES", "*.Passes:*.Fails"}});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.said, HasSubstr("cases: 2 passed, 0 failed, 0 skipped"));
    EXPECT_EQ(Run({}, {{"LANTERN_CASES", "Nothing"}}).said,
              "    cases: 0 passed, 0 failed, 0 skipped\n");
}

} // namespace
} // namespace lantern::test
