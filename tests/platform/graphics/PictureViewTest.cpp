// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFixture.h"

#include <array>
#include <gmock/gmock.h>
#include <vector>

namespace lantern {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array<std::uint8_t, 12> kSolid = {0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
                                                 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F};

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

TEST_F(View, ARolledPageIsSeen)
{
    buffers.DrawTile(12, 24, kSolid, 0, 1, false);
    Show();
    buffers.RollPage(6, 0, picture);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{0, 24, 24, 24}))
        << "six pixels further left";
    EXPECT_EQ(image.At(0, 24), image.At(11, 47));
    EXPECT_NE(image.At(0, 24), image.At(12, 24));
    buffers.RollPage(0, 0, picture);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
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

TEST_F(View, EachOf256ColoursCanBeSet)
{
    std::vector<std::uint8_t> all(3 * 256, 7);
    buffers.FGsetcolor(255);
    buffers.FGfillpage();
    buffers.FGsetdacs(0, 256, all);
    Show();
    EXPECT_EQ(image.At(12, 24), 0xFF070707U);
    buffers.FGsetdacs(255, 1, std::array<std::uint8_t, 3>{1, 2, 3});
    Show();
    EXPECT_EQ(image.At(12, 24), 0xFF010203U);
}

TEST_F(View, NoMoreColoursAreSetThanWereAskedFor)
{
    const std::vector<std::uint8_t> white(3 * 5, 255);
    const std::vector<std::uint8_t> before(3, 7);
    buffers.FGsetdacs(3, 1, before);
    buffers.FGsetdacs(6, 1, before);
    buffers.FGsetdacs(4, 2, white);
    for (const auto& [index, colour] :
         {std::pair{3, 0xFF070707U}, {4, 0xFFFFFFFFU}, {5, 0xFFFFFFFFU}, {6, 0xFF070707U}}) {
        buffers.FGsetcolor(index);
        buffers.FGfillpage();
        Show();
        EXPECT_EQ(image.At(12, 24), colour) << index;
    }
}

TEST_F(View, APictureCutOffByTheImageRedrawsNothingBeyondIt)
{
    const auto changes = [&] {
        image.changes.clear();
        buffers.FGvbscale(6, 293, 12, 203, -100, 876, -100, 684);
        return image.changes;
    };
    EXPECT_THAT(changes(), ElementsAre(kAll));
    for (const auto& [x, y] : std::vector<std::pair<int, int>>{
             {6, 96}, {288, 96}, {150, 12}, {150, 192}, {6, 12}, {288, 192}}) {
        buffers.DrawTile(x, y, kSolid, 0, 1, true);
        EXPECT_THAT(changes(), IsEmpty()) << x << ", " << y;
    }
    buffers.DrawTile(150, 96, kSolid, 0, 1, true);
    EXPECT_EQ(changes().size(), 1U);
}

TEST_F(View, ColoursOutOfRangeOrTooShortAreIgnored)
{
    buffers.FGsetcolor(255);
    buffers.FGrect(12, 17, 24, 35);
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

TEST_F(View, ASurfaceNamedAgainIsDrawnAll)
{
    Show();
    buffers.FGsetdc(&image);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(kAll));
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

} // namespace
} // namespace lantern
