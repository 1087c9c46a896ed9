// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <cmath>

namespace lantern::test {
namespace {

class PlayerWindow : public Journey {
protected:
    void OpenSilently() { OpenTrack(WriteToneTrack("song", 60.0)); }
    bool AwaitPictureSize(const QSize& size)
    {
        return Eventually([&] { return PictureArea().size() == size; }, kPatience, 50ms);
    }
    // As a mouse moves: the first movement, from which on the window follows, is a small one.
    void DragGently(Point from, Point distance)
    {
        hand.MoveTo(from);
        hand.Press();
        hand.MoveTo({from.x + 1, from.y + 1});
        for (int step = 1; step <= 10; ++step)
            hand.MoveTo({from.x + distance.x * step / 10, from.y + distance.y * step / 10});
        hand.Release();
    }
    bool AwaitArea(const QRect& area)
    {
        return Eventually([&] {
            const QRect now = player->WindowArea();
            return std::abs(now.x() - area.x()) <= 1 && std::abs(now.y() - area.y()) <= 1 &&
                   std::abs(now.width() - area.width()) <= 1 &&
                   std::abs(now.height() - area.height()) <= 1;
        });
    }
    // The largest area of three to two within the given one, by the rules of the layout.
    static QSize LargestPicture(const QSize& within)
    {
        return 2 * within.width() > 3 * within.height()
                   ? QSize(within.height() * 3 / 2, within.height())
                   : QSize(within.width(), within.width() * 2 / 3);
    }
};

TEST_F(PlayerWindow, TheDigitKeysGiveTheExactSizes)
{
    OpenSilently();
    for (const int size : {1, 3, 4, 5, 2}) {
        hand.Key(std::to_string(size));
        EXPECT_TRUE(AwaitPictureSize({288 * size, 192 * size}))
            << size << ": " << PictureArea().width() << " x " << PictureArea().height();
        const QRect window = player->WindowArea();
        EXPECT_NEAR(window.center().x(), screen.Width() / 2, 1);
        EXPECT_NEAR(window.center().y(), screen.Height() / 2, 1);
    }
    hand.Key("ctrl+2");
    EXPECT_TRUE(AwaitPictureSize({720, 480}));
}

TEST_F(PlayerWindow, PlusAndMinusWalkTheSizes)
{
    OpenSilently();
    hand.Key("equal");
    EXPECT_TRUE(AwaitPictureSize({864, 576}));
    Keys("minus", 2);
    EXPECT_TRUE(AwaitPictureSize({288, 192}));
    hand.Key("minus");
    EXPECT_TRUE(Eventually([&] { return player->IsFullScreen(); }));
    hand.Key("KP_Subtract");
    EXPECT_TRUE(AwaitPictureSize({1440, 960}));
    EXPECT_FALSE(player->IsFullScreen());
    hand.Key("KP_Add");
    EXPECT_TRUE(Eventually([&] { return player->IsFullScreen(); }));
}

TEST_F(PlayerWindow, FromMaximisedItGoesToFullScreenAndBackToItsSize)
{
    OpenSilently();
    const QRect before = player->WindowArea();
    for (int round = 0; round < 2; ++round) {
        player->AskToMaximise();
        ASSERT_TRUE(Eventually([&] { return player->IsMaximised(); }));
        hand.Key("f");
        ASSERT_TRUE(Eventually([&] { return player->IsFullScreen(); }));
        hand.Key("f");
        EXPECT_TRUE(AwaitArea(before)) << player->WindowArea().width();
        EXPECT_TRUE(AwaitPictureSize({576, 384}));
        EXPECT_FALSE(player->IsMaximised());
    }
}

TEST_F(PlayerWindow, FromMaximisedADigitKeyGivesTheExactSize)
{
    OpenSilently();
    for (const char* const digit : {"3", "2"}) {
        player->AskToMaximise();
        ASSERT_TRUE(Eventually([&] { return player->IsMaximised(); }));
        hand.Key(digit);
        const int size = *digit - '0';
        EXPECT_TRUE(AwaitPictureSize({288 * size, 192 * size})) << PictureArea().width();
        EXPECT_FALSE(player->IsMaximised());
    }
}

TEST_F(PlayerWindow, FullScreenFillsTheScreenAndComesBack)
{
    OpenSilently();
    const QRect before = player->WindowArea();
    hand.Key("f");
    const QRect whole(0, 0, screen.Width(), screen.Height());
    ASSERT_TRUE(Eventually([&] { return player->WindowArea() == whole; }));
    EXPECT_TRUE(player->IsFullScreen());
    // The picture fills the screen but for a margin of 20.
    const QSize size = LargestPicture(QSize(whole.width() - 40, whole.height() - 40));
    EXPECT_TRUE(Eventually(
        [&] {
            const QSize now = PictureArea().size();
            return std::abs(now.width() - size.width()) <= 1 &&
                   std::abs(now.height() - size.height()) <= 1;
        },
        kPatience, 50ms))
        << PictureArea().width() << " x " << PictureArea().height();
    EXPECT_EQ(eyes.At({5, 5}), kBorder);
    EXPECT_EQ(eyes.At({whole.right() - 5, whole.bottom() - 5}), kBorder);
    KeepPicture(eyes.Screen(), "full-screen");

    hand.Key("r");
    EXPECT_TRUE(Eventually([&] { return player->WindowArea() == before; }));
    EXPECT_TRUE(AwaitPictureSize({576, 384}));

    hand.DoubleClick(PicturePoint());
    EXPECT_TRUE(Eventually([&] { return player->WindowArea() == whole; }));
    hand.DoubleClick({screen.Width() / 2, screen.Height() / 2});
    EXPECT_TRUE(Eventually([&] { return player->WindowArea() == before; }));
}

TEST_F(PlayerWindow, AFullScreenByTheWindowManagerComesBackAsItWasByAKey)
{
    OpenSilently();
    const QRect before = player->WindowArea();
    const QRect wanted(30, 40, 800, 600);
    const QPoint move = wanted.topLeft() - before.topLeft();
    DragGently(PicturePoint(), {move.x(), move.y()});
    ASSERT_TRUE(AwaitArea(before.translated(move)));
    const QPoint corner = player->WindowArea().bottomRight();
    const QPoint growth = wanted.bottomRight() - corner;
    DragGently({corner.x() - 1, corner.y() - 1}, {growth.x(), growth.y()});
    ASSERT_TRUE(AwaitArea(wanted)) << player->WindowArea().width();
    const QRect normal = player->WindowArea();

    const QRect whole(0, 0, screen.Width(), screen.Height());
    player->AskForFullScreen(true);
    ASSERT_TRUE(Eventually([&] { return player->WindowArea() == whole; }));
    ASSERT_TRUE(player->IsFullScreen());
    hand.Key("f");
    EXPECT_TRUE(Eventually([&] { return player->WindowArea() == normal; }))
        << player->WindowArea().width() << " x " << player->WindowArea().height() << " at "
        << player->WindowArea().x() << ", " << player->WindowArea().y();
    EXPECT_FALSE(player->IsFullScreen());

    hand.Key("f");
    ASSERT_TRUE(Eventually([&] { return player->WindowArea() == whole; }));
    player->AskForFullScreen(false);
    EXPECT_TRUE(Eventually([&] { return player->WindowArea() == normal; }));
    EXPECT_FALSE(player->IsFullScreen());
}

TEST_F(PlayerWindow, TheBarComesUpInFullScreenAsThePointerLeavesThePicture)
{
    OpenSilently();
    hand.Key("f");
    const QRect whole(0, 0, screen.Width(), screen.Height());
    ASSERT_TRUE(Eventually([&] { return player->WindowArea() == whole; }));
    const Point centre = {whole.center().x(), whole.center().y()};
    const QRect strip(0, whole.bottom() - 52, whole.width(), 48);
    const auto isBare = [&] {
        return BoundsOfColour(eyes.Area(strip), kBorder).size() == strip.size();
    };
    hand.MoveTo(centre);
    ASSERT_TRUE(Eventually(isBare, 3s, 50ms));
    hand.MoveTo({centre.x, whole.bottom() - 2});
    // The bar is black; the strip around it keeps the border's colour.
    EXPECT_TRUE(Eventually(
        [&] { return BoundsOfColour(eyes.Area(strip), 0xFF000000).width() > whole.width() - 20; },
        3s, 50ms));
    KeepPicture(eyes.Screen(), "full-screen-bar");
    hand.MoveTo(centre);
    EXPECT_TRUE(Eventually(
        [&] { return BoundsOfColour(eyes.Area(strip), 0xFF000000).isEmpty() && isBare(); }, 3s,
        50ms));
}

TEST_F(PlayerWindow, ItMovesWithTheMouse)
{
    OpenSilently();
    const QRect before = player->WindowArea();
    DragGently(PicturePoint(), {120, 60});
    EXPECT_TRUE(AwaitArea(before.translated(120, 60)))
        << player->WindowArea().x() - before.x() << ", " << player->WindowArea().y() - before.y();
}

TEST_F(PlayerWindow, ItIsSizedByItsFrameButNotBelowItsMinimum)
{
    OpenSilently();
    const QRect before = player->WindowArea();
    DragGently({before.right() - 1, before.bottom() - 1}, {-600, -450});
    const QRect smallest(before.topLeft(), QSize(338, 295));
    EXPECT_TRUE(AwaitArea(smallest)) << player->WindowArea().width();
    EXPECT_TRUE(AwaitPictureSize({288, 192}));
    DragGently({smallest.right() - 1, smallest.bottom() - 1}, {289, 193});
    EXPECT_TRUE(AwaitPictureSize({576, 384}))
        << PictureArea().width() << " x " << PictureArea().height();
}

TEST_F(PlayerWindow, TheMenuRunsCommandsWhileTheMusicGoesOn)
{
    OpenSilently();
    const Point at = PicturePoint();
    hand.Click(at, 3);
    ASSERT_TRUE(Eventually([&] { return BoundsOfColour(eyes.Screen(), 0xFF323232).isValid(); }));
    KeepPicture(eyes.Screen(), "menu");
    EXPECT_TRUE(AwaitSound());
    hand.Key("Escape");
    EXPECT_TRUE(Eventually([&] { return !BoundsOfColour(eyes.Screen(), 0xFF323232).isValid(); }));
    EXPECT_TRUE(AwaitSound());
    hand.Click(at, 3);
    ASSERT_TRUE(Eventually([&] { return BoundsOfColour(eyes.Screen(), 0xFF323232).isValid(); }));
    hand.Click({at.x + 40, at.y - 5 + 4 + 13 + 6}); // the second row: Pause
    EXPECT_TRUE(AwaitSilence(3s));
}

TEST_F(PlayerWindow, AMessageStandsForThreeSeconds)
{
    OpenSilently();
    std::this_thread::sleep_for(4s); // whatever the start said has gone
    const QRect picture = PictureArea();
    const QRect strip(picture.left(), picture.bottom() + 4, picture.width(), 14);
    const QImage without = eyes.Area(strip);
    double shownFor = 0.0;
    // More than once if need be: the machine may have been at something else.
    for (int attempt = 0; attempt < 3 && std::abs(shownFor - 3000.0) > 250.0; ++attempt) {
        const Moment pressed = Clock::now();
        hand.Key("c");
        ASSERT_TRUE(Eventually([&] { return eyes.Area(strip) != without; }, kPatience));
        KeepPicture(eyes.Screen(), "message");
        ASSERT_TRUE(Eventually([&] { return eyes.Area(strip) == without; }, kPatience, 10ms));
        shownFor = Milliseconds(Clock::now() - pressed);
    }
    EXPECT_NEAR(shownFor, 3000.0, 250.0);
}

TEST_F(PlayerWindow, TheSizeIsRemembered)
{
    OpenSilently();
    hand.Key("3");
    ASSERT_TRUE(AwaitPictureSize({864, 576}));
    Leave();
    EXPECT_EQ(home.Setting("zoom"), "3");
    OpenSilently();
    EXPECT_TRUE(AwaitPictureSize({864, 576}));
}

TEST_F(PlayerWindow, AltF4AndTheWindowManagerCloseIt)
{
    StartPlayer();
    hand.Key("alt+F4");
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
    StartPlayer();
    player->AskToClose();
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
}

} // namespace
} // namespace lantern::test
