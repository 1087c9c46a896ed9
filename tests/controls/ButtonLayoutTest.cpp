// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonLayout.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

namespace lantern {
namespace {

// A caption of a fixed size; it keeps what it was measured with.
struct FixedCaption {
    int width;
    int height;
    std::vector<std::pair<Box, TextFlags>> asked = {};

    MeasureCaption Measure()
    {
        return [this](const Box& box, TextFlags flags) {
            asked.emplace_back(box, flags);
            return Box{box.left, box.top, box.left + width, box.top + height};
        };
    }
};

TEST(PicButtonLayout, ThePlainCaptionIsCentredAPixelHigh)
{
    FixedCaption caption{20, 10};
    const PicButtonRects rects =
        LayoutPicButton(QSize(61, 25), QSize(24, 24), false, caption.Measure());
    EXPECT_EQ(caption.asked[0], (std::pair{Box{0, 0, 60, 24}, TextFlags{TextWrapped}}));
    EXPECT_EQ(rects.pictureX, 18);
    EXPECT_EQ(rects.pictureY, 0);
    EXPECT_EQ(rects.text, (Box{20, 6, 40, 16}));
    EXPECT_EQ(rects.shadow, (Box{21, 7, 41, 17}));
}

TEST(PicButtonLayout, ACheckBoxHasItsCaptionBesideThePicture)
{
    FixedCaption caption{100, 13};
    const PicButtonRects rects =
        LayoutPicButton(QSize(149, 16), QSize(18, 14), true, caption.Measure());
    EXPECT_EQ(caption.asked[0].first, (Box{21, 0, 148, 15}));
    EXPECT_EQ(rects.pictureX, 0);
    EXPECT_EQ(rects.pictureY, 1);
    EXPECT_EQ(rects.text, (Box{21, 0, 148, 13}));
}

TEST(PicButtonLayout, HalvesAreCutTowardsZero)
{
    FixedCaption caption{13, 9};
    const PicButtonRects rects =
        LayoutPicButton(QSize(10, 6), QSize(13, 9), false, caption.Measure());
    EXPECT_EQ(rects.pictureX, -1); // of -1.5
    EXPECT_EQ(rects.pictureY, -1);
    EXPECT_EQ(rects.text, (Box{-1, -2, 12, 7}));
}

struct Place {
    Box text;
    int pictureX;
    int pictureY;
    int measuredTo;
    TextFlags flags;
};

// For a button of 101 by 61, a picture of 16 by 12 and a caption of 30 by 11.
constexpr std::array<Place, 9> kPlaces = {{
    {{19, 2, 49, 13}, 2, 2, 84, 16},
    {{35, 15, 65, 26}, 42, 2, 96, 17},
    {{52, 2, 82, 13}, 83, 2, 84, 18},
    {{19, 25, 49, 36}, 2, 24, 84, 16},
    {{35, 32, 65, 43}, 42, 19, 96, 17},
    {{52, 25, 82, 36}, 83, 24, 84, 18},
    {{19, 48, 49, 59}, 2, 47, 84, 16},
    {{35, 35, 65, 46}, 42, 47, 96, 17},
    {{52, 48, 82, 59}, 83, 47, 84, 18},
}};

TEST(TextButtonLayout, EachPositionHasItsPlaces)
{
    for (std::int32_t position = 0; position < 9; ++position) {
        const Place& place = kPlaces[static_cast<std::size_t>(position)];
        FixedCaption caption{30, 11};
        const TextButtonRects rects =
            LayoutTextButton({}, QSize(101, 61), QSize(16, 12), position, false, caption.Measure());
        EXPECT_EQ(caption.asked[0], (std::pair{Box{0, 0, place.measuredTo, 56}, place.flags}));
        EXPECT_EQ(rects.text, place.text) << position;
        EXPECT_EQ(rects.shifted, place.text.Moved(1, 1)) << position;
        EXPECT_EQ(rects.pictureX, place.pictureX) << position;
        EXPECT_EQ(rects.pictureY, place.pictureY) << position;
        EXPECT_EQ(rects.flags, place.flags) << position;
    }
}

TEST(TextButtonLayout, WithoutPictureNoGapIsKept)
{
    constexpr std::array<std::pair<int, int>, 9> kTextAt = {
        {{2, 2}, {35, 2}, {69, 2}, {2, 25}, {35, 25}, {69, 25}, {2, 48}, {35, 48}, {69, 48}}};
    for (std::int32_t position = 0; position < 9; ++position) {
        FixedCaption caption{30, 11};
        const TextButtonRects rects =
            LayoutTextButton({}, QSize(101, 61), QSize(0, 0), position, false, caption.Measure());
        EXPECT_EQ(std::pair(rects.text.left, rects.text.top),
                  kTextAt[static_cast<std::size_t>(position)])
            << position;
    }
}

TEST(TextButtonLayout, ABlankCaptionLetsThePictureStandInTheMiddle)
{
    FixedCaption caption{0, 0};
    const auto pictureY = [&caption](bool isCaptionBlank) {
        return LayoutTextButton({}, QSize(101, 61), QSize(16, 12), 4, isCaptionBlank,
                                caption.Measure())
            .pictureY;
    };
    EXPECT_EQ(pictureY(true), 24);
    EXPECT_EQ(pictureY(false), 24 + 37 / 2 - 24 + 6); // on a text of no height at 37
}

TEST(TextButtonLayout, AnyOtherPositionLeavesAllAsItWas)
{
    FixedCaption caption{30, 11};
    const TextButtonRects before =
        LayoutTextButton({}, QSize(101, 61), QSize(16, 12), 2, false, caption.Measure());
    for (const std::int32_t position : {9, 100, INT32_MAX, -1, INT32_MIN}) {
        EXPECT_EQ(
            LayoutTextButton(before, QSize(50, 20), QSize(4, 4), position, true, caption.Measure()),
            before);
    }
    EXPECT_EQ(caption.asked.size(), 1U);
}

} // namespace
} // namespace lantern
