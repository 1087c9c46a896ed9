// SPDX-License-Identifier: GPL-3.0-or-later
#include "Process.h"
#include "PulseServer.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>

namespace lantern::test {
namespace {

using ::testing::ElementsAre;
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
    EXPECT_THAT(Answer("--help"), StartsWith("Usage: lyric-lantern [TRACK | --demo | --stage]\n"));
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

// On a screen that nobody looks at.
class Complaints : public CommandLine {
protected:
    Process::Command Start(const std::vector<std::string>& arguments) const
    {
        Process::Command command = {.arguments = {LANTERN_PLAYER_PATH},
                                    .environment = {{"QT_QPA_PLATFORM", "offscreen"},
                                                    {"PULSE_SERVER", m_sound.Address()},
                                                    {"XDG_RUNTIME_DIR", m_runtime.string()},
                                                    {"appdata", (m_folder / "data").string()}},
                                    .log = m_folder / "log"};
        command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
        return command;
    }
    // The lines that tell of a track; the toolkit may say something of its platform.
    std::vector<std::string> Said() const
    {
        std::vector<std::string> said;
        std::istringstream lines(ReadFile(m_folder / "log"));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("lyric-lantern: "))
                said.push_back(line.substr(15));
        }
        return said;
    }
    std::string In(const std::string& name) const { return (m_folder / name).string(); }

    const PulseServer m_sound;
};

TEST_F(Complaints, WhatOpensNothingIsToldInOneLineAndThePlayerGoesOn)
{
    WriteFile(In("words.txt"), "la la la\n");
    WriteFile(In("empty.zip"), "");
    const std::vector<std::pair<std::string, std::string>> starts = {
        {"none.cdg", "File not found: " + In("none.cdg")},
        {"two\nlines.cdg", "File not found: " + In("two?lines.cdg")},
        {"words.txt", "Invalid file format: " + In("words.txt")},
        {"empty.zip", "Nothing to play: " + In("empty.zip")}};
    for (const auto& [name, line] : starts) {
        WriteFile(In("log"), "");
        Process player(Start({In(name)}));
        EXPECT_TRUE(Eventually([&] { return !Said().empty(); }, 20s)) << line;
        EXPECT_THAT(Said(), ElementsAre(line));
        EXPECT_TRUE(player.IsRunning());
        EXPECT_EQ(player.End(), 0);
    }
}

TEST_F(Complaints, ALaterStartTellsOfANameThatIsNoFileToo)
{
    Process first({.arguments = Start({}).arguments, .environment = Start({}).environment});
    EXPECT_TRUE(Eventually([&] { return std::filesystem::exists(m_folder / "data"); }, 20s));
    Process later(Start({In("none.cdg")}));
    EXPECT_EQ(later.WaitForExit(10s), 0);
    EXPECT_THAT(Said(), ElementsAre("File not found: " + In("none.cdg")));
}

} // namespace
} // namespace lantern::test
