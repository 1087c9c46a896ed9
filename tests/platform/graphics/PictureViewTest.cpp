// SPDX-License-Identifier: GPL-3.0-or-later
#include "RetainedImage.h"
#include "VirtualBuffers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <gmock/gmock.h>
#include <random>
#include <tuple>
#include <vector>

namespace lantern {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array<std::uint8_t, 12> kSolid = {0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
                                                 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F};

// The lyric picture's own sizes, shown at twice its size.
class View : public testing::Test {
protected:
    View()
    {
        buffers.FGvbinit();
        spare = buffers.FGvballoc(300, 216);
        picture = buffers.FGvballoc(300, 216);
        buffers.FGvbopen(picture);
        buffers.FGsetdc(&image);
        for (std::size_t byte = 0; byte < colours.size(); ++byte)
            colours[byte] = static_cast<std::uint8_t>(byte * 5);
        buffers.FGsetdacs(0, 16, colours);
    }

    void Show() { buffers.FGvbscale(6, 293, 12, 203, 0, 576, 0, 384); }
    const std::vector<DeviceRect>& ChangesOfShow()
    {
        image.changes.clear();
        Show();
        return image.changes;
    }
    void SetColour(std::size_t entry, std::uint8_t red)
    {
        colours[entry * 3] = red;
        buffers.FGsetdacs(0, 16, colours);
    }

    static constexpr DeviceRect kAll{0, 0, 576, 384};
    VirtualBuffers buffers;
    int picture = 0;
    int spare = 0;
    std::array<std::uint8_t, 48> colours{};
    RetainedImage image{576, 384};
};

TEST_F(View, TheFirstShowDrawsAll)
{
    EXPECT_THAT(ChangesOfShow(), ElementsAre(kAll));
}

TEST_F(View, AnUnchangedPictureIsNotDrawnAgain)
{
    Show();
    image.pixels[0] = 1;
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
    EXPECT_EQ(image.pixels[0], 1U);
}

TEST_F(View, OneTileRedrawsItsPlaceOnly)
{
    Show();
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{12, 24, 12, 24}));
}

TEST_F(View, ATileOutsideTheWindowRedrawsNothing)
{
    Show();
    buffers.DrawTile(0, 0, kSolid, 0, 1, false);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, DrawingTheSameAgainRedrawsNothing)
{
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    Show();
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    buffers.FGsetcolor(1);
    buffers.FGrect(12, 17, 24, 35);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, TwoExclusiveTilesThatCancelRedrawNothing)
{
    Show();
    buffers.DrawTile(12, 24, kSolid, 0, 9, true);
    buffers.DrawTile(12, 24, kSolid, 0, 9, true);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, AFillRedrawsWhatWasOfAnotherColour)
{
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    Show();
    buffers.FGsetcolor(0);
    buffers.FGfillpage();
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{12, 24, 12, 24}));
}

TEST_F(View, ARestoredPageRedrawsWhatDiffers)
{
    buffers.DrawTile(60, 60, kSolid, 0, 5, false);
    buffers.FGcopypage(picture, spare);
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    Show();
    buffers.FGcopypage(spare, picture);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{12, 24, 12, 24}));
}

TEST_F(View, ACopiedRectangleIsSeen)
{
    buffers.FGvbopen(spare);
    buffers.FGsetcolor(3);
    buffers.FGfillpage();
    buffers.FGvbopen(picture);
    Show();
    buffers.FGvbcopy(0, 5, 0, 11, 12, 35, spare, picture);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{12, 24, 12, 24}));
}

TEST_F(View, APixelAndARectangleAreSeen)
{
    Show();
    buffers.FGsetcolor(3);
    buffers.FGputpixel(6, 12);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{0, 0, 12, 24}));
    buffers.FGrect(288, 299, 192, 215);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{564, 360, 12, 24}));
}

TEST_F(View, EqualColoursRedrawNothing)
{
    Show();
    buffers.FGsetdacs(0, 16, colours);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, AColourRedrawsTheTilesThatShowIt)
{
    buffers.DrawTile(12, 24, kSolid, 0, 4, false);
    Show();
    SetColour(4, 200);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{12, 24, 12, 24}));
    EXPECT_EQ(image.At(12, 24) >> 16 & 0xFF, 200U);
}

TEST_F(View, AColourThatNoPixelShowsRedrawsNothing)
{
    Show();
    SetColour(4, 200);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
    // It is remembered all the same.
    buffers.DrawTile(12, 24, kSolid, 0, 4, false);
    Show();
    EXPECT_EQ(image.At(12, 24) >> 16 & 0xFF, 200U);
}

TEST_F(View, AColourThatComesBackRedrawsNothing)
{
    Show();
    const std::uint8_t red = colours[0];
    SetColour(0, 99);
    SetColour(0, red);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, ColoursOutOfRangeOrTooShortAreIgnored)
{
    Show();
    const std::vector<std::uint8_t> white(1000, 255);
    buffers.FGsetdacs(-1, 16, white);
    buffers.FGsetdacs(250, 16, white);
    buffers.FGsetdacs(0, -3, white);
    buffers.FGsetdacs(0, 2, std::span(white).first(5));
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, AnotherSourceWindowDrawsAll)
{
    Show();
    image.changes.clear();
    buffers.FGvbscale(7, 294, 12, 203, 0, 576, 0, 384);
    EXPECT_THAT(image.changes, ElementsAre(kAll));
}

TEST_F(View, AnotherDestinationDrawsAll)
{
    Show();
    image.changes.clear();
    buffers.FGvbscale(6, 293, 12, 203, 0, 288, 0, 192);
    EXPECT_THAT(image.changes, ElementsAre(DeviceRect{0, 0, 288, 192}));
}

TEST_F(View, AnotherGenerationDrawsAll)
{
    Show();
    ++image.generation;
    EXPECT_THAT(ChangesOfShow(), ElementsAre(kAll));
}

TEST_F(View, AnotherSizeAndRatioDrawAll)
{
    Show();
    image.Replace(864, 576, 1.5);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{0, 0, 864, 576}));
}

TEST_F(View, AnotherSurfaceDrawsAll)
{
    Show();
    RetainedImage other(576, 384);
    buffers.FGsetdc(&other);
    Show();
    EXPECT_THAT(other.changes, ElementsAre(kAll));
    EXPECT_EQ(other.pixels, image.pixels);
}

TEST_F(View, AnotherActiveBufferIsShown)
{
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    Show();
    buffers.FGvbopen(spare);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{12, 24, 12, 24}));
}

TEST_F(View, APaletteRealisedRedrawsNothing)
{
    Show();
    buffers.FGrealize(buffers.FGlogpal(0, 16, colours));
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

TEST_F(View, AfterAnImageThatWasMissingTheNextOneIsDrawn)
{
    image.Replace(0, 0, 1.0);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
    image.Replace(576, 384, 1.0);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(kAll));
}

// A surface that shows again, on another image, while it is being told of a change.
class NestingImage : public RetainedImage {
public:
    explicit NestingImage(VirtualBuffers& buffers) : RetainedImage(576, 384), m_buffers(buffers) {}

    void Changed(const DeviceRect& rect) override
    {
        RetainedImage::Changed(rect);
        if (changes.size() == 1) {
            Replace(290, 200, 1.0);
            m_buffers.FGvbscale(6, 293, 12, 203, 0, 290, 0, 200);
        }
    }

private:
    VirtualBuffers& m_buffers;
};

TEST_F(View, ASurfaceMayShowAgainFromWithinAChange)
{
    NestingImage nesting(buffers);
    buffers.FGsetdc(&nesting);
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    Show();
    EXPECT_THAT(nesting.changes, ElementsAre(kAll, DeviceRect{0, 0, 290, 200}));
    RetainedImage plain(290, 200);
    buffers.FGsetdc(&plain);
    buffers.FGvbscale(6, 293, 12, 203, 0, 290, 0, 200);
    EXPECT_EQ(nesting.pixels, plain.pixels);
}

// Random drawing, shown after each few operations: what stands on the retained image must equal,
// bit for bit, a picture drawn whole on a fresh one, and only told rectangles may have changed.
class Incremental : public View, public testing::WithParamInterface<std::tuple<double, int, int>> {
protected:
    int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    void DrawSomething()
    {
        buffers.FGsetcolor(Below(16));
        switch (Below(12)) {
        case 0:
            return buffers.FGputpixel(Below(310) - 5, Below(226) - 5);
        case 1:
            return DrawRect();
        case 2:
            return SetColour(static_cast<std::size_t>(Below(16)),
                             static_cast<std::uint8_t>(Below(3) * 100));
        case 3:
            return buffers.FGvbcopy(Below(100), 100 + Below(100), Below(100), 100 + Below(100),
                                    Below(300), Below(216), picture, picture);
        case 4:
            return Below(8) == 0 ? buffers.FGfillpage() : DrawRect();
        case 5:
            return Below(2) == 0 ? buffers.FGcopypage(picture, spare)
                                 : buffers.FGcopypage(spare, picture);
        default:
            return DrawTile();
        }
    }
    void DrawRect()
    {
        const int x = Below(300);
        const int y = Below(216);
        buffers.FGrect(x, x + Below(40), y, y + Below(40));
    }
    void DrawTile()
    {
        std::array<std::uint8_t, 12> rows{};
        for (std::uint8_t& row : rows)
            row = static_cast<std::uint8_t>(Below(64));
        buffers.DrawTile(Below(50) * 6, Below(18) * 12, rows, static_cast<std::uint8_t>(Below(16)),
                         static_cast<std::uint8_t>(Below(16)), Below(2) == 0);
    }
    void ShowWindow(VirtualBuffers& shown) const
    {
        shown.FGvbscale(viewLeft, viewLeft + 287, viewTop, viewTop + 191, 0,
                        std::get<1>(GetParam()), 0, std::get<2>(GetParam()));
    }
    // What the same picture looks like on a surface that has seen nothing yet.
    RetainedImage DrawnWhole() const
    {
        RetainedImage whole(image.width, image.height, image.ratio);
        VirtualBuffers fresh;
        fresh.FGvbinit();
        fresh.FGvbopen(fresh.FGvballoc(300, 216));
        fresh.FGsetdc(&whole);
        fresh.FGsetdacs(0, 16, colours);
        for (int y = 0; y < 216; ++y) {
            for (int x = 0; x < 300; ++x) {
                fresh.FGsetcolor(buffers.FGgetpixel(x, y));
                fresh.FGputpixel(x, y);
            }
        }
        ShowWindow(fresh);
        return whole;
    }
    void ExpectChangedOnlyWhereTold(const std::vector<std::uint32_t>& before)
    {
        std::vector<std::uint32_t> seen = before;
        for (const DeviceRect& rect : image.changes) {
            for (int y = rect.top; y < rect.top + rect.height; ++y) {
                const auto begin = static_cast<std::ptrdiff_t>(image.Index(rect.left, y));
                std::copy_n(image.pixels.begin() + begin, rect.width, seen.begin() + begin);
            }
        }
        ASSERT_EQ(seen, image.pixels);
    }

    std::mt19937 random{41};
    int viewLeft = 6;
    int viewTop = 12;
};

TEST_P(Incremental, EqualsAFullRedrawBitForBit)
{
    const auto& [ratio, width, height] = GetParam();
    image.Replace(static_cast<int>(std::lround(width * ratio)),
                  static_cast<int>(std::lround(height * ratio)), ratio);
    for (int round = 0; round < 60; ++round) {
        for (int operations = Below(6); operations >= 0; --operations)
            DrawSomething();
        if (Below(12) == 0) {
            viewLeft = 6 + Below(8);
            viewTop = 12 + Below(16);
        }
        const std::vector<std::uint32_t> before = image.pixels;
        image.changes.clear();
        ShowWindow(buffers);
        ExpectChangedOnlyWhereTold(before);
        ASSERT_EQ(image.pixels, DrawnWhole().pixels) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Incremental,
                         testing::Combine(testing::Values(1.0, 1.25, 1.5, 2.0, 3.0),
                                          testing::Values(288, 433, 577, 101),
                                          testing::Values(192, 289, 67)));

} // namespace
} // namespace lantern
