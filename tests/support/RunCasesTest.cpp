// SPDX-License-Identifier: GPL-3.0-or-later
// The runner of all test programs, with a program whose cases end in every way.
#include "Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
        EnvironmentChanges environment = {{"SAMPLES_FOLDER", m_folder.Path().string()},
                                          {"LANTERN_CASES", std::nullopt}};
        environment.insert(environment.end(), changes.begin(), changes.end());
        options.insert(options.begin(), {"python3", RUN_CASES});
        options.emplace_back(CASE_SAMPLES);
        const auto said = m_folder / ("said-" + std::to_string(++m_runs));
        Process process({options, environment, said});
        const std::optional<int> code = process.WaitForExit(60s);
        return {code, ReadFile(said)};
    }

private:
    ScratchFolder m_folder;
    int m_runs = 0;
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
    const Ran ran = Run({"--filter=*Many.Fail/*"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.said, HasSubstr("13 cases failed: they get no second try"));
    EXPECT_THAT(ran.said, Not(HasSubstr("second try of")));
    EXPECT_THAT(ran.said, HasSubstr("cases: 0 passed, 13 failed, 0 skipped"));
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
