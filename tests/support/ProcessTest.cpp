// SPDX-License-Identifier: GPL-3.0-or-later
#include "Process.h"

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

TEST(Process, ItsExitCodeIsThatOfTheProgramOrTellsTheSignal)
{
    EXPECT_EQ(Process({.arguments = {"sh", "-c", "exit 3"}}).WaitForExit(5s), 3);
    Process sleeper({.arguments = {"sleep", "60"}});
    EXPECT_EQ(sleeper.WaitForExit(20ms), std::nullopt);
    EXPECT_EQ(sleeper.End(), 128 + 15);
    EXPECT_EQ(Process({.arguments = {"/no/such/program"}}).WaitForExit(5s), 127);
}

TEST(Process, TheEnvironmentIsChangedAsAsked)
{
    const std::string output =
        OutputOf({.arguments = {"sh", "-c", "echo ${HOME-none} $LANTERN_WORD"},
                  .environment = {{"HOME", std::nullopt}, {"LANTERN_WORD", "sing"}}});
    EXPECT_EQ(output, "none sing\n");
}

} // namespace
} // namespace lantern::test
