// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeskJourney.h"

#include <cmath>
#include <numbers>

namespace lantern::test {
namespace {

constexpr double kStepSeconds = 0.5;
constexpr double kLowestNote = 500.0;
constexpr double kNoteDistance = 8.0;

// A short note every half second, each a little higher than the one before: what is heard tells
// where the track is and how fast it goes.
class MouseByHand : public DeskJourney {
protected:
    void OpenScale()
    {
        SoundSheet sheet(kTrackSeconds);
        for (int i = 0; i < static_cast<int>(kTrackSeconds / kStepSeconds) - 1; ++i)
            sheet.Add({.start = kStepSeconds * (i + 0.25),
                       .length = 0.1,
                       .frequency = kLowestNote + kNoteDistance * i});
        OpenTrack(WritePlainTrack("scale", kTrackSeconds, sheet));
    }
    std::vector<Burst> NotesHeardLately() const
    {
        return FindBursts(ears.HeardLately(4s), Recording::kRate);
    }
    // A pointer that was blank stays so for a moment where the program is slow: what counts is what
    // comes of it, not the first look.
    bool AwaitPointerBlank(bool isBlank)
    {
        const auto holds = [&] { return eyes.IsPointerBlank() == isBlank; };
        if (!Eventually(holds, 5s))
            return false;
        std::this_thread::sleep_for(100ms);
        return holds();
    }
    // Where the track was at the last whole note.
    double SecondsHeard() const
    {
        const std::vector<Burst> notes = NotesHeardLately();
        if (notes.size() < 2)
            return -1.0;
        return (notes[notes.size() - 2].frequency - kLowestNote) / kNoteDistance * kStepSeconds;
    }
    bool AwaitSecondsHeard(double seconds)
    {
        return Eventually([&] { return std::abs(SecondsHeard() - seconds) < 6.0; }, 6s, 50ms);
    }
};

TEST_F(MouseByHand, TheWheelIsHeardInEachOfItsModes)
{
    const double full = kLoudness / std::numbers::sqrt2;
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    const auto turn = [this](int notches) {
        hand.MoveTo(PicturePoint());
        hand.Wheel(notches);
    };
    turn(-10); // the volume, as at every start
    EXPECT_TRUE(AwaitLevel(Side::Right, full * 0.8, full * 0.01));
    turn(10);
    EXPECT_TRUE(AwaitLevel(Side::Right, full, full * 0.01));

    hand.Click(Desk().Button(31));
    turn(-10);
    EXPECT_TRUE(AwaitLevel(Side::Right, full * 0.6, full * 0.01));
    EXPECT_TRUE(AwaitLevel(Side::Left, full, full * 0.01));
    turn(10);
    EXPECT_TRUE(AwaitLevel(Side::Right, full, full * 0.01));

    hand.Click(Desk().Button(32));
    turn(5);
    EXPECT_TRUE(AwaitTone(kTone * std::pow(2.0, 5.0 / 12.0), 4.0));
    turn(-5);
    EXPECT_TRUE(AwaitTone(kTone));
    Leave();

    ASSERT_NO_FATAL_FAILURE(OpenScale());
    hand.Click(Desk().Button(33));
    turn(40);
    EXPECT_TRUE(AwaitSecondsHeard(SecondsOfSlider()));
    EXPECT_GT(SecondsOfSlider(), 35.0);
    turn(-20);
    EXPECT_TRUE(AwaitSecondsHeard(SecondsOfSlider()));
    EXPECT_LT(SecondsOfSlider(), 35.0);

    hand.Click(Desk().Button(35));
    turn(10);
    EXPECT_TRUE(AwaitPace(kStepSeconds / 1.2));
    turn(-20);
    EXPECT_TRUE(AwaitPace(kStepSeconds / 0.8));
}

TEST_F(MouseByHand, TheSlidersAreDraggedAndTheWheelGoesOnFromThere)
{
    ASSERT_NO_FATAL_FAILURE(OpenScale());
    const QRect position = Desk().PositionSlider();
    hand.Drag(SliderPoint(position, 0.0), SliderPoint(position, 0.6));
    EXPECT_TRUE(
        Eventually([this] { return std::abs(SecondsOfSlider() - 122.0) < 4.0; }, kPatience));
    EXPECT_TRUE(AwaitSecondsHeard(SecondsOfSlider()));
    hand.MoveTo(PicturePoint());
    EXPECT_TRUE(Moves(-20.0, [this] { hand.Wheel(-20); })) << "the wheel moves along the track";
    // To the start, where a track does not stop.
    hand.Drag(SliderPoint(position, 0.5), SliderPoint(position, 0.0));
    EXPECT_TRUE(AwaitSecondsHeard(SecondsOfSlider()));
    EXPECT_LT(SecondsOfSlider(), 20.0);
    Leave();

    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    const double full = kLoudness / std::numbers::sqrt2;
    const QRect volume = Desk().VolumeSlider();
    hand.Key("b"); // the wheel is for something else
    hand.Drag(SliderPoint(volume, 1.0), SliderPoint(volume, 0.5));
    EXPECT_TRUE(AwaitLevel(Side::Left, full * 0.5, full * 0.03));
    EXPECT_NEAR(SliderPart(eyes.Area(volume)), 0.5, 0.03);
    hand.MoveTo(PicturePoint());
    hand.Wheel(-10);
    EXPECT_TRUE(AwaitLevel(Side::Left, full * 0.3, full * 0.03)) << "the wheel changes the volume";
    EXPECT_TRUE(AwaitLevel(Side::Right, full * 0.3, full * 0.03));
    hand.Click(SliderPoint(volume, 0.0));
    EXPECT_TRUE(AwaitSilence());
}

TEST_F(MouseByHand, TheSizesGoRoundBothWays)
{
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    // In the narrow window of size 1 these two are still there.
    for (const int button : {41, 42}) {
        int size = 2;
        for (int i = 0; i < 6; ++i) {
            size = (size + (button == 41 ? 1 : 5)) % 6;
            hand.MoveTo({5, screen.Height() / 2});
            hand.MoveTo({screen.Width() / 2, screen.Height() - 3}); // brings the bar in full screen
            if (player->IsFullScreen()) {
                EXPECT_TRUE(AwaitColour(Desk().Body(), 0xFF000000U));
            }
            hand.Click(Desk().Button(button));
            if (size == 0)
                EXPECT_TRUE(AwaitFullScreen(true)) << button;
            else
                EXPECT_TRUE(AwaitPictureSize(QSize(288, 192) * size)) << button << ' ' << size;
        }
    }
}

TEST_F(MouseByHand, TheBarComesAndGoesInFullScreen)
{
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    const QRect before = player->WindowArea();
    hand.Click(Desk().Button(10));
    ASSERT_TRUE(AwaitFullScreen(true));
    const Point body = Desk().Body();
    hand.MoveTo({screen.Width() / 2, screen.Height() / 2});
    EXPECT_TRUE(AwaitColour(body, kBorder)) << "no bar over the picture";
    const QSize alone = PictureArea().size();
    hand.MoveTo({screen.Width() / 2, screen.Height() - 3});
    EXPECT_TRUE(AwaitColour(body, 0xFF000000U)) << "no bar";
    EXPECT_LE(PictureArea().height(), alone.height());
    KeepPicture(eyes.Screen(), "full-screen-bar");
    hand.Click(Desk().Button(2));
    EXPECT_TRUE(AwaitSilence());
    hand.MoveTo({screen.Width() / 2, screen.Height() / 2});
    EXPECT_TRUE(AwaitColour(body, kBorder)) << "the bar stays";
    hand.MoveTo({screen.Width() / 2, screen.Height() - 3});
    EXPECT_TRUE(AwaitColour(body, 0xFF000000U)) << "the bar does not come back";
    hand.Click(Desk().Button(20));
    EXPECT_TRUE(AwaitFullScreen(false));
    EXPECT_TRUE(Eventually([&] { return player->WindowArea() == before; }, kPatience));
    EXPECT_TRUE(AwaitPictureSize({576, 384}));

    hand.DoubleClick(PicturePoint());
    EXPECT_TRUE(AwaitFullScreen(true));
    hand.DoubleClick({screen.Width() / 2, screen.Height() / 2});
    EXPECT_TRUE(AwaitFullScreen(false));
}

TEST_F(MouseByHand, InFullScreenThePointerIsSeenOnTheBarEvenAfterAMenu)
{
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    hand.Key("f");
    ASSERT_TRUE(AwaitFullScreen(true));
    const Point middle = {screen.Width() / 2, screen.Height() / 2};
    hand.MoveTo(middle);
    EXPECT_TRUE(AwaitPointerBlank(true)) << "over the picture";
    hand.MoveTo({screen.Width() / 2, screen.Height() - 3});
    const Point body = Desk().Body();
    ASSERT_TRUE(AwaitColour(body, 0xFF000000U)) << "no bar";
    // So near the lower edge the menu lies above the pointer.
    const auto isMenuOpen = [&] {
        return BoundsOfColour(eyes.Area({body.x - 20, body.y - 300, 200, 250}), kMenuFrame)
            .isValid();
    };
    hand.Click(body, 3);
    ASSERT_TRUE(Eventually(isMenuOpen, kPatience)) << "no menu";
    hand.Key("Escape");
    ASSERT_TRUE(Eventually([&] { return !isMenuOpen(); }, kPatience));
    const Point onBar[] = {body,
                           Desk().Button(0),
                           Desk().Button(31),
                           Desk().Button(8),
                           SliderPoint(Desk().PositionSlider(), 0.5),
                           SliderPoint(Desk().VolumeSlider(), 0.5)};
    for (const Point& point : onBar) {
        hand.MoveTo(point);
        EXPECT_TRUE(AwaitPointerBlank(false)) << point.x << ", " << point.y;
    }
    hand.MoveTo(middle);
    EXPECT_TRUE(AwaitPointerBlank(true)) << "over the picture again";
    hand.Key("f");
    ASSERT_TRUE(AwaitFullScreen(false));
    EXPECT_TRUE(AwaitPointerBlank(false)) << "in a window";
}

TEST_F(MouseByHand, TheWindowIsMovedByItsBodyAndNotInFullScreen)
{
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    for (const bool byBar : {true, false}) {
        const QRect before = player->WindowArea();
        const Point from = byBar ? Desk().Body() : PicturePoint();
        hand.Drag(from, {from.x - 150, from.y - 90});
        // The window manager takes over at the first movement: that much it may stay behind.
        EXPECT_TRUE(Eventually(
            [&] {
                const QPoint moved = player->WindowArea().topLeft() - before.topLeft();
                return std::abs(moved.x() + 150) <= 16 && std::abs(moved.y() + 90) <= 16;
            },
            kPatience))
            << byBar;
        EXPECT_EQ(player->WindowArea().size(), before.size());
        std::this_thread::sleep_for(500ms); // no double click
    }
    hand.Key("f");
    ASSERT_TRUE(AwaitFullScreen(true));
    hand.Drag({800, 600}, {700, 500});
    EXPECT_TRUE(player->AnswerTime());
    EXPECT_TRUE(AwaitFullScreen(true));
}

// The demo song as it stands on the screen, in another program.
TEST_F(MouseByHand, ThePictureOfTheDemoSongIsPastedInAnotherProgram)
{
    ASSERT_NO_FATAL_FAILURE(
        StartPlayer({(std::filesystem::path(LANTERN_DEMO_FOLDER) / "demo.cdg").string()}));
    ASSERT_TRUE(AwaitSound());
    hand.Key("Right"); // into the first verse
    hand.Key("Right");
    hand.Click(Desk().Button(2));
    ASSERT_TRUE(AwaitSilence());
    hand.Click(Desk().Button(12));
    QImage pasted;
    ASSERT_TRUE(Eventually(
        [&] {
            pasted = PastedImage();
            return pasted.size() == QSize(288, 192);
        },
        kPatience, 100ms));
    const QImage shown = eyes.Area(Desk().Picture());
    EXPECT_EQ(shown.size(), QSize(576, 384));
    EXPECT_TRUE(shown ==
                pasted.scaled(shown.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation));
    EXPECT_GT(pasted.convertToFormat(QImage::Format_Indexed8).colorCount(), 4);
    KeepPicture(eyes.Screen(), "demo-song");
}

} // namespace
} // namespace lantern::test
