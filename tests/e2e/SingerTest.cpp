// SPDX-License-Identifier: GPL-3.0-or-later
// The singer's screen beside the player's, on one display with two monitors.
#include "SingerJourney.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <vector>

namespace lantern::test {
namespace {

using Singer = SingerJourney;

TEST_F(Singer, ThePictureIsThereAloneAndTheKeyboardStays)
{
    ChosenBefore();
    ASSERT_NO_FATAL_FAILURE(OpenTone());
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
    EXPECT_TRUE(AwaitColour(kSingerBorder, kBorder));
    EXPECT_EQ(singer.Area(), kSingerArea);
    const QRect place = main.Area();
    EXPECT_TRUE(QRect(QPoint(0, 0), kOwnSize).contains(place));
    EXPECT_TRUE(main.HasKeyboard());

    hand.Click(kSingerMiddle);
    EXPECT_TRUE(eyes.IsPointerBlank());
    hand.Key("m");
    EXPECT_TRUE(AwaitSilence()) << "keys still reach the player";
    hand.Key("m");
    EXPECT_TRUE(AwaitSound());
    EXPECT_TRUE(main.HasKeyboard());

    main.Minimise();
    EXPECT_TRUE(main.IsGoneSoon());
    EXPECT_TRUE(singer.IsThere());
    main.BringBack();
    EXPECT_TRUE(main.HasKeyboardSoon());
    hand.Key("f");
    EXPECT_TRUE(
        Eventually([&] { return main.Area() == QRect(QPoint(0, 0), kOwnSize); }, kPatience));
    EXPECT_EQ(singer.Area(), kSingerArea);
    hand.Key("f");
    EXPECT_TRUE(Eventually([&] { return main.Area() == place; }, kPatience));
    Leave();
    EXPECT_FALSE(singer.IsThere());
}

TEST_F(Singer, ItGoesWithTheScreenAndComesBackWithIt)
{
    ChosenBefore();
    Unplug();
    ASSERT_NO_FATAL_FAILURE(OpenTone());
    EXPECT_FALSE(singer.IsThere());
    const QRect place = main.Area();
    for (int round = 0; round < 3; ++round) {
        Plug();
        ASSERT_TRUE(singer.IsThereSoon());
        EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
        EXPECT_TRUE(Eventually([&] { return singer.Area() == kSingerArea; }, kPatience));
        Unplug();
        EXPECT_TRUE(singer.IsGoneSoon());
        EXPECT_TRUE(AwaitColour(kSingerMiddle, kNothing));
    }
    EXPECT_EQ(main.Area(), place);
    EXPECT_TRUE(main.HasKeyboard());
    EXPECT_TRUE(AwaitTone(440.0));
    Plug();
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
}

TEST_F(Singer, AScreenThatShowsThePlayerTooIsNotCovered)
{
    ChosenBefore();
    ASSERT_NO_FATAL_FAILURE(OpenTone());
    ASSERT_TRUE(singer.IsThereSoon());
    Unplug();
    EXPECT_TRUE(singer.IsGoneSoon());
    SetMonitors({"--setmonitor", "stage", "800/200x600/150+100+0", "none"}); // a twin
    std::this_thread::sleep_for(1500ms);
    EXPECT_FALSE(singer.IsThere());
    EXPECT_TRUE(main.HasKeyboard());
    Unplug();
    Plug();
    EXPECT_TRUE(singer.IsThereSoon());
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
}

TEST_F(Singer, TheKeyboardAloneChoosesItAndItIsRemembered)
{
    ASSERT_NO_FATAL_FAILURE(OpenTone());
    EXPECT_EQ(eyes.At(kSingerMiddle), kNothing) << "it is off at first";
    hand.Key("F2");
    ASSERT_TRUE(stage.HasKeyboardSoon());
    Keys("shift+Tab", 2);
    Keys("Down", 2); // from none to the player's own, and to the other
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
    EXPECT_TRUE(stage.HasKeyboardSoon());
    // It goes in the middle of the flashes, and comes back among them.
    Keys("Tab", 3);
    hand.Key("space");
    ASSERT_TRUE(AwaitColour(kSingerMiddle, kNothing));
    ASSERT_TRUE(AwaitColour(kSingerMiddle, 0xFFFFFFFF));
    Unplug();
    EXPECT_TRUE(singer.IsGoneSoon());
    Plug();
    EXPECT_TRUE(AwaitColour(kSingerMiddle, 0xFFFFFFFF));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
    hand.Key("Escape");
    EXPECT_TRUE(main.HasKeyboardSoon());
    EXPECT_EQ(ReadFile(StageFile()), "singerscreen\tstage|||\r\n");

    singer.AskToClose();
    EXPECT_TRUE(singer.IsGoneSoon());
    Leave();
    ASSERT_NO_FATAL_FAILURE(OpenTone());
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture)) << "remembered all the same";
}

TEST_F(Singer, BothPicturesChangeInOneAndTheSameMoment)
{
    constexpr double kSeconds = 60.0;
    PacketSheet packets(kSeconds);
    packets.Put(1, Packet::LoadColoursLow({0xFF000000, kPicture, kBorder, 0xFFFFFFFF}));
    packets.Put(2, Packet::MemoryPreset(1));
    packets.Put(3, Packet::BorderPreset(2));
    for (int i = 0; i < 80; ++i)
        packets.Put(1200 + 150 * i, Packet::MemoryPreset(i % 2 == 0 ? 3 : 1));
    packets.Write(folder / "changes.cdg");
    SoundSheet(kSeconds).WriteWav(folder / "changes.wav");
    ChosenBefore();
    ASSERT_NO_FATAL_FAILURE(StartPlayer({(folder / "changes.cdg").string()}));
    ASSERT_TRUE(AwaitPicture(kPicture));
    ASSERT_TRUE(AwaitColour(kSingerMiddle, kPicture));
    const QPoint own = main.Area().center();
    eyes.Watch({Point{own.x(), own.y()}, kSingerMiddle});
    std::this_thread::sleep_for(6s);
    std::vector<std::vector<Eyes::Change>> seen(2);
    for (const Eyes::Change& change : eyes.StopWatching())
        seen[change.point].push_back(change);
    const std::size_t changes = std::min(seen[0].size(), seen[1].size());
    ASSERT_GT(changes, 4U);
    std::vector<double> apart;
    for (std::size_t i = 1; i < changes; ++i) {
        EXPECT_EQ(seen[0][i].colour, seen[1][i].colour);
        apart.push_back(std::abs(Milliseconds(seen[0][i].firstSeen - seen[1][i].firstSeen)));
    }
    std::ranges::nth_element(apart, apart.begin() + std::ssize(apart) / 2);
    EXPECT_LT(apart[apart.size() / 2], 30.0) << "one painting, not the next one";

    main.Minimise();
    EXPECT_TRUE(main.IsGoneSoon());
    for (const QRgb colour : {0xFFFFFFFF, kPicture, 0xFFFFFFFF})
        EXPECT_TRUE(AwaitColour(kSingerMiddle, colour)) << "the singer sings on";
    main.BringBack();
    EXPECT_TRUE(main.HasKeyboardSoon());
}

// Somebody puts the window elsewhere again and again, as a window manager does that knows better.
TEST_F(Singer, WhereAskingDoesNotHelpItTakesItsPlace)
{
    ChosenBefore();
    ASSERT_NO_FATAL_FAILURE(OpenTone());
    ASSERT_TRUE(AwaitColour(kSingerMiddle, kPicture));
    const QRect place = main.Area();
    const XConnection connection(screen.DisplayName());
    const auto isLeftAlone = [&] {
        for (const unsigned long id : connection.Property(connection.Root(), "_NET_CLIENT_LIST")) {
            if (connection.TextProperty(id, "_NET_WM_NAME") != kSingerTitle)
                continue;
            XMoveWindow(connection.Display(), id, 300, 200);
            XSync(connection.Display(), False);
            return false;
        }
        return true;
    };
    EXPECT_TRUE(Eventually(isLeftAlone, kPatience, 50ms));
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kPicture));
    EXPECT_TRUE(AwaitColour(kSingerBorder, kBorder));
    EXPECT_TRUE(main.HasKeyboardSoon());
    EXPECT_EQ(main.Area(), place);
    Unplug();
    EXPECT_TRUE(AwaitColour(kSingerMiddle, kNothing));
    Plug();
    EXPECT_TRUE(singer.IsThereSoon()) << "asked again, as at first";
}

} // namespace
} // namespace lantern::test
