// SPDX-License-Identifier: GPL-3.0-or-later
// The stage window, by keyboard, by a later start, and as it is heard.
#include "Journey.h"
#include "ScreenWindow.h"
#include "SessionBus.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <numbers>
#include <vector>

namespace lantern::test {
namespace {

constexpr double kLeftLevel = 0.4 / std::numbers::sqrt2;
constexpr double kRightLevel = 0.2 / std::numbers::sqrt2;

class Stage : public Journey {
protected:
    const ScreenWindow main{screen, kMainTitle};
    const ScreenWindow stage{screen, "Lyric Lantern CDG Player Stage"};

    // The singer on the louder left, the band alone on the right.
    std::filesystem::path WriteTwoVoices()
    {
        constexpr double kSeconds = 120.0;
        SoundSheet sheet(kSeconds);
        sheet.Add({.length = kSeconds, .frequency = 440.0, .left = 0.4, .right = 0.0});
        sheet.Add({.length = kSeconds, .frequency = 660.0, .left = 0.0, .right = 0.2});
        return WritePlainTrack("voices", kSeconds, sheet);
    }
    ::testing::AssertionResult AwaitLevels(double left, double right)
    {
        const auto found = AwaitLevel(Side::Left, left, 0.005);
        return found ? AwaitLevel(Side::Right, right, 0.005) : found;
    }
    void OpenStage()
    {
        hand.Key("F2");
        ASSERT_TRUE(stage.IsThereSoon());
        ASSERT_TRUE(stage.HasKeyboardSoon());
    }
    double FlashesLateMs(Point point);
    std::string StageFile() const
    {
        return ReadFile(home.SettingsFile().parent_path() / "data_stage.ini");
    }
    // What a later start by that option says.
    std::string LaterStart(const EnvironmentChanges& bus, int exitCode)
    {
        EnvironmentChanges environment = home.Environment();
        environment.insert(environment.end(), bus.begin(), bus.end());
        environment.emplace_back("DISPLAY", screen.DisplayName());
        const std::filesystem::path log = folder / "later";
        Process later({.arguments = {Player::ProgramPath(), "--stage"},
                       .environment = environment,
                       .log = log});
        EXPECT_EQ(later.WaitForExit(kPatience), exitCode);
        return ReadFile(log);
    }
};

TEST_F(Stage, TheKeyboardAloneChoosesWhatBothEarsHearAndItIsRemembered)
{
    const std::filesystem::path track = WriteTwoVoices();
    OpenTrack(track);
    EXPECT_TRUE(AwaitLevels(kLeftLevel, kRightLevel));
    OpenStage();
    Keys("Tab", 3);
    hand.Key("space");
    EXPECT_TRUE(AwaitLevels(kLeftLevel, kLeftLevel));
    hand.Key("Right");
    hand.Key("space");
    EXPECT_TRUE(AwaitLevels(kRightLevel, kRightLevel));
    hand.Key("m"); // the player's keys work here, too
    EXPECT_TRUE(AwaitSilence());
    hand.Key("m");
    hand.Key("Escape");
    EXPECT_TRUE(stage.IsGoneSoon());
    EXPECT_TRUE(main.HasKeyboardSoon());
    EXPECT_EQ(StageFile(), "voiceguide\tright\r\n");
    Leave();

    OpenTrack(track);
    EXPECT_TRUE(AwaitLevels(kRightLevel, kRightLevel));
    OpenStage();
    Keys("Tab", 2);
    hand.Key("space");
    EXPECT_TRUE(AwaitLevels(kLeftLevel, kRightLevel));
    hand.Key("F2");
    EXPECT_TRUE(stage.IsGoneSoon());
    EXPECT_EQ(StageFile(), "");
}

// The middle of what the flashes of the test come later than their clicks, in milliseconds.
double Stage::FlashesLateMs(Point point)
{
    std::this_thread::sleep_for(800ms); // for a picture that waits
    eyes.Watch({point});
    std::this_thread::sleep_for(6500ms);
    const std::vector<Eyes::Change> seen = eyes.StopWatching();
    const Recording heard = ears.Heard();
    std::vector<Moment> clicks;
    for (const Burst& burst : FindBursts(heard.stereo, Recording::kRate))
        clicks.push_back(heard.HeardAt(burst.startFrame));
    std::vector<double> late;
    for (const Eyes::Change& change : seen) {
        if (change.colour != 0xFFFFFFFF || clicks.empty())
            continue;
        const auto nearest = std::ranges::min_element(
            clicks, {}, [&](Moment click) { return std::chrono::abs(change.firstSeen - click); });
        late.push_back(Milliseconds(change.firstSeen - *nearest));
    }
    if (late.size() < 4) {
        ADD_FAILURE() << late.size() << " flashes were seen";
        return 1e9;
    }
    std::ranges::nth_element(late, late.begin() + std::ssize(late) / 2);
    return late[late.size() / 2];
}

TEST_F(Stage, TheArrowKeysMoveTheFlashesToTheClicksAndTheTrackGoesOn)
{
    OpenTrack(WriteToneTrack("tone", 120.0));
    const QRect area = PictureArea();
    const Point corner = {area.left() + 20, area.top() + 20};
    OpenStage();
    hand.Key("Tab");
    hand.Key("space");
    ASSERT_TRUE(AwaitColour(corner, 0xFF000000));
    EXPECT_NEAR(FlashesLateMs(corner), 0.0, 25.0);
    Keys("Page_Up", 3);
    Keys("Right", 10); // the picture waits for 200 ms
    EXPECT_NEAR(FlashesLateMs(corner), 200.0, 25.0);
    Keys("Page_Down", 7);
    EXPECT_NEAR(FlashesLateMs(corner), -150.0, 25.0);
    hand.Key("Escape");
    EXPECT_TRUE(AwaitColour(corner, kPicture));
    EXPECT_TRUE(AwaitTone(440.0));
    EXPECT_TRUE(stage.IsThere());
    hand.Key("Escape");
    EXPECT_TRUE(stage.IsGoneSoon());
    EXPECT_EQ(StageFile(), "delay.studio\t-150\r\n");
}

TEST_F(Stage, ItStandsBeforeTheFullScreenAndTheOptions)
{
    OpenTrack(WriteTwoVoices());
    hand.Key("f");
    ASSERT_TRUE(Eventually([this] { return player->IsFullScreen(); }, kPatience));
    hand.Key("Escape");
    const ScreenWindow options{screen, "Lyric Lantern CDG Player Options"};
    ASSERT_TRUE(options.HasKeyboardSoon());
    ASSERT_NO_FATAL_FAILURE(OpenStage());
    EXPECT_TRUE(Eventually([&] { return stage.StandsInFrontOf(main); }, kPatience));
    EXPECT_TRUE(Eventually([&] { return stage.StandsInFrontOf(options); }, kPatience));
    hand.Key("Escape");
    EXPECT_TRUE(stage.IsGoneSoon());
    EXPECT_TRUE(options.IsThere()) << "Escape is for the window that has the keyboard";
}

TEST_F(Stage, ALaterStartAsksThePlayerThatRuns)
{
    const SessionBus bus;
    StartPlayer({}, bus.Environment());
    EXPECT_EQ(LaterStart(bus.Environment(), 0), "");
    EXPECT_TRUE(stage.IsThereSoon());
    EXPECT_TRUE(stage.HasKeyboardSoon());
    hand.Key("Escape");
    EXPECT_TRUE(stage.IsGoneSoon());
    // One that can't be asked is left as it is, and the user is told so.
    EXPECT_THAT(LaterStart({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/none"}}, 1),
                ::testing::AllOf(::testing::HasSubstr("lyric-lantern: The running player can't be "
                                                      "asked over the session's bus"),
                                 ::testing::EndsWith("\n")));
    EXPECT_FALSE(stage.IsThere());
}

TEST_F(Stage, AFirstStartByTheOptionShowsBothWindows)
{
    player = std::make_unique<Player>(screen, sound.Environment(), home,
                                      PlayerStart{.arguments = {"--stage"}});
    EXPECT_TRUE(stage.IsThereSoon());
    EXPECT_TRUE(stage.HasKeyboardSoon());
    EXPECT_TRUE(main.IsThereSoon());
    hand.Key("Escape");
    EXPECT_TRUE(stage.IsGoneSoon());
    EXPECT_TRUE(main.HasKeyboardSoon());
}

} // namespace
} // namespace lantern::test
