// SPDX-License-Identifier: GPL-3.0-or-later
// The skin, a button and the menu under a real window manager, by hand.
#include "Eyes.h"
#include "Hand.h"
#include "InteractiveMove.h"
#include "Lent.h"
#include "SkinLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>

namespace lantern::test {
namespace {

constexpr QRgb kOrange = 0xFFFFAB08; // the outermost pixels of the skin and of the menu
constexpr QRgb kGreen = 0xFF00FF00;  // the button
constexpr QRect kWindow(400, 250, 320, 240);
constexpr QSize kMinimum(200, 150);
constexpr Point kInMiddle{560, 370};

class ChromeByHand : public ::testing::Test {
protected:
    void SetUp() override { Start(); }
    void TearDown() override
    {
        if (HasFailure())
            std::cout << "The window said:\n" << ReadFile(log) << '\n';
    }

    void Start()
    {
        ASSERT_NO_FATAL_FAILURE(StartAt("1"));
        ASSERT_TRUE(Eventually([&] { return WindowArea() == kWindow; }, 10s, 50ms));
    }
    // With that many device pixels to a pixel of the layout.
    void StartAt(const char* ratio)
    {
        host.reset();
        hand.MoveTo({5, 400});
        EnvironmentChanges environment = screen.Environment();
        environment.emplace_back("QT_QPA_PLATFORM", "xcb");
        environment.emplace_back("QT_FONT_DPI", "96");
        environment.emplace_back("QT_SCALE_FACTOR", ratio);
        host = std::make_unique<Process>(Process::Command{
            .arguments = {CONTROL_HOST_PATH}, .environment = environment, .log = log});
        ASSERT_TRUE(Eventually([&] { return !ButtonArea().isEmpty() && HasKeyboard(); }, 10s, 50ms))
            << "the window did not come";
    }
    QRect ButtonArea() { return BoundsOfColour(eyes.Screen(), kGreen); }
    QRect WindowArea() { return BoundsOfColour(eyes.Screen(), kOrange); }
    bool HasKeyboard() const
    {
        const XConnection connection(screen.DisplayName());
        const auto active = connection.Property(connection.Root(), "_NET_ACTIVE_WINDOW");
        return !active.empty() && active.front() != 0;
    }
    std::vector<std::string> Lines(const std::string& start) const
    {
        std::vector<std::string> lines;
        std::istringstream said(ReadFile(log));
        for (std::string line; std::getline(said, line);) {
            if (line.starts_with(start))
                lines.push_back(line.substr(start.size()));
        }
        return lines;
    }
    // Where the menu says that it opened, for the number of times so far.
    QRect OpenedMenu(std::size_t times = 1) const
    {
        QRect area;
        if (Eventually([&] { return Lines("open ").size() >= times; }, 3s)) {
            int x = 0, y = 0, width = 0, height = 0;
            std::istringstream(Lines("open ").back()) >> x >> y >> width >> height;
            area = QRect(x, y, width, height);
        }
        return area;
    }
    QRect OpenAt(Point point)
    {
        hand.MoveTo(point);
        hand.Key("m");
        return OpenedMenu();
    }
    bool AwaitClosed(std::size_t times = 1) const
    {
        return Eventually([&] { return Lines("closed").size() == times; }, 3s);
    }
    static Point ItemPoint(const QRect& menu, int item)
    {
        return {menu.left() + 20, menu.top() + 4 + 13 * (item - 1) + 6};
    }

    const std::shared_ptr<XServer> lentScreen = Lend<XServer>();
    const XServer& screen = *lentScreen;
    const ScratchFolder folder;
    const std::filesystem::path log = folder / "host.log";
    Hand hand{screen};
    Eyes eyes{screen};
    std::unique_ptr<Process> host;
};

Point PointOf(std::size_t element)
{
    const int column = static_cast<int>(element % 3);
    const int row = static_cast<int>(element / 3);
    constexpr std::array kAcross = {2, 160, 317};
    constexpr std::array kDown = {2, 120, 237};
    return {kWindow.left() + kAcross[static_cast<std::size_t>(column)],
            kWindow.top() + kDown[static_cast<std::size_t>(row)]};
}

// The window manager takes over at the first movement: that much it may stay behind.
bool IsNear(const QRect& seen, const QRect& expected)
{
    const auto differs = [](int one, int other) { return std::abs(one - other) > 8; };
    return !differs(seen.left(), expected.left()) && !differs(seen.top(), expected.top()) &&
           !differs(seen.right(), expected.right()) && !differs(seen.bottom(), expected.bottom());
}

TEST_F(ChromeByHand, EachElementMovesOrSizesTheWindow)
{
    constexpr QPoint kDistance(48, 36);
    for (std::size_t i = 0; i < kSkinElements; ++i) {
        if (i > 0) {
            ASSERT_NO_FATAL_FAILURE(Start());
        }
        const HitCode code = kSkin[i].hitCode;
        const QRect expected = DraggedGeometry(kWindow, kDistance, code, kMinimum, {5000, 5000});
        const Point from = PointOf(i);
        hand.Drag(from, {from.x + kDistance.x(), from.y + kDistance.y()});
        EXPECT_TRUE(Eventually([&] { return IsNear(WindowArea(), expected); }, 2s, 50ms)) << i;
        const QRect after = WindowArea();
        const Qt::Edges edges = EdgesOf(code);
        if (edges) {
            EXPECT_EQ(after.left() == kWindow.left(), !edges.testFlag(Qt::LeftEdge)) << i;
            EXPECT_EQ(after.right() == kWindow.right(), !edges.testFlag(Qt::RightEdge)) << i;
            EXPECT_EQ(after.top() == kWindow.top(), !edges.testFlag(Qt::TopEdge)) << i;
            EXPECT_EQ(after.bottom() == kWindow.bottom(), !edges.testFlag(Qt::BottomEdge)) << i;
        } else {
            EXPECT_EQ(after.size(), kWindow.size());
        }
        // It has let go.
        hand.MoveTo({from.x + 150, from.y + 100});
        EXPECT_EQ(WindowArea(), after) << i;
    }
}

TEST_F(ChromeByHand, AnEdgeStopsAtTheMinimumSize)
{
    const Point from = PointOf(0);
    hand.Drag(from, {from.x + 300, from.y + 220});
    EXPECT_TRUE(Eventually([&] { return WindowArea().size() == kMinimum; }, 2s, 50ms));
    EXPECT_EQ(WindowArea().bottomRight(), kWindow.bottomRight());
}

TEST_F(ChromeByHand, AClickNeitherMovesTheWindowNorHoldsOnToIt)
{
    for (int i = 0; i < 3; ++i)
        hand.Click(kInMiddle);
    EXPECT_TRUE(Eventually([&] { return Lines("up 1").size() == 3; }, 2s));
    hand.MoveTo({700, 500});
    hand.MoveTo({900, 600});
    EXPECT_EQ(WindowArea(), kWindow);
}

TEST_F(ChromeByHand, AfterADragTheWindowCanBeDraggedAgain)
{
    hand.Drag(kInMiddle, {kInMiddle.x + 48, kInMiddle.y + 36});
    ASSERT_TRUE(Eventually([&] { return WindowArea().left() > kWindow.left() + 30; }, 2s, 50ms));
    hand.Drag(kInMiddle, {kInMiddle.x - 48, kInMiddle.y - 36});
    EXPECT_TRUE(Eventually([&] { return IsNear(WindowArea(), kWindow); }, 2s, 50ms));
}

TEST_F(ChromeByHand, AButtonLightsUpAndIsPressedInEachOfItsCornersAtAnyRatio)
{
    std::size_t times = 0;
    for (const char* ratio : {"1", "1.5"}) {
        ASSERT_NO_FATAL_FAILURE(StartAt(ratio));
        const QRect outside = ButtonArea().adjusted(-2, -2, 2, 2);
        const QRect inside = ButtonArea().adjusted(1, 1, -1, -1);
        for (const auto& [in, out] : {std::pair{inside.topLeft(), outside.topLeft()},
                                      {inside.topRight(), outside.topRight()},
                                      {inside.bottomLeft(), outside.bottomLeft()},
                                      {inside.bottomRight(), outside.bottomRight()}}) {
            ++times;
            hand.Click({in.x(), in.y()});
            EXPECT_TRUE(Eventually([&] { return Lines("over").size() == times; }, 3s)) << ratio;
            EXPECT_TRUE(Eventually([&] { return Lines("click").size() == times; }, 3s)) << ratio;
            hand.MoveTo({out.x(), out.y()});
            EXPECT_TRUE(Eventually([&] { return Lines("out").size() == times; }, 3s)) << ratio;
        }
    }
}

TEST_F(ChromeByHand, EachPixelAtTheEdgesOfAButtonBelongsToTheButtonOrToTheSkin)
{
    ASSERT_NO_FATAL_FAILURE(StartAt("1.5"));
    const QRect area = ButtonArea();
    std::size_t times = 0;
    for (int i = -2; i <= 2; ++i) {
        for (const Point at :
             {Point{area.left() + i, area.center().y()}, Point{area.right() + i, area.center().y()},
              Point{area.center().x(), area.top() + i},
              Point{area.center().x(), area.bottom() + i}}) {
            hand.Click(at);
            ++times;
            ASSERT_TRUE(Eventually(
                [&] { return Lines("click").size() + Lines("up 1").size() == times; }, 3s))
                << at.x << ", " << at.y;
            // It is lit where it is pressed, and nowhere else.
            EXPECT_EQ(Lines("over").size(), Lines("click").size()) << at.x << ", " << at.y;
            hand.MoveTo({area.right() + 20, area.center().y()});
            EXPECT_TRUE(
                Eventually([&] { return Lines("out").size() == Lines("over").size(); }, 3s));
        }
    }
}

TEST_F(ChromeByHand, TheMenuOpensAtEachCornerOfTheScreen)
{
    const int right = screen.Width() - 1;
    const int bottom = screen.Height() - 1;
    std::size_t times = 0;
    for (const Point corner :
         {Point{0, 0}, Point{right, 0}, Point{0, bottom}, Point{right, bottom}}) {
        hand.MoveTo(corner);
        hand.Key("m");
        const QRect menu = OpenedMenu(++times);
        ASSERT_FALSE(menu.isEmpty());
        EXPECT_EQ(menu.left(), corner.x == 0 ? -5 : right + 1 - menu.width());
        EXPECT_EQ(menu.top(), corner.y == 0 ? -5 : bottom + 1 - menu.height());
        const Point farCorner = {corner.x == 0 ? menu.right() : menu.left(),
                                 corner.y == 0 ? menu.bottom() : menu.top()};
        EXPECT_TRUE(Eventually([&] { return eyes.At(farCorner) == kOrange; }, 2s));
        hand.Key("Escape");
        EXPECT_TRUE(AwaitClosed(times));
    }
    EXPECT_TRUE(Lines("chosen").empty());
}

TEST_F(ChromeByHand, TheReleaseThatOpensTheMenuChoosesNothingAndTheNextClickDoes)
{
    hand.Click(kInMiddle, 3);
    const QRect menu = OpenedMenu();
    ASSERT_EQ(menu.topLeft(), QPoint(kInMiddle.x - 5, kInMiddle.y - 5));
    std::this_thread::sleep_for(200ms);
    EXPECT_TRUE(Lines("closed").empty());
    hand.Click(ItemPoint(menu, 1));
    EXPECT_TRUE(AwaitClosed());
    EXPECT_EQ(Lines("chosen "), (std::vector<std::string>{"1 PLAY"}));
}

TEST_F(ChromeByHand, TheMenuIsLeftByEscapeAndTakenByEnter)
{
    QRect menu = OpenAt(kInMiddle);
    hand.MoveTo(ItemPoint(menu, 1));
    hand.Key("Escape");
    ASSERT_TRUE(AwaitClosed());
    EXPECT_TRUE(Lines("chosen").empty());
    hand.MoveTo(kInMiddle);
    hand.Key("m");
    menu = OpenedMenu(2);
    hand.MoveTo(ItemPoint(menu, 1));
    hand.Key("Return");
    ASSERT_TRUE(AwaitClosed(2));
    EXPECT_EQ(Lines("chosen "), (std::vector<std::string>{"1 PLAY"}));
}

TEST_F(ChromeByHand, TheMenuOpensAgainFromInsideItemClicked)
{
    hand.Click(ItemPoint(OpenAt(kInMiddle), 2));
    const QRect again = OpenedMenu(2);
    ASSERT_FALSE(again.isEmpty());
    hand.Click(ItemPoint(again, 1));
    ASSERT_TRUE(AwaitClosed(2)); // the inner one and the outer one
    EXPECT_EQ(Lines("chosen "), (std::vector<std::string>{"2 AGAIN", "1 PLAY"}));
}

TEST_F(ChromeByHand, AClickBesideTheMenuOnlyClosesIt)
{
    for (const Point outside : {Point{420, 460}, Point{1200, 40}}) {
        const std::size_t before = Lines("closed").size();
        hand.MoveTo(kInMiddle);
        hand.Key("m");
        ASSERT_FALSE(OpenedMenu(before + 1).isEmpty());
        hand.Click(outside);
        EXPECT_TRUE(AwaitClosed(before + 1));
    }
    EXPECT_TRUE(Lines("chosen").empty());
    EXPECT_TRUE(Lines("up").empty()); // the window below is told nothing of it
}

TEST_F(ChromeByHand, ADisabledItemClosesTheMenuWithoutAChoice)
{
    hand.Click(ItemPoint(OpenAt(kInMiddle), 4));
    EXPECT_TRUE(AwaitClosed());
    EXPECT_TRUE(Lines("chosen").empty());
}

} // namespace
} // namespace lantern::test
