// SPDX-License-Identifier: GPL-3.0-or-later
#include "StallWatch.h"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lantern::test {
namespace {

constexpr int kSawTheStall = 17;
constexpr Clock::duration kStopped = 120ms;

// In a process of its own, which another one stops for a while.
[[noreturn]] void WatchBeingStopped()
{
    const StallWatch watch;
    const Moment start = Clock::now();
    const bool sawIt = Eventually([&] { return watch.LongestStall() >= kStopped / 2; }, 20s, 1ms);
    cpu_set_t allowed = {};
    sched_getaffinity(0, sizeof(allowed), &allowed);
    std::this_thread::sleep_for(20ms); // the other processors' threads may tell of it later
    const bool onEach = watch.StallCount() >=
                        std::min<std::size_t>(static_cast<std::size_t>(CPU_COUNT(&allowed)), 8);
    const Moment end = Clock::now();
    const bool isDated =
        watch.StalledBetween(start, end) && !watch.StalledBetween(start - 2s, start - 1s);
    // What several processors saw is one time, and neither end is passed.
    const bool isSummed = watch.NearStalls(start, end, 0ms) >= kStopped / 2 &&
                          watch.NearStalls(start, end, 1min) == end - start &&
                          watch.NearStalls(start - 2s, start - 1s, 100ms) == 0ms;
    _exit(sawIt && onEach && isDated && isSummed ? kSawTheStall : 1);
}

TEST(StallWatch, AProgramThatStoodStillSeesItOnEveryProcessor)
{
    const pid_t child = fork();
    if (child == 0)
        WatchBeingStopped();
    // More than once: the first time it may not have begun to watch.
    int status = 0;
    const auto hasEnded = [&] {
        kill(child, SIGSTOP);
        std::this_thread::sleep_for(kStopped);
        kill(child, SIGCONT);
        return waitpid(child, &status, WNOHANG) == child;
    };
    ASSERT_TRUE(Eventually(hasEnded, 30s, kStopped));
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kSawTheStall);
}

} // namespace
} // namespace lantern::test
