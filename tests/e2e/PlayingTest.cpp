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
        ASSERT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour()));
        picture = PicturePoint(FlashTrack::FirstPictureColour());
    }
    // Where the track is, exact to two of its flashes.
    double Position() { return track.SecondsAtPictureColour(eyes.At(picture)).value_or(-1.0); }

    const FlashTrack track{120.0};
    Point picture;
};

TEST_F(Playing, ATrackOnTheCommandLineIsSeenAndHeard)
{
    OpenTrack(WriteToneTrack("song", 20.0));
    const std::vector<float> heard = ears.HeardLately(500ms);
    EXPECT_NEAR(Frequency(heard, Recording::kRate), 440.0, 2.0);
    const QRect area = PictureArea();
    EXPECT_EQ(area.size(), QSize(576, 384));
    EXPECT_EQ(eyes.At({area.left() - 3, area.center().y()}), kBorder);
    KeepPicture(eyes.Screen(), "playing");
}

TEST_F(Playing, APathFromTheFolderOfTheUserMayHaveBlanks)
{
    std::filesystem::create_directory(folder / "my songs");
    OpenTrack(WriteToneTrack("my songs/one  two", 20.0));
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
    std::this_thread::sleep_for(2500ms);
    EXPECT_GT(Position(), before);
    EXPECT_LT(Position(), before + 5.0);
}

TEST_F(Playing, StopBlanksThePictureAndPlayBeginsAnew)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    hand.Key("Right");
    std::this_thread::sleep_for(2s);
    ASSERT_GT(Position(), 5.0);
    hand.Key("period");
    EXPECT_TRUE(Eventually([&] { return eyes.At(picture) == 0xFF000000U; }, 500ms));
    EXPECT_TRUE(AwaitSilence());
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(eyes.At(picture), 0xFF000000U);

    hand.Key("p");
    EXPECT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour(), 1s));
}

TEST_F(Playing, ArrowsAndPagesSkip)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    std::this_thread::sleep_for(500ms);
    hand.Key("Page_Down");
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 60.0, 3.0);
    Keys("Right", 2);
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 80.0, 4.0);
    hand.Key("Left");
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 70.0, 4.0);
    hand.Key("Page_Up");
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 11.0, 4.0);
    // Beyond the start is the start, and the track goes on.
    hand.Key("Page_Up");
    EXPECT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour(), 1s));
    std::this_thread::sleep_for(2500ms);
    EXPECT_GT(Position(), 0.5);
    // Beyond the end is the end: nothing is seen and nothing is heard.
    Keys("Page_Down", 2);
    EXPECT_TRUE(Eventually([&] { return eyes.At(picture) == 0xFF000000U; }, 500ms));
    EXPECT_TRUE(AwaitSilence());
}

TEST_F(Playing, AHeldArrowRepeatsAndAHeldPageDoesNot)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    // The keyboard repeats a held key after half a second.
    hand.HoldKey("Right", 750ms);
    std::this_thread::sleep_for(100ms);
    EXPECT_GT(Position(), 15.0);
    Keys("Page_Up", 2);
    ASSERT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour(), 1s));
    hand.HoldKey("Page_Down", 1500ms);
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 61.0, 4.0);
}

TEST_F(Playing, TheWheelMovesAlongTheTrackAfterT)
{
    ASSERT_NO_FATAL_FAILURE(OpenFlashes());
    hand.Key("t");
    hand.MoveTo(picture);
    hand.Wheel(20);
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 21.5, 3.0);
    hand.Wheel(-10);
    std::this_thread::sleep_for(100ms);
    EXPECT_NEAR(Position(), 12.5, 4.0);
}

TEST_F(Playing, TheEndOfTheTrackStopsAndBlanks)
{
    OpenTrack(WriteToneTrack("short", 2.5));
    const Point point = PicturePoint();
    EXPECT_TRUE(Eventually([&] { return eyes.At(point) == 0xFF000000U; }, 5s));
    EXPECT_TRUE(AwaitSilence());
    hand.Key("p");
    EXPECT_TRUE(AwaitPicture(kPicture));
    EXPECT_TRUE(AwaitSound());
}

TEST_F(Playing, ALaterStartHandsItsTrackOver)
{
    constexpr QRgb kOther = 0xFFAA3300;
    const std::filesystem::path other = WriteToneTrack("other", 20.0, 660.0, kOther);
    OpenTrack(WriteToneTrack("song", 20.0));

    Player later(screen, sound.Environment(), home, {.arguments = {other.string()}});
    EXPECT_EQ(later.Program().WaitForExit(3s), 0);
    EXPECT_TRUE(AwaitPicture(kOther, 2s));
    EXPECT_TRUE(Eventually(
        [&] {
            return std::abs(Frequency(ears.HeardLately(200ms), Recording::kRate) - 660.0) < 5.0;
        },
        2s));

    Player withoutTrack(screen, sound.Environment(), home);
    EXPECT_EQ(withoutTrack.Program().WaitForExit(3s), 0);
    std::this_thread::sleep_for(500ms);
    EXPECT_TRUE(AwaitPicture(kOther, 100ms));
    EXPECT_NEAR(Frequency(ears.HeardLately(200ms), Recording::kRate), 660.0, 5.0);
}

TEST_F(Playing, TheLastTrackIsPlayedAgainByThePlayKey)
{
    OpenTrack(WriteToneTrack("song", 20.0));
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
