// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolbarLayout.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <set>
#include <vector>

namespace lantern {
namespace {

TwipRect RectOf(BarFrame frame)
{
    switch (frame) {
    case BarFrame::TBar:
        return kTBar;
    case BarFrame::TBar2:
        return kTBar2;
    default:
        return kTBarZoom;
    }
}

TwipRect PlaceOf(const ToolbarButton& button)
{
    for (const SharedPlace& place : kSharedPlaces) {
        if (place.moved == button.command)
            return ToolbarButtonOf(place.onto).rect;
    }
    return button.rect;
}

bool Overlap(const TwipRect& a, const TwipRect& b)
{
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

TEST(ToolbarTable, EveryCommandStandsForOneButton)
{
    std::set<CommandId> commands;
    std::set<ButtonFace> faces;
    for (const ToolbarButton& button : kToolbarButtons) {
        EXPECT_TRUE(commands.insert(button.command).second) << NumberOf(button.command);
        EXPECT_TRUE(faces.insert(button.face).second) << NumberOf(button.command);
    }
    EXPECT_EQ(commands.size(), 27U);
}

TEST(ToolbarTable, EveryPictureFillsItsButton)
{
    for (const ToolbarButton& button : kToolbarButtons) {
        const auto* const drawing =
            std::ranges::find(kButtonDrawings, button.face, &ButtonDrawing::face);
        ASSERT_NE(drawing, kButtonDrawings.end());
        EXPECT_EQ(button.rect.width, drawing->width * 15) << NumberOf(button.command);
        EXPECT_EQ(button.rect.height, drawing->height * 15) << NumberOf(button.command);
    }
}

TEST(ToolbarTable, EveryButtonLiesWithinItsParent)
{
    for (const ToolbarButton& button : kToolbarButtons) {
        const TwipRect parent = RectOf(button.parent);
        const TwipRect place = PlaceOf(button);
        EXPECT_GE(place.left, 0) << NumberOf(button.command);
        EXPECT_GE(place.top, 0) << NumberOf(button.command);
        EXPECT_LE(place.left + place.width, parent.width) << NumberOf(button.command);
        EXPECT_LE(place.top + place.height, parent.height) << NumberOf(button.command);
    }
}

TEST(ToolbarTable, OnlyThosePairsOfButtonsOverlapThatAreMeantTo)
{
    std::set<std::pair<CommandId, CommandId>> overlapping;
    for (const ToolbarButton& a : kToolbarButtons) {
        for (const ToolbarButton& b : kToolbarButtons) {
            if (&a < &b && a.parent == b.parent && Overlap(PlaceOf(a), PlaceOf(b)))
                overlapping.insert({a.command, b.command});
        }
    }
    // Play and pause, full screen and restore; back and forward; each wheel button and the next.
    const std::set<std::pair<CommandId, CommandId>> meant = {
        {CommandId::Play, CommandId::Pause},
        {CommandId::FullScreen, CommandId::RestoreScreen},
        {CommandId::Back10Seconds, CommandId::Forward10Seconds},
        {CommandId::Back60Seconds, CommandId::Forward60Seconds},
        {CommandId::WheelBalance, CommandId::WheelKey},
        {CommandId::WheelKey, CommandId::WheelSpeed},
        {CommandId::WheelSpeed, CommandId::WheelVolume},
        {CommandId::WheelVolume, CommandId::WheelTrack}};
    EXPECT_EQ(overlapping, meant);
}

TEST(ToolbarTable, ASkipPairMeetsInItsMiddle)
{
    for (const SkipPair& pair : kSkipPairs)
        EXPECT_EQ(MiddleOf(pair), (1965 + 2310) / 2) << NumberOf(pair.back);
}

TEST(ToolbarTable, OnlyTheWheelButtonsHaveARedHover)
{
    for (const ToolbarButton& button : kToolbarButtons) {
        const bool isWheel =
            button.command >= CommandId::WheelBalance && button.command <= CommandId::WheelSpeed;
        EXPECT_EQ(button.style.overColor == 255, isWheel) << NumberOf(button.command);
    }
}

TEST(ToolbarTable, TheButtonsOfTwoStatesAreTheCheckBoxes)
{
    std::set<CommandId> checkBoxes;
    for (const ToolbarButton& button : kToolbarButtons) {
        if (button.style.isCheckBox)
            checkBoxes.insert(button.command);
    }
    EXPECT_EQ(checkBoxes, (std::set<CommandId>{CommandId::QuickPlay, CommandId::Options,
                                               CommandId::Mute, CommandId::WheelBalance,
                                               CommandId::WheelKey, CommandId::WheelTrack,
                                               CommandId::WheelVolume, CommandId::WheelSpeed}));
}

TEST(ToolbarTable, ANumberWithoutButtonEndsTheProgram)
{
    for (const std::int16_t number : std::initializer_list<std::int16_t>{-1, 11, 15, 43, 44})
        EXPECT_DEATH(static_cast<void>(ToolbarButtonOf(CommandId{number})), "") << number;
}

TEST(ToolbarLayout, TheBarLiesAlongTheBottomWithinTheMargin)
{
    EXPECT_EQ(TBarRect({10830, 6600}, 150), (TwipRect{150, 5730, 10530, 720}));
    EXPECT_EQ(TBarRect({10830, 6600}, 75), (TwipRect{75, 5805, 10680, 720}));
}

TEST(ToolbarLayout, TheRightGroupStaysAtTheRightEdge)
{
    for (std::int32_t width = 4770; width < 30000; width += 15)
        ASSERT_EQ(LayoutBar(width, 15).rightGroupLeft + kTBar2.width, width);
}

TEST(ToolbarLayout, TheDesignHasTheRightGroupAndTheSizesWhereItShowsThem)
{
    const BarLayout layout = LayoutBar(kTBar.width, 15);
    EXPECT_EQ(layout, (BarLayout{5100, true, 495, 5700}));
}

TEST(ToolbarLayout, TheSizesGoWhereTheyWouldCoverTheLeftGroup)
{
    EXPECT_TRUE(LayoutBar(6180, 15).isZoomVisible);
    EXPECT_FALSE(LayoutBar(6179, 15).isZoomVisible);
    EXPECT_FALSE(LayoutBar(6165, 15).isZoomVisible);
    EXPECT_TRUE(LayoutBar(30000, 15).isZoomVisible);
}

TEST(ToolbarLayout, NothingOfTheRightGroupEverCoversTheLeftGroup)
{
    constexpr std::int32_t kNarrowest = (338 - 2 * 10) * 15;
    for (std::int32_t width = kNarrowest; width < 12000; width += 15) {
        const BarLayout layout = LayoutBar(width, 15);
        for (const ToolbarButton& left : kToolbarButtons) {
            if (left.parent != BarFrame::TBar)
                continue;
            for (const ToolbarButton& right : kToolbarButtons) {
                const bool isSeen = right.parent == BarFrame::TBar2 ||
                                    (right.parent == BarFrame::TBarZoom && layout.isZoomVisible);
                TwipRect place = PlaceOf(right);
                place.left += layout.rightGroupLeft;
                place.top += kTBar2.top;
                ASSERT_FALSE(isSeen && Overlap(PlaceOf(left), place))
                    << NumberOf(left.command) << " and " << NumberOf(right.command) << " at "
                    << width;
            }
        }
    }
}

TEST(ToolbarLayout, TheSliderRunsFromTheWheelButtonsToTheMuteButton)
{
    constexpr std::int32_t kNarrowest = (338 - 2 * 10) * 15;
    for (std::int32_t width = kNarrowest; width < 30000; width += 15) {
        const BarLayout layout = LayoutBar(width, 15);
        const TwipRect wheel = ToolbarButtonOf(CommandId::WheelBalance).rect;
        const TwipRect mute = ToolbarButtonOf(CommandId::Mute).rect;
        ASSERT_GT(layout.sliderLeft, wheel.left + wheel.width);
        ASSERT_GT(layout.sliderWidth, 0);
        ASSERT_LT(layout.sliderLeft + layout.sliderWidth, layout.rightGroupLeft + mute.left);
    }
}

TEST(ToolbarLayout, TheSlidersPlaceIsInPixels)
{
    EXPECT_EQ(LayoutBar(8205, 12).sliderLeft, 33 * 12);
    EXPECT_EQ(LayoutBar(8205, 12).sliderWidth, 8205 - 167 * 12);
}

} // namespace
} // namespace lantern
