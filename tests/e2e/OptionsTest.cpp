// SPDX-License-Identifier: GPL-3.0-or-later
// The options window under a hand, and what of it is heard.
#include "Journey.h"
#include "ScreenWindow.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace lantern::test {
namespace {

constexpr double kTone = 440.0;
constexpr QRgb kFrame = 0xFFFFAB08;
constexpr double kFull = 0.4 / std::numbers::sqrt2; // the level of a tone track
constexpr Clock::duration kQuiet = 500ms;           // what has not come by then does not come

// Places in the window, in pixels.
constexpr std::pair kHide{392, 200};
constexpr std::pair kAbout{20, 200};
constexpr std::pair kBack = kAbout;
constexpr std::pair kRemember{98, 154};
constexpr std::pair kDevice{150, 135};
constexpr std::pair kBare{60, 190};
constexpr std::pair kSpectrum{216, 185};
constexpr int kSliderLeft = 119;
constexpr int kSliderMiddle = 218;
constexpr int kSliderRight = 317;

enum Row { Balance, Key, Speed, Volume };
constexpr int HeightOf(Row row)
{
    return 49 + 20 * row;
}
constexpr std::pair<int, int> CustomOf(Row row)
{
    return {101, HeightOf(row)};
}

double Up(double semitones)
{
    return kTone * std::pow(2.0, semitones / 12.0);
}

class Options : public Journey {
protected:
    const ScreenWindow main{screen, kMainTitle};
    const ScreenWindow options{screen, "Lyric Lantern CDG Player Options"};

    void OpenTone() { OpenTrack(WriteToneTrack("tone", 120.0, kTone)); }
    void ShowOptions()
    {
        hand.Key("Escape");
        ASSERT_TRUE(options.IsThereSoon());
        ASSERT_TRUE(options.HasKeyboardSoon());
    }
    Point At(std::pair<int, int> place) const { return options.At(place.first, place.second); }
    void Click(std::pair<int, int> place) { hand.Click(At(place)); }

    // Until both sides, or one of them, are as loud as that part of the tone.
    ::testing::AssertionResult AwaitSide(Side side, double partOfFull)
    {
        return AwaitLevel(side, kFull * partOfFull, kFull * 0.02);
    }
    ::testing::AssertionResult AwaitBothSides(double partOfFull)
    {
        const auto left = AwaitSide(Side::Left, partOfFull);
        return left ? AwaitSide(Side::Right, partOfFull) : left;
    }
    // Opens a menu over the window, of at least so many pixels.
    void OpenMenu(Point point, unsigned button, int pixels)
    {
        const QRect place = options.Area();
        const QImage before = eyes.Area(place);
        hand.Click(point, button);
        const auto isThere = [&] {
            const QImage now = eyes.Area(place);
            int differing = 0;
            for (int y = 0; y < now.height(); ++y) {
                for (int x = 0; x < now.width(); ++x)
                    differing += static_cast<int>(now.pixel(x, y) != before.pixel(x, y));
            }
            return differing > pixels;
        };
        ASSERT_TRUE(Eventually(isThere, kPatience));
        EXPECT_FALSE(options.IsTopmost()) << "it makes room";
    }
    // The frame at a corner of the window stands before everything else.
    bool IsSeen()
    {
        return Eventually([this] { return eyes.At(options.At(1, 1)) == kFrame; }, kPatience) &&
               eyes.At(options.At(410, 218)) == kFrame;
    }
    // The lantern is on the About panel only.
    bool ShowsAbout()
    {
        return Eventually([this] { return eyes.At(options.At(320, 70)) == kFrame; }, kPatience);
    }
    bool ShowsOptions()
    {
        return Eventually([this] { return eyes.At(options.At(125, 49)) == kFrame; }, kPatience);
    }
};

TEST_F(Options, TheBalanceSliderMovesTheSoundFromSideToSide)
{
    OpenTone();
    EXPECT_TRUE(AwaitBothSides(1.0));
    ShowOptions();
    Click({kSliderRight, HeightOf(Balance)});
    EXPECT_TRUE(AwaitSide(Side::Left, 0.0));
    EXPECT_TRUE(AwaitSide(Side::Right, 1.0));
    hand.Drag(options.At(kSliderRight, HeightOf(Balance)), options.At(60, HeightOf(Balance)));
    EXPECT_TRUE(AwaitSide(Side::Right, 0.0));
    EXPECT_TRUE(AwaitSide(Side::Left, 1.0));
    Click({kSliderMiddle, HeightOf(Balance)});
    EXPECT_TRUE(AwaitBothSides(1.0));
    Leave();
    EXPECT_EQ(home.Setting("balance"), "0");
}

TEST_F(Options, TheKeySliderChangesThePitch)
{
    OpenTone();
    ShowOptions();
    Click({kSliderRight, HeightOf(Key)});
    EXPECT_TRUE(AwaitTone(Up(10), 5.0));
    Click({kSliderLeft, HeightOf(Key)});
    EXPECT_TRUE(AwaitTone(Up(-10)));
    Click({kSliderMiddle, HeightOf(Key)});
    EXPECT_TRUE(AwaitTone(kTone, 1.0));
}

TEST_F(Options, TheSpeedSliderChangesThePace)
{
    OpenClicks();
    ShowOptions();
    Click({kSliderRight, HeightOf(Speed)});
    EXPECT_TRUE(AwaitPace(0.5 / 1.9));
    Click({kSliderMiddle, HeightOf(Speed)});
    EXPECT_TRUE(AwaitPace(0.5));
    Leave();
    EXPECT_EQ(home.Setting("speed"), "0");
}

TEST_F(Options, TheVolumeSliderChangesTheLevelAndTheWheelGoesOnWithIt)
{
    OpenTone();
    ShowOptions();
    Click({kSliderMiddle, HeightOf(Volume)});
    EXPECT_TRUE(AwaitBothSides(0.5));
    hand.Wheel(10); // over the slider
    EXPECT_TRUE(AwaitBothSides(0.7));
    hand.MoveTo(At(kBare));
    hand.Wheel(-5);
    EXPECT_TRUE(AwaitBothSides(0.6));
    hand.MoveTo(main.At(5, 100)); // and on the player
    hand.Wheel(-5);
    EXPECT_TRUE(AwaitBothSides(0.5));
    Click({kSliderLeft, HeightOf(Volume)});
    EXPECT_TRUE(AwaitSilence());
    Leave();
    EXPECT_EQ(home.Setting("volume"), "0");
}

TEST_F(Options, TheCustomButtonsSwitchToTheOtherValuesAndBack)
{
    OpenTone();
    ShowOptions();
    Click(CustomOf(Balance));
    EXPECT_TRUE(AwaitSide(Side::Right, 0.0));
    EXPECT_TRUE(AwaitSide(Side::Left, 1.0));
    Click(CustomOf(Balance));
    EXPECT_TRUE(AwaitBothSides(1.0));
    Click(CustomOf(Key));
    EXPECT_TRUE(AwaitTone(Up(-2)));
    Click(CustomOf(Key));
    EXPECT_TRUE(AwaitTone(kTone, 1.0));
    Click(CustomOf(Volume));
    EXPECT_TRUE(AwaitSilence());
    Click(CustomOf(Volume));
    EXPECT_TRUE(AwaitBothSides(1.0));
    Click(CustomOf(Speed));
    Leave();
    EXPECT_EQ(home.Setting("speed"), "20");
}

TEST_F(Options, TheKeysOfThePlayerWorkHere)
{
    OpenTone();
    ShowOptions();
    hand.Key("space");
    EXPECT_TRUE(AwaitSilence());
    hand.Key("space");
    EXPECT_TRUE(AwaitSound());
    Click({kSliderMiddle, HeightOf(Speed)}); // now a slider was the last to be touched
    hand.Key("m");
    EXPECT_TRUE(AwaitSilence());
    hand.Key("m");
    EXPECT_TRUE(AwaitSound());
    hand.HoldKey("m", 1500ms);
    EXPECT_TRUE(AwaitSilence()) << "a held key acts once";
    hand.Key("m");
    EXPECT_TRUE(AwaitSound());
}

TEST_F(Options, AnotherDeviceIsChosenHeardAndRemembered)
{
    sound.AddSink({"hall", "Hall Speakers"});
    const Ears hallEars(sound, "hall");
    const auto isHeardInHall = [&] {
        return Eventually([&] { return Level(hallEars.HeardLately(100ms)) > 0.1; }, kPatience,
                          20ms);
    };
    OpenTone();
    ShowOptions();
    const Point button = At(kDevice);
    OpenMenu(button, 1, 1000);
    hand.Click({button.x + 20, button.y + 18}); // the second item
    EXPECT_TRUE(isHeardInHall());
    EXPECT_TRUE(AwaitSilence()) << "the other device is silent";
    hand.Key("space");
    EXPECT_TRUE(
        Eventually([&] { return Level(hallEars.HeardLately(100ms)) == 0.0; }, kPatience, 20ms))
        << "the keys don't stay on the button";
    Click(kRemember);
    Leave();
    EXPECT_EQ(home.Setting("audiodevice"), "Hall Speakers");

    player.reset();
    StartPlayer({(folder / "tone.cdg").string()});
    EXPECT_TRUE(isHeardInHall());
    ShowOptions();
    Click(kRemember);
    Leave();
    EXPECT_EQ(home.Setting("audiodevice"), "");
}

TEST_F(Options, EscapeShowsAndHidesFromEitherWindow)
{
    OpenTone();
    ShowOptions();
    EXPECT_TRUE(IsSeen());
    hand.Key("Escape");
    EXPECT_TRUE(options.IsGoneSoon());
    EXPECT_TRUE(main.HasKeyboardSoon());
    ShowOptions();
    hand.Click(main.At(5, 100)); // gives the player the keyboard
    EXPECT_TRUE(main.HasKeyboardSoon());
    EXPECT_TRUE(IsSeen()) << "it stays in front";
    hand.Key("Escape");
    EXPECT_TRUE(options.IsGoneSoon());
    hand.HoldKey("Escape", 1500ms);
    EXPECT_TRUE(options.IsThereSoon()) << "a held key acts once";
}

TEST_F(Options, AboutAndBack)
{
    OpenTone();
    hand.Key("a");
    ASSERT_TRUE(options.IsThereSoon());
    EXPECT_TRUE(ShowsAbout());
    KeepPicture(eyes.Area(options.Area()), "about");
    Click(kBack);
    EXPECT_TRUE(ShowsOptions());
    KeepPicture(eyes.Area(options.Area()), "options");
    Click(kAbout);
    EXPECT_TRUE(ShowsAbout());
    hand.Key("Escape");
    EXPECT_TRUE(options.IsGoneSoon());
    ShowOptions();
    EXPECT_TRUE(ShowsOptions());
    Click(kAbout);
    EXPECT_TRUE(ShowsAbout());
    Click(kHide);
    EXPECT_TRUE(options.IsGoneSoon());
    ShowOptions();
    Click(kHide);
    EXPECT_TRUE(options.IsGoneSoon());
}

TEST_F(Options, ItComesUpInTheMiddleAndStaysWhereItWasPut)
{
    OpenTone();
    ShowOptions();
    EXPECT_EQ(options.Area(), QRect((1600 - 412) / 2, (1200 - 220) / 2, 412, 220));
    const auto corner = [this] { return options.Area().topLeft(); };
    // A label, the spectrum, and what is bare. The way to the first movement is not counted.
    for (const auto& place : {std::pair{60, 49}, kSpectrum, kBare}) {
        const QPoint before = corner();
        const Point from = At(place);
        hand.Drag(from, {from.x + 90, from.y - 60});
        EXPECT_TRUE(Eventually([&] { return corner().x() >= before.x() + 75; }, kPatience));
        std::this_thread::sleep_for(kQuiet);
        EXPECT_LE(corner().x(), before.x() + 90);
        EXPECT_LE(corner().y(), before.y() - 50);
        EXPECT_GE(corner().y(), before.y() - 60);
    }
    const QPoint end = corner();
    hand.Click(At(kBare));
    hand.MoveTo(main.At(5, 100));
    std::this_thread::sleep_for(kQuiet);
    EXPECT_EQ(corner(), end) << "a click doesn't take it along";
    hand.Key("Escape");
    EXPECT_TRUE(options.IsGoneSoon());
    ShowOptions();
    EXPECT_EQ(corner(), end);
}

TEST_F(Options, ItStandsInFrontOfTheFullScreenToo)
{
    OpenTone();
    ShowOptions();
    hand.Key("f");
    EXPECT_TRUE(Eventually([this] { return player->IsFullScreen(); }));
    EXPECT_TRUE(IsSeen());
    EXPECT_TRUE(options.StandsInFrontOf(main));
    hand.Click({5, 300});
    EXPECT_TRUE(main.HasKeyboardSoon());
    EXPECT_TRUE(IsSeen());
    hand.Key("Escape");
    EXPECT_TRUE(options.IsGoneSoon());
    ShowOptions();
    EXPECT_TRUE(IsSeen());
    Click({kSliderLeft, HeightOf(Volume)});
    EXPECT_TRUE(AwaitSilence());
    hand.Key("f");
    EXPECT_TRUE(Eventually([this] { return !player->IsFullScreen(); }));
    EXPECT_TRUE(IsSeen());
}

TEST_F(Options, MinimisingThePlayerHidesItAndItDoesNotComeBackByItself)
{
    OpenTone();
    ShowOptions();
    main.Minimise();
    EXPECT_TRUE(options.IsGoneSoon());
    EXPECT_TRUE(main.IsGoneSoon());
    EXPECT_TRUE(AwaitSound());
    EXPECT_TRUE(player->AnswerTime(kPatience)); // it has seen by now what became of its windows
    main.BringBack();
    EXPECT_TRUE(main.IsThereSoon());
    EXPECT_TRUE(main.HasKeyboardSoon());
    std::this_thread::sleep_for(kQuiet);
    EXPECT_FALSE(options.IsThere());
    ShowOptions();
    EXPECT_TRUE(IsSeen());
}

TEST_F(Options, ClosingItOnlyHidesIt)
{
    OpenTone();
    ShowOptions();
    options.AskToClose();
    EXPECT_TRUE(options.IsGoneSoon());
    std::this_thread::sleep_for(kQuiet);
    EXPECT_TRUE(player->Program().IsRunning());
    EXPECT_TRUE(main.HasKeyboardSoon());
    ShowOptions();
    EXPECT_TRUE(IsSeen());
    EXPECT_TRUE(options.IsTopmost());
}

TEST_F(Options, TheMenuComesUpInFrontOfItByTheRightButton)
{
    OpenTone();
    ShowOptions();
    OpenMenu(At({60, 20}), 3, 5000);
    hand.Key("Escape");
    EXPECT_TRUE(Eventually([this] { return options.IsTopmost(); }, kPatience));
    EXPECT_TRUE(options.IsThere()) << "the key was the menu's";
    EXPECT_TRUE(IsSeen());
}

} // namespace
} // namespace lantern::test
