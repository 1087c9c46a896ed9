// SPDX-License-Identifier: GPL-3.0-or-later
// The player as a screen reader knows it, on a real bus.
#include "Journey.h"
#include "PlayerDesk.h"
#include "ScreenReader.h"
#include "ScreenWindow.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <thread>

namespace lantern::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using ::testing::Not;

constexpr const char* kTitle = "Lyric Lantern CDG Player";
const std::string kMainWindow = std::string("frame:") + kMainTitle;
const std::string kOptions = "dialog:Lyric Lantern CDG Player Options";

// The names of the processes that were started with that in their environment.
std::vector<std::string> ProcessesWith(const std::string& variable)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        if (ReadFile(entry.path() / "environ").find(variable) != std::string::npos)
            names.push_back(ReadFile(entry.path() / "comm"));
    }
    return names;
}

class Assistive : public Journey {
protected:
    void Open()
    {
        WriteToneTrack("song", 60.0);
        StartPlayer({(folder / "song.cdg").string()}, reader.Environment());
        ASSERT_TRUE(AwaitPicture(kPicture));
        ASSERT_TRUE(AwaitSound());
    }

    ReadTree MainWindow() { return reader.Tree().Below("frame", kMainWindow.substr(6)); }
    ReadTree OptionsWindow() { return reader.Tree().Below("dialog", kOptions.substr(7)); }

    ReadTree Menu(const std::string& name) { return reader.Tree().Below("popup menu", name); }

    // Until the reader finds it so.
    ::testing::AssertionResult Finds(const std::function<bool()>& isSo)
    {
        if (Eventually(isSo, kPatience, 50ms))
            return ::testing::AssertionSuccess();
        ::testing::AssertionResult failure = ::testing::AssertionFailure();
        const ReadTree tree = reader.Tree();
        for (const ReadObject& one : tree.Objects())
            failure << std::string(2 * static_cast<std::size_t>(one.depth), ' ') << one.role << ": "
                    << one.name << " = " << one.value << '\n';
        return failure;
    }

    ScreenReader reader{screen, kTitle};
};

TEST_F(Assistive, TheMainWindowIsReadWithRolesNamesAndStates)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const ReadTree window = MainWindow();
    ASSERT_FALSE(window.Objects().empty());
    EXPECT_TRUE(window.Top().Is("active"));
    const ReadObject lyrics = window.Find("image", "Lyrics");
    EXPECT_TRUE(lyrics.Is("showing"));
    EXPECT_TRUE(lyrics.Is("focusable"));
    EXPECT_TRUE(lyrics.Is("focused"));
    EXPECT_THAT(
        window.Names("push button"),
        IsSupersetOf({"Open", "Play", "Pause", "Stop", "Rewind 10 seconds", "Rewind 60 seconds",
                      "Forward 10 seconds", "Forward 60 seconds", "Copy Screen to ClipBoard",
                      "View at 1x size", "View at 2x size", "View at 3x size", "View at 4x size",
                      "View at 5x size", "Full Screen", "Restore Screen", "Exit",
                      "Increase Display Size", "Reduce Display Size"}));
    EXPECT_THAT(window.Names("check box"),
                IsSupersetOf({"Custom Speed/Quick Play", "Mute/Restore Audio", "Options",
                              "Balance - Adjust With Wheel", "Key / Pitch - Adjust With Wheel",
                              "Speed - Adjust With Wheel", "Volume - Adjust With Wheel",
                              "Track - Adjust With Wheel"}));
    EXPECT_FALSE(window.Find("push button", "Play").Is("showing"));
    EXPECT_TRUE(window.Find("push button", "Pause").Is("showing"));
    EXPECT_TRUE(window.Find("push button", "Pause").Can("Press"));
    EXPECT_EQ(window.Find("push button", "Open").description, "Open (O)") << "the tool tip";
    EXPECT_TRUE(window.Find("check box", "Volume - Adjust With Wheel").Is("checked"));
    EXPECT_FALSE(window.Find("check box", "Track - Adjust With Wheel").Is("checked"));
    const ReadObject volume = window.Find("slider", "Volume");
    EXPECT_EQ(volume.value, "100.0");
    EXPECT_EQ(volume.minimum, "0.0");
    EXPECT_EQ(volume.maximum, "100.0");
    EXPECT_EQ(volume.step, "1.0");
    const ReadObject position = window.Find("slider", "Track position");
    EXPECT_EQ(position.minimum, "0.0");
    EXPECT_NEAR(std::stod(position.step), std::stod(position.maximum) / 100, 1.0);
    EXPECT_EQ(std::ranges::count_if(window.Objects(),
                                    [](const ReadObject& one) { return one.Is("focused"); }),
              1)
        << "the picture";
    for (const ReadObject& one : window.Objects()) {
        if (one.Is("showing")) {
            EXPECT_NE(one.name, "") << one.role;
            EXPECT_NE(one.role, "filler") << one.name;
            EXPECT_NE(one.role, "unknown") << one.name;
        }
    }
}

TEST_F(Assistive, ButtonsAreUsedAndSlidersAreSet)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    reader.Do("Press", {kMainWindow, "push button:Pause"});
    EXPECT_TRUE(AwaitSilence());
    EXPECT_TRUE(Finds([this] { return MainWindow().Find("push button", "Play").Is("showing"); }));
    reader.Do("Press", {kMainWindow, "push button:Play"});
    EXPECT_TRUE(AwaitSound());
    reader.Do("Toggle", {kMainWindow, "check box:Mute/Restore Audio"});
    EXPECT_TRUE(AwaitSilence());
    EXPECT_TRUE(Finds(
        [this] { return MainWindow().Find("check box", "Mute/Restore Audio").Is("checked"); }));
    reader.Set(80, {kMainWindow, "slider:Volume"});
    EXPECT_TRUE(AwaitSound());
    EXPECT_TRUE(Finds([this] { return MainWindow().Find("slider", "Volume").value == "80.0"; }));
    reader.Do("Press", {kMainWindow, "push button:Pause"});
    EXPECT_TRUE(AwaitSilence());
    reader.Set(30000, {kMainWindow, "slider:Track position"});
    EXPECT_TRUE(
        Finds([this] { return MainWindow().Find("slider", "Track position").value == "30000.0"; }));
}

TEST_F(Assistive, OfTheOptionsThePanelInFrontIsReadAndUsed)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    reader.Do("Toggle", {kMainWindow, "check box:Options"});
    const ScreenWindow window(screen, "Lyric Lantern CDG Player Options");
    ASSERT_TRUE(window.IsThereSoon());
    ASSERT_TRUE(Finds([this] { return OptionsWindow().Top().Is("showing"); }));
    ReadTree options = OptionsWindow();
    EXPECT_THAT(options.Names("slider"), ElementsAre("Balance", "Key / Pitch", "Speed", "Volume"));
    EXPECT_THAT(options.Names("check box"),
                ElementsAre("Custom Balance", "Custom Key/Pitch", "Custom Speed/Quick Play",
                            "Mute/Restore Audio", "Remember Audio Device"));
    EXPECT_THAT(options.Names("push button"),
                IsSupersetOf({"About Lyric Lantern CDG Player", "Hide this window"}));
    EXPECT_THAT(options.Names("push button"), Not(Contains("Return to Options")));
    EXPECT_EQ(options.Find("slider", "Balance").minimum, "-50.0");
    EXPECT_TRUE(Finds([this] { return OptionsWindow().Find("image", "Spectrum").Is("focused"); }));

    reader.Set(-50, {kOptions, "slider:Balance"});
    EXPECT_TRUE(AwaitLevel(Side::Right, 0.0, 0.001));
    reader.Do("Toggle", {kOptions, "check box:Custom Balance"});
    EXPECT_TRUE(AwaitLevel(Side::Right, kLoudness / std::numbers::sqrt2, 0.01));

    reader.Do("Press", {kOptions, "push button:About Lyric Lantern CDG Player"});
    EXPECT_TRUE(Finds(
        [this] { return !OptionsWindow().Find("push button", "Return to Options").role.empty(); }));
    options = OptionsWindow();
    EXPECT_TRUE(options.Names("slider").empty());
    EXPECT_THAT(options.Names("label"), Contains(::testing::HasSubstr("GPL-3.0-or-later")));
    reader.Do("Press", {kOptions, "push button:Hide this window"});
    EXPECT_TRUE(window.IsGoneSoon());
}

TEST_F(Assistive, TheMenuIsReadAndAnItemIsChosen)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const ScreenReader::Listening listening = reader.Listen();
    const Point opened = PicturePoint();
    hand.Click(opened, 3);
    ASSERT_TRUE(Finds([this] { return Menu("Commands").Objects().size() > 1; }));
    const ReadTree menu = Menu("Commands");
    EXPECT_TRUE(menu.Top().Is("showing"));
    EXPECT_THAT(menu.Names("menu item"),
                IsSupersetOf({"Open ", "Pause", "Stop", "Copy Screen", "Full Screen",
                              "Increase Display Size", "Options"}));
    EXPECT_THAT(menu.Names("menu item"), Not(Contains("Play")));
    EXPECT_EQ(menu.Names("separator").size(), 5U);
    EXPECT_TRUE(menu.Find("menu item", "Pause").Is("enabled"));
    hand.MoveTo({opened.x + 20, opened.y + 8});
    EXPECT_TRUE(listening.Hears("object:state-changed:focused\t1\tmenu item\tOpen "));
    EXPECT_TRUE(Menu("Commands").Find("menu item", "Open ").Is("focused"));
    reader.Do("Press", {kMainWindow, "popup menu:Commands", "menu item:Pause"});
    EXPECT_TRUE(AwaitSilence());
    EXPECT_TRUE(Finds([this] { return Menu("Commands").Objects().empty(); }));
}

TEST_F(Assistive, ASoundDeviceIsOneOfSeveralOfWhichOneHolds)
{
    sound.AddSink({"hall", "Hall Speakers"});
    ASSERT_NO_FATAL_FAILURE(Open());
    reader.Do("Toggle", {kMainWindow, "check box:Options"});
    ASSERT_TRUE(Finds([this] { return OptionsWindow().Top().Is("showing"); }));
    const auto open = [this](const std::string& device) {
        reader.Do("Press", {kOptions, "push button:" + device});
        return Finds([this] { return Menu("Sound devices").Objects().size() > 1; });
    };
    ASSERT_TRUE(open("Studio Speakers"));
    ReadTree menu = Menu("Sound devices");
    EXPECT_TRUE(menu.Find("radio button", "Studio Speakers").Is("checked"));
    EXPECT_THAT(menu.Names("radio button"), IsSupersetOf({"Studio Speakers", "Hall Speakers"}));
    EXPECT_FALSE(menu.Find("radio button", "Hall Speakers").Is("checked"));
    EXPECT_EQ(menu.Names("menu item"), std::vector<std::string>{"Cancel"});
    reader.Do("Press", {kMainWindow, "radio button:Hall Speakers"});
    ASSERT_TRUE(Finds([this] { return Menu("Sound devices").Objects().empty(); }));
    EXPECT_TRUE(AwaitSilence()) << "in the studio";
    ASSERT_TRUE(open("Hall Speakers"));
    menu = Menu("Sound devices");
    EXPECT_TRUE(menu.Find("radio button", "Hall Speakers").Is("checked"));
    EXPECT_FALSE(menu.Find("radio button", "Studio Speakers").Is("checked"));
    reader.Do("Press", {kMainWindow, "menu item:Cancel"});
    EXPECT_TRUE(Finds([this] { return Menu("Sound devices").Objects().empty(); }));
}

TEST_F(Assistive, WhatAButtonOpensIsReadWhileItStands)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    reader.Do("Press", {kMainWindow, "push button:Open"});
    const ScreenWindow dialog(screen, "Select a Karaoke File");
    ASSERT_TRUE(dialog.IsThereSoon());
    const auto read = [this] { return reader.Tree().Below("dialog", "Select a Karaoke File"); };
    EXPECT_TRUE(Finds([&] { return !read().Find("push button", "Open").role.empty(); }));
    reader.Do("Press", {"dialog:Select a Karaoke File", "push button:Cancel"});
    EXPECT_TRUE(dialog.IsGoneSoon());
    EXPECT_TRUE(MainWindow().Find("push button", "Pause").Is("showing"));
}

TEST_F(Assistive, TheTimeIsRead)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    reader.Do("Press", {kMainWindow, "push button:Pause"});
    EXPECT_TRUE(AwaitSilence());
    const ScreenReader::Listening listening = reader.Listen();
    reader.Set(30000, {kMainWindow, "slider:Track position"});
    EXPECT_TRUE(Finds([this] {
        return MainWindow().Find("label", "Time").description.find("0:30") != std::string::npos;
    }));
    EXPECT_TRUE(listening.Hears("object:property-change:accessible-description\t0\tlabel\tTime"));
    EXPECT_TRUE(
        listening.Hears("object:property-change:accessible-value\t0\tslider\tTrack position", 1s))
        << "a seek is told at once";
}

TEST_F(Assistive, AnHourOfMusicIsNotAnHourOfTalk)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const ScreenReader::Listening listening = reader.Listen();
    std::this_thread::sleep_for(6s);
    const int times =
        listening.Count("object:property-change:accessible-value\t0\tslider\tTrack position");
    EXPECT_GE(times, 4);
    EXPECT_LE(times, 8);
}

// What lives on would hold what this process holds, a lock for one.
TEST_F(Assistive, TheBusesEndWithTheReader)
{
    std::string bus;
    {
        ScreenReader another(screen, kTitle);
        const EnvironmentChanges environment = another.Environment();
        bus = environment.front().first + '=' + environment.front().second.value();
        EXPECT_THAT(ProcessesWith(bus), IsSupersetOf({"at-spi-bus-laun\n", "dbus-daemon\n"}));
    }
    EXPECT_TRUE(Eventually([&] { return ProcessesWith(bus).empty(); }, 500ms))
        << ProcessesWith(bus).front();
}

TEST_F(Assistive, MessagesAreAnnouncedEvenOneAfterTheOther)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    ScreenReader::Listening listening = reader.Listen();
    hand.Key("m");
    EXPECT_TRUE(listening.Hears("object:state-changed:showing\t1\tnotification\tVolume: MUTE"));
    listening = reader.Listen();
    hand.Key("m");
    EXPECT_TRUE(listening.Hears("object:state-changed:showing\t1\tnotification\tVolume: 100%"))
        << "while the first one still stands";
    EXPECT_TRUE(listening.Hears("object:state-changed:checked\t0\tcheck box\tMute/Restore Audio"));
    EXPECT_TRUE(listening.Hears("object:state-changed:showing\t0\tnotification\tVolume: 100%"));
}

} // namespace
} // namespace lantern::test
