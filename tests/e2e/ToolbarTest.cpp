// SPDX-License-Identifier: GPL-3.0-or-later
// The toolbar of the real program, by hand.
#include "Journey.h"

#include <cmath>

namespace lantern::test {
namespace {

constexpr QRgb kAmber = 0xFFFFAB08;     // what is drawn, and the ground of what is pressed or down
constexpr QRgb kHotGround = 0xFF3D2902; // behind what lies under the pointer

constexpr unsigned kMouseBack = 8;
constexpr unsigned kMouseForward = 9;

class ToolbarByHand : public Journey {
protected:
    enum class Group { Left, Right };
    struct Button {
        Group group;
        Point corner; // in pixels, within the group
        Point middle; // of the button, from its corner
    };
    static constexpr Point kLarge = {12, 12};
    static constexpr Button kPlayOrPause = {Group::Left, {56, 4}, kLarge};
    static constexpr Button kStop = {Group::Left, {80, 4}, kLarge};
    static constexpr Button kQuickPlay = {Group::Left, {104, 4}, kLarge};
    // At the line where the two meet, which lies on both.
    static constexpr Button kForward10 = {Group::Left, {136, 6}, {6, 5}};
    static constexpr Button kBack10 = {Group::Left, {131, 6}, {10, 5}};
    static constexpr Button kOptions = {Group::Left, {181, 4}, kLarge};
    static constexpr Button kWheelBalance = {Group::Left, {1, 1}, {12, 5}};
    static constexpr Button kSize1 = {Group::Right, {0, 7}, {6, 10}};
    static constexpr Button kLarger = {Group::Right, {96, 4}, {6, 6}};
    static constexpr Button kExit = {Group::Right, {179, 4}, kLarge};
    static constexpr Button kMute = {Group::Right, {79, 30}, {9, 6}};

    QRect Bar() const
    {
        const QRect window = player->WindowArea();
        return {window.x() + 10, window.y() + window.height() - 58, window.width() - 20, 48};
    }
    Point At(const Button& button, Point inside) const
    {
        const QRect bar = Bar();
        const int left = button.group == Group::Left ? 0 : bar.width() - 207;
        return {bar.x() + left + button.corner.x + inside.x, bar.y() + button.corner.y + inside.y};
    }
    void Click(const Button& button) { hand.Click(At(button, button.middle)); }
    // On the ground of a large button, beside what is drawn on it.
    Point GroundOf(const Button& button) const { return At(button, {12, 3}); }

    // From 0 at the left end to 1.
    Point OnSlider(double part) const
    {
        const QRect bar = Bar();
        const int width = bar.width() - 167;
        return {bar.x() + 33 + 2 + static_cast<int>(std::lround((width - 4) * part)), bar.y() + 37};
    }
    Point OnVolume(double part) const
    {
        const QRect bar = Bar();
        const int left = bar.x() + bar.width() - 207 + 100;
        return {left + 2 + static_cast<int>(std::lround(96 * part)), bar.y() + 37};
    }

    // One tone for the first twenty seconds, another one to the end at sixty.
    void OpenTwoTones()
    {
        SoundSheet tones(60);
        tones.Add(
            {.start = 0, .length = 20, .frequency = 440, .left = kLoudness, .right = kLoudness});
        tones.Add(
            {.start = 20, .length = 40, .frequency = 880, .left = kLoudness, .right = kLoudness});
        OpenTrack(WritePlainTrack("tones", 60, tones));
    }
};

TEST_F(ToolbarByHand, AButtonLightsUpUnderThePointerAndTellsWhatItIsFor)
{
    StartPlayer();
    const Point ground = GroundOf(kExit);
    hand.MoveTo({5, 5});
    ASSERT_TRUE(AwaitColour(ground, 0xFF000000));
    // The tip stands to the lower right of the pointer, and reaches beyond the window.
    const QRect bar = Bar();
    const QRect beside(bar.right() + 14, bar.y() + 16, 50, 50);
    const QImage before = eyes.Area(beside);
    hand.MoveTo(At(kExit, kExit.middle));
    EXPECT_TRUE(AwaitColour(ground, kHotGround));
    EXPECT_TRUE(Eventually([&] { return eyes.Area(beside) != before; }, kPatience));
    KeepPicture(eyes.Screen(), "toolbar-tip");
    hand.MoveTo({5, 5});
    EXPECT_TRUE(AwaitColour(ground, 0xFF000000));
}

TEST_F(ToolbarByHand, PlayAndPauseTakeTurnsAndTheKeysGoOnWorking)
{
    OpenTwoTones();
    ASSERT_TRUE(AwaitSound());
    KeepPicture(eyes.Screen(), "toolbar-playing");
    Click(kPlayOrPause);
    EXPECT_TRUE(AwaitSilence());
    Click(kPlayOrPause);
    EXPECT_TRUE(AwaitSound());
    hand.Key("space");
    EXPECT_TRUE(AwaitSilence());
    hand.Key("space");
    EXPECT_TRUE(AwaitSound());
    Click(kWheelBalance);
    hand.Key("space");
    EXPECT_TRUE(AwaitSilence());
    hand.Click(OnVolume(0.9));
    hand.Key("space");
    EXPECT_TRUE(AwaitSound());
}

TEST_F(ToolbarByHand, StopEndsTheTrackAndItsButton)
{
    OpenTwoTones();
    ASSERT_TRUE(AwaitSound());
    Click(kStop);
    EXPECT_TRUE(AwaitSilence());
    hand.MoveTo(At(kQuickPlay, kQuickPlay.middle));
    // Neither is enabled any more: nothing lights up.
    EXPECT_NE(eyes.At(GroundOf(kQuickPlay)), kHotGround);
    hand.MoveTo(At(kStop, kStop.middle));
    EXPECT_NE(eyes.At(GroundOf(kStop)), kHotGround);
    Click(kPlayOrPause);
    EXPECT_TRUE(AwaitTone(440));
}

TEST_F(ToolbarByHand, TheSliderMovesThroughTheTrack)
{
    OpenTwoTones();
    ASSERT_TRUE(AwaitTone(440));
    hand.Click(OnSlider(0.6));
    EXPECT_TRUE(AwaitTone(880));
    hand.Drag(OnSlider(0.6), OnSlider(0.05));
    EXPECT_TRUE(AwaitTone(440));
    // The wheel now goes on with the position.
    hand.Wheel(22);
    EXPECT_TRUE(AwaitTone(880));
}

TEST_F(ToolbarByHand, EachHalfOfTheSkipButtonsIsOne)
{
    OpenTwoTones();
    ASSERT_TRUE(AwaitTone(440));
    Click(kForward10);
    Click(kForward10);
    EXPECT_TRUE(AwaitTone(880));
    Click(kBack10);
    Click(kBack10);
    Click(kBack10);
    EXPECT_TRUE(AwaitTone(440));
}

TEST_F(ToolbarByHand, VolumeAndMuteAreHeard)
{
    OpenTwoTones();
    ASSERT_TRUE(AwaitSound());
    Click(kMute);
    EXPECT_TRUE(AwaitSilence());
    EXPECT_TRUE(AwaitColour(At(kMute, {9, 1}), kAmber)); // down
    for (const unsigned which : {kMouseBack, kMouseForward}) {
        hand.Click(At(kMute, kMute.middle), which);
        EXPECT_FALSE(AwaitSound(1s)) << which;
    }
    Click(kMute);
    EXPECT_TRUE(AwaitSound());
    hand.Click(OnVolume(0.0));
    EXPECT_TRUE(AwaitSilence());
    hand.Wheel(20);
    EXPECT_TRUE(AwaitSound());
}

TEST_F(ToolbarByHand, TheWheelTurnsWhatItsButtonSays)
{
    OpenTwoTones();
    ASSERT_TRUE(AwaitSound());
    Click(kWheelBalance);
    EXPECT_TRUE(AwaitColour(At(kWheelBalance, {12, 1}), kAmber)); // down
    hand.Wheel(-25);
    EXPECT_TRUE(AwaitLevel(Side::Right, 0.0, 0.01));
    EXPECT_TRUE(AwaitSound());
}

TEST_F(ToolbarByHand, ANarrowWindowHidesTheSizes)
{
    StartPlayer();
    Click(kSize1);
    EXPECT_TRUE(Eventually([&] { return player->WindowArea().width() == 338; }, kPatience));
    hand.MoveTo({5, 5});
    // What stands in its place, at the right end of the left group.
    EXPECT_TRUE(AwaitColour(At(kLarger, {6, 5}), kAmber));
    KeepPicture(eyes.Screen(), "toolbar-narrow");
    Click(kLarger);
    EXPECT_TRUE(Eventually([&] { return player->WindowArea().width() == 626; }, kPatience));
}

TEST_F(ToolbarByHand, TheOptionsButtonIsDownWhileTheyAreOpen)
{
    StartPlayer();
    Click(kOptions);
    EXPECT_TRUE(AwaitColour(GroundOf(kOptions), kAmber));
    EXPECT_TRUE(Eventually([&] { return player->Windows().size() == 2; }, kPatience));
    KeepPicture(eyes.Screen(), "toolbar-options");
    Click(kOptions);
    EXPECT_TRUE(Eventually([&] { return eyes.At(GroundOf(kOptions)) != kAmber; }, kPatience));
}

TEST_F(ToolbarByHand, TheExitButtonEndsTheProgram)
{
    StartPlayer();
    Click(kExit);
    EXPECT_TRUE(Eventually([&] { return !player->Program().IsRunning(); }, kPatience));
}

} // namespace
} // namespace lantern::test
