// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <sys/stat.h>

namespace lantern::test {
namespace {

class Settings : public Journey {
protected:
    static constexpr double kTone = 440.0;
};

TEST_F(Settings, ASessionLeavesEverythingAsTheNextOneFindsIt)
{
    const std::filesystem::path track = WriteToneTrack("tone", 60.0, kTone);
    sound.AddSink({"stage", "Stage HDMI Output"});
    WriteSettings("audiosave\tY\r\naudiodevice\tStage HDMI Output\r\n");
    StartPlayer({track.string()});
    hand.Key("3");
    hand.Key("s");
    Keys("Down", 10);
    hand.Key("q"); // neutral, and the speed is kept as the other one
    hand.Key("q");
    hand.Key("k");
    Keys("Up", 3);
    hand.Key("b");
    Keys("Down", 5);
    hand.Key("v");
    Keys("Down", 20);
    hand.Key("m");
    hand.Key("m");
    Leave();

    const std::map<std::string, std::string> expected = {
        {"lastplayed", track.string()},
        {"zoom", "3"},
        {"speed", "-20"},
        {"custom_speed", "-20"},
        {"keypitch", "3"},
        {"balance", "-10"},
        {"volume", "60"},
        {"custom_volume", "60"},
        {"custom_keypitch", "-2"},
        {"custom_balance", "-50"},
        {"audiosave", "Y"},
        {"audiodevice", "Stage HDMI Output"},
    };
    for (const auto& [key, value] : expected)
        EXPECT_EQ(home.Setting(key), value) << key;
    const std::string file = ReadFile(home.SettingsFile());

    StartPlayer();
    Leave();
    EXPECT_EQ(ReadFile(home.SettingsFile()), file) << "a session without a change changes nothing";
}

TEST_F(Settings, TheNextSessionPlaysTheLastTrackAsItWasHeard)
{
    OpenTrack(WriteToneTrack("tone", 60.0, kTone));
    const double full = kLoudness / std::sqrt(2.0);
    EXPECT_TRUE(AwaitLevel(Side::Left, full, 0.002));
    hand.Key("k");
    Keys("Up", 3);
    hand.Key("v");
    Keys("Down", 25);
    Leave();

    StartPlayer();
    hand.Key("p");
    ASSERT_TRUE(AwaitPicture(kPicture));
    ASSERT_TRUE(AwaitSound());
    EXPECT_TRUE(AwaitTone(kTone * std::pow(2.0, 3.0 / 12.0)));
    EXPECT_TRUE(AwaitLevel(Side::Left, full / 2.0, full * 0.05));
}

// The name is no text in any encoding, and holds what separates values and lines in the file.
TEST_F(Settings, ATrackOfAnyNameOpensAgainInTheNextSession)
{
    OpenTrack(WriteToneTrack("caf\xE9 \xFF\t\r\n\xC3\xA9", 60.0, kTone));
    Leave();
    StartPlayer();
    hand.Key("p");
    ASSERT_TRUE(AwaitPicture(kPicture));
    EXPECT_TRUE(AwaitSound());
}

TEST_F(Settings, AFileThatIsALinkStaysOneAndKeepsItsPermissions)
{
    const std::filesystem::path file = folder / "kept.ini";
    WriteFile(file, "zoom\t3\r\n");
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    std::filesystem::create_directories(home.SettingsFile().parent_path());
    std::filesystem::create_symlink(file, home.SettingsFile());
    StartPlayer();
    hand.Key("4");
    Leave();
    EXPECT_TRUE(std::filesystem::is_symlink(home.SettingsFile()));
    EXPECT_EQ(home.Setting("zoom"), "4");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
}

TEST_F(Settings, WhatIsNoSettingsFileGivesTheFirstStartsValues)
{
    const std::string zeros(4096, '\0');
    for (const std::string& contents :
         {std::string(), zeros, std::string("\xEF\xBB\xBF"), std::string("\xFF\xFE"),
          std::string(1 << 20, 'x'), std::string("zoom"), std::string("zoom\t9\nvolume\tloud\n")}) {
        WriteSettings(contents);
        StartPlayer();
        Leave();
        EXPECT_EQ(home.Setting("zoom"), "2");
        EXPECT_EQ(home.Setting("volume"), "100");
    }
}

// What can be neither read nor written: the start and the end say so, and the player works.
TEST_F(Settings, AFileThatCannotBeWrittenIsToldAndThePlayerGoesOn)
{
    const std::filesystem::path file = home.SettingsFile();
    const std::filesystem::path track = WriteToneTrack("tone", 60.0, kTone);
    const std::vector<std::function<void()>> obstacles = {
        [&] { std::filesystem::create_directory(file); },
        [&] { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); },
        [&] { std::filesystem::create_symlink("/dev/full", file); },
    };
    std::filesystem::create_directories(file.parent_path());
    for (const std::function<void()>& putInTheWay : obstacles) {
        std::filesystem::remove_all(file);
        putInTheWay();
        player = std::make_unique<Player>(screen, sound.Environment(), home,
                                          PlayerStart{.arguments = {track.string()}});
        ASSERT_TRUE(player->AwaitWindowTitled("Cannot Write to Settings File"));
        hand.Key("Return");
        ASSERT_TRUE(player->AwaitWindow());
        EXPECT_TRUE(AwaitPicture(kPicture));
        hand.Key("ctrl+q");
        ASSERT_TRUE(player->AwaitWindowTitled("Cannot Write to Settings File"));
        hand.Key("Return");
        EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
    }
}

} // namespace
} // namespace lantern::test
