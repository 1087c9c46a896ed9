// SPDX-License-Identifier: GPL-3.0-or-later
// Cases that end in every way that a case can end in: what the runner of cases is tested with.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

TEST(Samples, Passes)
{
    std::cout << "said by the one that passes\n";
}

TEST(Samples, Fails)
{
    FAIL() << "said by the one that fails";
}

const std::filesystem::path kBusy = std::string(std::getenv("SAMPLES_FOLDER")) + "/busy";

TEST(Samples, IsBusyForAWhile)
{
    std::ofstream(kBusy) << "yes";
    sleep(3);
    std::filesystem::remove(kBusy);
}

TEST(Samples, FailsBesideABusyOne)
{
    EXPECT_FALSE(std::filesystem::exists(kBusy));
}

TEST(Samples, StaysBehindAllOthers)
{
    EXPECT_TRUE(sched_getscheduler(0) == SCHED_IDLE || getpriority(PRIO_PROCESS, 0) == 19);
}

// The process that waits for this one, the runner, stands still.
void Stall(useconds_t howLong = 100'000)
{
    kill(getppid(), SIGSTOP);
    usleep(howLong);
    kill(getppid(), SIGCONT);
}

TEST(Samples, StallsAndFailsThreeTimes)
{
    const std::string tries = std::string(std::getenv("SAMPLES_FOLDER")) + "/tries";
    std::ofstream(tries, std::ios::app) << '.';
    Stall();
    EXPECT_GT(std::filesystem::file_size(tries), 3U);
}

TEST(Samples, StallsAndFails)
{
    Stall();
    FAIL();
}

TEST(Samples, StallsALittleAndFails)
{
    Stall(30'000);
    FAIL();
}

// Whether it was run before is a file in the folder that the variable names.
bool RanBefore(const std::string& name)
{
    const std::filesystem::path mark = std::string(std::getenv("SAMPLES_FOLDER")) + "/" + name;
    const bool ranBefore = std::filesystem::exists(mark);
    std::ofstream(mark) << "yes";
    return ranBefore;
}

TEST(Samples, FailsTheFirstTime)
{
    EXPECT_TRUE(RanBefore("ran"));
}

TEST(Samples, FailsThenSkips)
{
    if (RanBefore("skips"))
        GTEST_SKIP() << "for a reason";
    FAIL();
}

TEST(Samples, StallsAndCrashes)
{
    Stall();
    std::raise(SIGSEGV);
}

TEST(Samples, Crashes)
{
    std::cout << "the last words";
    std::cout.flush();
    std::raise(SIGSEGV);
}

TEST(Samples, Hangs)
{
    for (;;)
        pause();
}

TEST(Samples, Leaves)
{
    std::_Exit(0);
}

TEST(Samples, Skips)
{
    GTEST_SKIP() << "for a reason";
}

// Another process of its own keeps the pipe that this one writes to.
TEST(Samples, LeavesAChildBehind)
{
    if (fork() == 0) {
        sleep(20);
        std::_Exit(0);
    }
}

class Words : public testing::TestWithParam<const char*> {};

TEST_P(Words, HaveNoLineBreak)
{
    EXPECT_EQ(std::string(GetParam()).find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(All, Words, testing::Values("one", "two\nlines"));

class Many : public testing::TestWithParam<int> {};

TEST_P(Many, Fail)
{
    FAIL();
}

TEST_P(Many, Crash)
{
    std::raise(SIGSEGV);
}

TEST_P(Many, StallAndFailTheFirstTime)
{
    Stall();
    EXPECT_TRUE(RanBefore("many-" + std::to_string(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Cases, Many, testing::Range(0, 13));

TEST(ZLast, Passes)
{
}

class LeavesBadly : public testing::Environment {
    void TearDown() override
    {
        if (std::getenv("SAMPLES_LEAVE_BADLY") != nullptr)
            std::_Exit(23);
    }
};

const testing::Environment* const kLeavesBadly =
    testing::AddGlobalTestEnvironment(new LeavesBadly); // owned by the library
