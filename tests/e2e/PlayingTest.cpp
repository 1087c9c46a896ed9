// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashTrack.h"
#include "Journey.h"

namespace lantern::test {
namespace {

class Playing : public Journey {
protected:
    void OpenFlashes()
    {
        ASSERT_NO_FATAL_FAILURE(StartPlayer({track.Write(folder.Path()).string()}));
        hand.Key("Page_Up"); // to the start, however long the window took to come
        ASSERT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour()));
        picture = PicturePoint(FlashTrack::FirstPictureColour());
    }
    // Where the track is, exact to two of its flashes.
    double Position() { return track.SecondsAtPictureColour(eyes.At(picture)).value_or(-1.0); }
    // Acts, and expects the track to be so much further at once.
    template <typename Action>
    ::testing::AssertionResult Moves(double seconds, Action&& action)
    {
        const double before = Position();
        action();
        if (Eventually([&] { return std::abs(Position() - before - seconds) < 4.0; }, 4s))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "from " << before << " to " << Position();
    }
    bool AwaitBlank() { return AwaitColour(picture, 0xFF000000U); }

    const FlashTrack track{120.0};
    Point picture;
};

TEST_F(Playing, ATrackOnTheCommandLineIsSeenAndHeard)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    EXPECT_TRUE(AwaitTone(440.0, 2.0));
    const QRect area = PictureArea();
    EXPECT_EQ(area.size(), QSize(576, 384));
    EXPECT_EQ(eyes.At({area.left() - 3, area.center().y()}), kBorder);
    KeepPicture(eyes.Screen(), "playing");
}

TEST_F(Playing, APathFromTheFolderOfTheUserMayHaveBlanks)
{
    std::filesystem::create_directory(folder / "my songs");
    OpenTrack(WriteToneTrack("my songs/one  two", 60.0));
}

TEST_F(Playing, PauseFreezesThePictureAndSilencesTheSound)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    ASSERT_TRUE(AwaitSound());
    hand.Key("p");
    ASSERT_TRUE(AwaitSilence());
    const QRgb frozen = eyes.At(picture);
    for (int i = 0; i < 20; ++i) {
        std::this_thread::sleep_for(100ms);
        ASSERT_EQ(eyes.At(picture), frozen);
        ASSERT_EQ(Level(ears.HeardLately(100ms)), 0.0);
    }
    const double before = Position();
    hand.Key("space");
    ASSERT_TRUE(Eventually([&] { return Position() > before; }, kPatience));
    EXPECT_LT(Position(), before + 5.0);
}

TEST_F(Playing, StopBlanksThePictureAndPlayBeginsAnew)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    EXPECT_TRUE(Moves(10.0, [&] { hand.Key("Right"); }));
    hand.Key("period");
    EXPECT_TRUE(AwaitBlank());
    EXPECT_TRUE(AwaitSilence());
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(eyes.At(picture), 0xFF000000U);

    hand.Key("p");
    EXPECT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour()));
}

TEST_F(Playing, ArrowsAndPagesSkip)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    EXPECT_TRUE(Moves(60.0, [&] { hand.Key("Page_Down"); }));
    EXPECT_TRUE(Moves(20.0, [&] { Keys("Right", 2); }));
    EXPECT_TRUE(Moves(-10.0, [&] { hand.Key("Left"); }));
    EXPECT_TRUE(Moves(-60.0, [&] { hand.Key("Page_Up"); }));
    // Beyond the start is the start, and the track goes on.
    hand.Key("Page_Up");
    EXPECT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour()));
    EXPECT_TRUE(Eventually([&] { return Position() > 0.5; }, kPatience));
    // Beyond the end is the end: nothing is seen and nothing is heard.
    Keys("Page_Down", 2);
    EXPECT_TRUE(AwaitBlank());
    EXPECT_TRUE(AwaitSilence());
}

TEST_F(Playing, AHeldArrowRepeatsAndAHeldPageDoesNot)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    // The keyboard repeats a held key after half a second.
    hand.PressKey("Right");
    EXPECT_TRUE(Eventually([&] { return Position() > 25.0; }, kPatience));
    hand.ReleaseKey("Right");
    Keys("Page_Up", 3);
    ASSERT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour()));
    EXPECT_TRUE(Moves(60.0, [&] { hand.HoldKey("Page_Down", 1500ms); }));
}

TEST_F(Playing, TheWheelMovesAlongTheTrackAfterT)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    hand.Key("t");
    hand.MoveTo(picture);
    EXPECT_TRUE(Moves(20.0, [&] { hand.Wheel(20); }));
    EXPECT_TRUE(Moves(-10.0, [&] { hand.Wheel(-10); }));
}

TEST_F(Playing, TheEndOfTheTrackStopsAndBlanks)
{
    OpenTrack(WriteToneTrack("short", 2.5));
    const Point point = PicturePoint();
    EXPECT_TRUE(AwaitColour(point, 0xFF000000U));
    EXPECT_TRUE(AwaitSilence());
    hand.Key("p");
    EXPECT_TRUE(AwaitPicture(kPicture));
    EXPECT_TRUE(AwaitSound());
}

TEST_F(Playing, ALaterStartHandsItsTrackOver)
{
    constexpr QRgb kOther = 0xFFAA3300;
    const std::filesystem::path other = WriteToneTrack("other", 60.0, 660.0, kOther);
    OpenTrack(WriteToneTrack("song", 60.0));

    Player later(screen, sound.Environment(), home, {.arguments = {other.string()}});
    EXPECT_EQ(later.Program().WaitForExit(kPatience), 0);
    EXPECT_TRUE(AwaitPicture(kOther));
    EXPECT_TRUE(AwaitTone(660.0));

    Player withoutTrack(screen, sound.Environment(), home);
    EXPECT_EQ(withoutTrack.Program().WaitForExit(kPatience), 0);
    std::this_thread::sleep_for(500ms);
    EXPECT_TRUE(AwaitPicture(kOther, 100ms));
    EXPECT_TRUE(AwaitTone(660.0));
}

TEST_F(Playing, TheLastTrackIsPlayedAgainByThePlayKey)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    Leave();
    EXPECT_EQ(home.Setting("lastplayed"), (folder / "song.cdg").string());

    StartPlayer();
    EXPECT_TRUE(AwaitSilence());
    hand.Key("p");
    EXPECT_TRUE(AwaitPicture(kPicture));
    EXPECT_TRUE(AwaitSound());
}

} // namespace
} // namespace lantern::test
