// SPDX-License-Identifier: GPL-3.0-or-later
#include "Process.h"

#include <gmock/gmock.h>

namespace lantern::test {
namespace {

using ::testing::StartsWith;

// With no screen and no sound, and with folders that would show any other work.
class CommandLine : public ::testing::Test {
protected:
    std::string Answer(const std::string& option) const
    {
        return OutputOf({.arguments = {LANTERN_PLAYER_PATH, option, "none.cdg"},
                         .environment = {{"DISPLAY", std::nullopt},
                                         {"WAYLAND_DISPLAY", std::nullopt},
                                         {"PULSE_SERVER", "/none"},
                                         {"XDG_RUNTIME_DIR", m_runtime.string()},
                                         {"appdata", (m_folder / "data").string()}}});
    }

    const ScratchFolder m_folder;
    const std::filesystem::path m_runtime = m_folder.PrivateFolder("runtime");
};

TEST_F(CommandLine, HelpAndVersionAreToldBeforeAnythingElseHappens)
{
    EXPECT_THAT(Answer("--help"), StartsWith("Usage: lyric-lantern [TRACK | --demo]\n"));
    EXPECT_EQ(Answer("-h"), Answer("--help"));
    EXPECT_THAT(Answer("--version"), StartsWith("Lyric Lantern CDG Player "));
    EXPECT_TRUE(std::filesystem::is_empty(m_runtime));
    EXPECT_FALSE(std::filesystem::exists(m_folder / "data"));
}

TEST_F(CommandLine, AProgramWithoutItsDemoSongSaysSo)
{
    const std::filesystem::path copy = m_folder / "bin/player";
    std::filesystem::create_directories(copy.parent_path());
    std::filesystem::copy_file(LANTERN_PLAYER_PATH, copy);
    const std::filesystem::path log = m_folder / "log";
    Process player({.arguments = {copy, "--demo"},
                    .environment = {{"XDG_RUNTIME_DIR", m_runtime.string()}},
                    .log = log});
    EXPECT_EQ(player.WaitForExit(20s), 1);
    EXPECT_EQ(ReadFile(log), "lyric-lantern: the demo song is not installed: " +
                                 (m_folder / "share/lyric-lantern/demo/demo.cdg").native() + '\n');
    EXPECT_TRUE(std::filesystem::is_empty(m_runtime));
}

} // namespace
} // namespace lantern::test
