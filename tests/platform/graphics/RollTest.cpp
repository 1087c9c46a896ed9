// SPDX-License-Identifier: GPL-3.0-or-later
#include "VirtualBuffers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace lantern {
namespace {

constexpr int kWidth = 300;
constexpr int kHeight = 216;

class Clip : public ClipSink {
public:
    void SetImage(const ClipImage& image) override
    {
        Pixels.assign(image.pixels.begin(), image.pixels.end());
    }
    std::vector<std::uint32_t> Pixels;
};

// A picture with the buffer that its rolls were once laid out in.
struct Picture {
    Picture()
    {
        buffers.FGvbinit();
        wrap = buffers.FGvballoc(2 * kWidth, 2 * kHeight);
        other = buffers.FGvballoc(kWidth, kHeight);
        picture = buffers.FGvballoc(kWidth, kHeight);
        buffers.FGvbopen(picture);
    }

    // Four pictures side by side wrap around wherever one picture's worth is read from them.
    void RollByMosaic(int left, int top)
    {
        for (const int x : {0, kWidth}) {
            for (const int y : {0, kHeight})
                buffers.FGvbcopy(0, kWidth - 1, 0, kHeight - 1, x, y + kHeight - 1, picture, wrap);
        }
        buffers.FGvbcopy(left, left + kWidth - 1, top, top + kHeight - 1, 0, kHeight - 1, wrap,
                         picture);
    }

    std::vector<std::uint8_t> Pixels() const
    {
        const auto pixels = buffers.Pixels(picture);
        return {pixels.begin(), pixels.end()};
    }

    // Without a look at the buffer as a whole.
    std::vector<std::uint32_t> Seen(int left, int top, int width, int height) const
    {
        Clip clip;
        buffers.FGvb2clip(left, left + width - 1, top, top + height - 1, clip);
        return clip.Pixels;
    }

    VirtualBuffers buffers;
    int wrap = 0;
    int other = 0;
    int picture = 0;
};

class RollTest : public ::testing::Test {
protected:
    RollTest()
    {
        std::array<std::uint8_t, 48> colours{};
        for (std::size_t i = 0; i < colours.size(); ++i)
            colours[i] = static_cast<std::uint8_t>(5 * i);
        for (Picture* each : {&rolled, &laidOut})
            each->buffers.FGsetdacs(0, 16, colours);
    }

    int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    int Between(int low, int high) { return low + Below(high - low + 1); }

    void Roll(int left, int top)
    {
        rolled.buffers.RollPage(left, top, rolled.picture);
        laidOut.RollByMosaic(left, top);
    }

    // One operation on both, some of them beyond the edges.
    void Draw()
    {
        const int kind = Below(7);
        const int x = Between(-8, kWidth + 8);
        const int y = Between(-14, kHeight + 14);
        const int width = Below(3) == 0 ? 6 : Below(kWidth);
        const int height = Below(kHeight);
        const int colour = Below(16);
        std::array<std::uint8_t, 12> rows{};
        for (std::uint8_t& row : rows)
            row = static_cast<std::uint8_t>(random());
        for (Picture* each : {&rolled, &laidOut}) {
            VirtualBuffers& buffers = each->buffers;
            buffers.FGsetcolor(colour);
            if (kind < 2)
                buffers.DrawTile(x, y, rows, static_cast<std::uint8_t>(colour), 9, kind == 0);
            else if (kind == 2)
                buffers.DrawTile(x / 6 * 6, y / 12 * 12, rows, 3, 12, true);
            else if (kind == 3)
                buffers.FGrect(x, x + width - 1, y, y + height - 1);
            else if (kind == 4)
                buffers.FGputpixel(x, y);
            else if (kind == 5)
                buffers.FGvbcopy(x, x + width, y, y + height, colour, 190, each->picture,
                                 each->picture);
            else
                buffers.FGcopypage(each->picture, each->other);
        }
    }

    void ExpectSameLook()
    {
        const int x = Between(-8, kWidth + 8);
        const int y = Between(-14, kHeight + 14);
        ASSERT_EQ(rolled.buffers.FGgetpixel(x, y), laidOut.buffers.FGgetpixel(x, y));
        ASSERT_EQ(rolled.Seen(x, y, 40, 30), laidOut.Seen(x, y, 40, 30));
        if (Below(20) == 0) {
            ASSERT_EQ(rolled.Seen(6, 12, 288, 192), laidOut.Seen(6, 12, 288, 192));
        }
    }

    std::mt19937 random{20};
    Picture rolled;
    Picture laidOut;
};

TEST_F(RollTest, ThePixelGivenComesToTheCornerAndWhatLeavesComesInAgain)
{
    VirtualBuffers& buffers = rolled.buffers;
    buffers.FGsetcolor(7);
    buffers.FGputpixel(294, 204);
    buffers.FGsetcolor(8);
    buffers.FGputpixel(293, 203);
    buffers.RollPage(294, 204, rolled.picture);
    EXPECT_EQ(buffers.FGgetpixel(0, 0), 7);
    EXPECT_EQ(buffers.FGgetpixel(299, 215), 8);
    EXPECT_EQ(buffers.FGgetpixel(294, 204), 0);
}

TEST_F(RollTest, AnyRollIsThatOfTheMosaic)
{
    for (int i = 0; i < 400; ++i)
        Draw();
    for (const int left : {0, 1, 6, 7, 150, 294, 299, 300}) {
        for (const int top : {0, 1, 11, 12, 108, 204, 215, 216}) {
            Roll(left, top);
            ASSERT_EQ(rolled.Pixels(), laidOut.Pixels()) << left << ", " << top;
        }
    }
}

TEST_F(RollTest, WhateverIsDrawnBetweenRollsIsDrawnAsOnAPictureThatWasMoved)
{
    for (int step = 0; step < 2000; ++step) {
        if (Below(3) == 0)
            Roll(Below(3) * 6, Below(3) * 12);
        else if (Below(40) == 0)
            Roll(Below(kWidth), Below(kHeight));
        else
            Draw();
        ASSERT_NO_FATAL_FAILURE(ExpectSameLook()) << step;
        if (Below(100) == 0) {
            ASSERT_EQ(rolled.Pixels(), laidOut.Pixels()) << step;
        }
    }
    EXPECT_EQ(rolled.Pixels(), laidOut.Pixels());
}

TEST_F(RollTest, ACopyOfARolledPageIsTheSamePicture)
{
    for (int i = 0; i < 100; ++i)
        Draw();
    Roll(6, 204);
    Roll(0, 12);
    Roll(294, 0);
    VirtualBuffers& buffers = rolled.buffers;
    buffers.FGcopypage(rolled.picture, rolled.other);
    const std::vector<std::uint8_t> before = laidOut.Pixels();
    EXPECT_TRUE(std::ranges::equal(buffers.Pixels(rolled.other), before));
    buffers.FGsetcolor(1);
    buffers.FGfillpage();
    buffers.FGcopypage(rolled.other, rolled.picture);
    EXPECT_EQ(rolled.Pixels(), before);
}

TEST_F(RollTest, APixelOutsideIsTakenAround)
{
    for (int i = 0; i < 100; ++i)
        Draw();
    Roll(294, 12);
    const std::vector<std::uint8_t> expected = laidOut.Pixels();
    rolled.buffers.RollPage(-300, 216 * 5, rolled.picture);
    EXPECT_EQ(rolled.Pixels(), expected);
    rolled.buffers.RollPage(-6, -12, rolled.picture);
    laidOut.RollByMosaic(294, 204);
    EXPECT_EQ(rolled.Pixels(), laidOut.Pixels());
}

TEST_F(RollTest, AHandleOfNoneIsLeftAlone)
{
    rolled.buffers.FGputpixel(3, 3);
    const std::vector<std::uint8_t> before = rolled.Pixels();
    rolled.buffers.RollPage(6, 12, 0);
    rolled.buffers.RollPage(6, 12, 99);
    EXPECT_EQ(rolled.Pixels(), before);
}

} // namespace
} // namespace lantern
