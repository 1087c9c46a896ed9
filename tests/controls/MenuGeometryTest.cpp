// SPDX-License-Identifier: GPL-3.0-or-later
#include "MenuGeometry.h"

#include "MenuState.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace lantern {
namespace {

constexpr std::int32_t kItemHeight = 195; // 13 pixels of 15 twips

MenuGeometry Geometry(bool icons, bool sidePicture)
{
    return {{15, 15}, kItemHeight, icons, sidePicture};
}

TEST(MenuGeometry, ItsHeightIsThatOfTheItemsAndNinePixels)
{
    EXPECT_EQ(Geometry(false, false).Height(1), 195 + 135);
    EXPECT_EQ(Geometry(true, true).Height(17), 17 * 195 + 135);
}

TEST(MenuGeometry, ItsWidthLeavesRoomForIconsAndSidePicture)
{
    EXPECT_EQ(Geometry(true, true).Width(100), 15 * (100 + 52));
    EXPECT_EQ(Geometry(true, false).Width(100), 15 * (100 + 32));
    EXPECT_EQ(Geometry(false, true).Width(100), 15 * (100 + 32));
    EXPECT_EQ(Geometry(false, false).Width(100), 15 * (100 + 13));
}

TEST(MenuGeometry, TheWidestCaptionWrapsAroundInSixteenBits)
{
    EXPECT_EQ(Geometry(false, false).Width(2184), 32760 + 195);
    EXPECT_EQ(Geometry(false, false).Width(2185), 32775 - 65536 + 195);
    EXPECT_EQ(Geometry(false, false).Width(4400), 66000 - 65536 + 195);
}

TEST(MenuGeometry, TextIconsAndSeparatorsStandToTheRightOfWhatThereIs)
{
    EXPECT_EQ(Geometry(true, true).TextLeft(), 40);
    EXPECT_EQ(Geometry(true, false).TextLeft(), 22);
    EXPECT_EQ(Geometry(false, true).TextLeft(), 22);
    EXPECT_EQ(Geometry(false, false).TextLeft(), 5);
    EXPECT_EQ(Geometry(true, true).IconLeft(), 20);
    EXPECT_EQ(Geometry(true, false).IconLeft(), 4);
    EXPECT_EQ(Geometry(false, true).SeparatorLeft(), 21);
    EXPECT_EQ(Geometry(true, false).SeparatorLeft(), 4);
}

TEST(MenuGeometry, ABarIsARowHighFromOnePixelLeftOfTheText)
{
    EXPECT_EQ(Geometry(false, false).Bar(0, 100), (Box{4, 4, 95, 17}));
    EXPECT_EQ(Geometry(true, true).Bar(2, 100), (Box{39, 30, 95, 43}));
}

TEST(MenuGeometry, ASeparatorStandsInTheMiddleOfItsRow)
{
    EXPECT_EQ(Geometry(false, false).SeparatorTop(0), 10); // 60 + 97 twips
    EXPECT_EQ(Geometry(false, false).SeparatorTop(1), 23);
    const MenuGeometry even{{15, 15}, 14 * 15, false, false};
    EXPECT_EQ(even.SeparatorTop(0), 11);
}

TEST(MenuGeometry, AMenuThatWouldEndOffTheScreenMovesUpAndLeft)
{
    const QRect screen(0, 0, 1280, 800);
    EXPECT_EQ(KeptOnScreen({100, 100, 200, 300}, screen), QRect(100, 100, 200, 300));
    EXPECT_EQ(KeptOnScreen({1080, 500, 200, 300}, screen), QRect(1080, 500, 200, 300));
    EXPECT_EQ(KeptOnScreen({1081, 501, 200, 300}, screen), QRect(1080, 500, 200, 300));
    EXPECT_EQ(KeptOnScreen({-5, -5, 200, 300}, screen), QRect(-5, -5, 200, 300));
    EXPECT_EQ(KeptOnScreen({1275, 795, 1300, 900}, screen), QRect(-20, -100, 1300, 900));
    const QRect second(1280, 0, 1280, 800);
    EXPECT_EQ(KeptOnScreen({2500, 10, 200, 300}, second), QRect(2360, 10, 200, 300));
}

constexpr std::int32_t kMenuWidth = 113 * 15;
constexpr std::int32_t kMenuHeight = 48 * 15; // three items

std::optional<std::int16_t> HotAt(double x, double y, std::int16_t hotItem)
{
    return HotItemAt(Geometry(false, false), x * 15, y * 15, kMenuWidth, kMenuHeight, hotItem);
}

TEST(HotItem, RowsCountFromOneAndBeginHalfAnItemBeforeTheNearest)
{
    // (4 + y) / 13, to the nearest whole number: the first row is y = 4 to 16, less a little.
    for (int y = 0; y <= 48; ++y) {
        const int row = static_cast<int>(std::lround((4.0 + y) / 13.0));
        EXPECT_EQ(HotAt(50, y, 99), row) << y;
    }
    EXPECT_EQ(HotAt(50, 0, -1), 0); // the margin is no item
    EXPECT_EQ(HotAt(50, 3, -1), 1);
    EXPECT_EQ(HotAt(50, 48, -1), 4); // neither is this one
}

TEST(HotItem, ATieGoesToTheEvenRow)
{
    // 4 * 15 + y = 1.5 and 2.5 items of 195 twips.
    EXPECT_EQ(HotItemAt(Geometry(false, false), 300, 292.5 - 60, kMenuWidth, kMenuHeight, -1), 2);
    EXPECT_EQ(HotItemAt(Geometry(false, false), 300, 487.5 - 60, kMenuWidth, kMenuHeight, -1), 2);
}

TEST(HotItem, NothingIsRedrawnWithinARow)
{
    EXPECT_EQ(HotAt(50, 10, 1), std::nullopt);
    EXPECT_EQ(HotAt(80, 12, 1), std::nullopt);
    EXPECT_EQ(HotAt(80, 20, 1), 2);
}

TEST(HotItem, OutsideThereIsNone)
{
    for (const auto& [x, y] :
         {std::pair{-1, 10}, std::pair{50, -1}, std::pair{114, 10}, std::pair{50, 49}}) {
        EXPECT_EQ(HotAt(x, y, 1), MenuState::kNone);
        EXPECT_EQ(HotAt(x, y, MenuState::kNone), std::nullopt);
    }
}

TEST(HotItem, TheVeryEdgesChangeNothing)
{
    EXPECT_EQ(HotAt(0, 10, 2), std::nullopt);
    EXPECT_EQ(HotAt(113, 10, 2), std::nullopt);
    EXPECT_EQ(HotAt(1, 10, 2), 1);
    EXPECT_EQ(HotAt(112, 10, 2), 1);
}

TEST(HotItem, BelowTheLastOfAllItemsTheRowWrapsAroundInSixteenBits)
{
    const MenuGeometry geometry = Geometry(false, false);
    const std::int32_t height = geometry.Height(32767);
    EXPECT_EQ(HotItemAt(geometry, 300, height - 200, kMenuWidth, height, -1), 32767);
    EXPECT_EQ(HotItemAt(geometry, 300, height, kMenuWidth, height, -1), -32768);
}

TEST(HotItem, WherePixelsAreNotSquareTheTwipsAcrossDecide)
{
    const MenuGeometry geometry{{45, 15}, kItemHeight, false, false};
    // Down, 60 + 120 twips are row 1; across, 180 + 120 are row 2.
    EXPECT_EQ(HotItemAt(geometry, 300, 120, kMenuWidth, kMenuHeight, -1), 2);
    EXPECT_EQ(HotItemAt(geometry, 300, 120, kMenuWidth, kMenuHeight, 1), std::nullopt);
    EXPECT_EQ(HotItemAt(geometry, 300, 120, kMenuWidth, kMenuHeight, 2), 2); // again each time
}

TEST(MenuState, OnlyAnEnabledItemIsAChoice)
{
    MenuState state;
    state.items = {{.key = {}, .caption = QStringLiteral("a"), .enabled = true},
                   {.key = {}, .caption = QStringLiteral("b"), .enabled = false}};
    const std::array<std::pair<std::int16_t, bool>, 6> cases = {
        {{-1, false}, {0, false}, {1, true}, {2, false}, {3, false}, {32767, false}}};
    for (const auto& [hotItem, isChoice] : cases) {
        state.hotItem = hotItem;
        EXPECT_EQ(state.Choice() != nullptr, isChoice) << hotItem;
    }
}

} // namespace
} // namespace lantern
