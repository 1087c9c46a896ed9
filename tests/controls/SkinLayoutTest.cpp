// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinLayout.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

constexpr int kCaptionHeight = 13;

SkinLayout LayOut(int width, int height)
{
    return LayOutSkin(width, height, kCaptionHeight);
}

std::size_t ElementAt(const SkinLayout& layout, int x, int y)
{
    return PlaceAt(layout, false, x, y)->element;
}

TEST(SkinLayout, TheCornersKeepTheirSizeAndTheEdgesStretchBetweenThem)
{
    for (const auto& [w, h] : {std::pair{320, 240}, std::pair{11, 11}, std::pair{722, 440}}) {
        const SkinLayout layout = LayOut(w, h);
        EXPECT_EQ(layout.elements[0], (Box{0, 0, 5, 5}));
        EXPECT_EQ(layout.elements[1], (Box{5, 0, w - 5, 5}));
        EXPECT_EQ(layout.elements[2], (Box{w - 5, 0, w, 5}));
        EXPECT_EQ(layout.elements[3], (Box{0, 5, 5, h - 5}));
        EXPECT_EQ(layout.elements[4], (Box{0, 0, w, h}));
        EXPECT_EQ(layout.elements[5], (Box{w - 5, 5, w, h - 5}));
        EXPECT_EQ(layout.elements[6], (Box{0, h - 5, 5, h}));
        EXPECT_EQ(layout.elements[7], (Box{5, h - 5, w - 5, h}));
        EXPECT_EQ(layout.elements[8], (Box{w - 5, h - 5, w, h}));
        EXPECT_EQ(layout.caption, (Box{3, 3, w - 3, 16}));
    }
}

TEST(SkinLayout, NarrowerThanTwoCornersAnEdgeHasANegativeLength)
{
    const SkinLayout layout = LayOut(8, 6);
    EXPECT_EQ(layout.elements[1].Width(), -2);
    EXPECT_EQ(layout.elements[7].Width(), -2);
    EXPECT_EQ(layout.elements[3].Height(), -4);
    EXPECT_EQ(layout.elements[2].left, 3);
    EXPECT_EQ(LayOut(0, 0).elements[1].Width(), -10);
    EXPECT_EQ(LayOut(0, 0).caption.Width(), -6);
}

TEST(SkinLayout, EachPointBelongsToTheElementInFront)
{
    const SkinLayout layout = LayOut(100, 80);
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 100; ++x) {
            const std::size_t row = y < 5 ? 0 : y < 75 ? 1 : 2;
            const std::size_t column = x < 5 ? 0 : x < 95 ? 1 : 2;
            ASSERT_EQ(ElementAt(layout, x, y), 3 * row + column) << x << ", " << y;
        }
    }
    EXPECT_FALSE(PlaceAt(layout, false, -1, 0));
    EXPECT_FALSE(PlaceAt(layout, false, 0, 80));
}

TEST(SkinLayout, WhereCornersOverlapTheBottomRightIsInFrontThenTheReadingOrder)
{
    const SkinLayout layout = LayOut(6, 6);
    EXPECT_EQ(ElementAt(layout, 3, 3), 8u);
    EXPECT_EQ(ElementAt(layout, 3, 0), 0u);
    EXPECT_EQ(ElementAt(layout, 5, 0), 2u);
    EXPECT_EQ(ElementAt(layout, 0, 3), 0u);
    EXPECT_EQ(ElementAt(layout, 0, 5), 6u);
}

TEST(SkinLayout, TheVisibleCaptionLiesInFrontOfAll)
{
    const SkinLayout layout = LayOut(100, 80);
    EXPECT_TRUE(PlaceAt(layout, true, 3, 3)->isCaption);
    EXPECT_TRUE(PlaceAt(layout, true, 96, 15)->isCaption);
    EXPECT_FALSE(PlaceAt(layout, true, 97, 15)->isCaption);
    EXPECT_FALSE(PlaceAt(layout, true, 50, 2)->isCaption);
    EXPECT_FALSE(PlaceAt(layout, true, 50, 16)->isCaption);
    EXPECT_FALSE(PlaceAt(layout, false, 50, 10)->isCaption);
}

TEST(Skin, ThePointersAndHitCodesBelongToTheSide)
{
    constexpr std::array kPointers = {8, 7, 6, 9, 0, 9, 6, 7, 8};
    constexpr std::array kHitCodes = {13, 12, 14, 10, 2, 11, 16, 15, 17};
    for (std::size_t i = 0; i < kSkinElements; ++i) {
        EXPECT_EQ(kSkin[i].pointer, kPointers[i]) << i;
        EXPECT_EQ(static_cast<int>(kSkin[i].hitCode), kHitCodes[i]) << i;
        EXPECT_EQ(kSkin[i].isStretched, i == 1 || i == 3 || i == 5 || i == 7) << i;
    }
}

TEST(Skin, ItsColours)
{
    EXPECT_EQ(SkinColour('O'), 0xFFFFAB08);
    EXPECT_EQ(SkinColour('M'), 0xFFBF8006);
    EXPECT_EQ(SkinColour('D'), 0xFF7F5504);
    EXPECT_EQ(SkinColour('K'), 0xFF000000);
}

} // namespace
} // namespace lantern
