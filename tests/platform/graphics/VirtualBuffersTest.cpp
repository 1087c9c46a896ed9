// SPDX-License-Identifier: GPL-3.0-or-later
#include "BuffersFixture.h"

#include <array>
#include <climits>
#include <gmock/gmock.h>
#include <vector>

namespace lantern {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Clipboard : public ClipSink {
public:
    void SetImage(const ClipImage& image) override
    {
        ++calls;
        width = image.width;
        height = image.height;
        pixels.assign(image.pixels.begin(), image.pixels.end());
    }
    int calls = 0;
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

TEST_F(Buffers, ANewBufferHoldsIndexZeroRowByRowWithoutPadding)
{
    const int handle = buffers.FGvballoc(300, 216);
    EXPECT_NE(handle, 0);
    EXPECT_THAT(buffers.Pixels(handle), SizeIs(300 * 216));
    EXPECT_THAT(buffers.Pixels(handle), Each(0));
}

TEST_F(Buffers, NoBufferIsMadeBeforeInitAndNoneAfterFin)
{
    VirtualBuffers idle;
    EXPECT_EQ(idle.FGvballoc(10, 10), 0);
    idle.FGvbinit();
    EXPECT_NE(idle.FGvballoc(10, 10), 0);
    idle.FGvbfin();
    EXPECT_EQ(idle.AllocatedCount(), 0);
    EXPECT_EQ(idle.FGvballoc(10, 10), 0);
}

TEST_F(Buffers, OnlyBuffersOfEightBitsAreMade)
{
    buffers.FGvbdepth(16);
    EXPECT_EQ(buffers.FGvballoc(10, 10), 0);
    buffers.FGvbdepth(8);
    EXPECT_NE(buffers.FGvballoc(10, 10), 0);
}

TEST_F(Buffers, ImpossibleSizesAreNotAllocated)
{
    EXPECT_EQ(buffers.FGvballoc(0, 10), 0);
    EXPECT_EQ(buffers.FGvballoc(10, 0), 0);
    EXPECT_EQ(buffers.FGvballoc(-5, -5), 0);
    EXPECT_EQ(buffers.FGvballoc(INT_MAX, INT_MAX), 0);
    EXPECT_EQ(buffers.FGvballoc(16385, 1), 0);
    EXPECT_EQ(buffers.FGvballoc(1, 16385), 0);
    EXPECT_EQ(buffers.FGvballoc(8192, 2049), 0);
    EXPECT_EQ(buffers.AllocatedCount(), 0);
    EXPECT_NE(buffers.FGvballoc(16384, 1), 0);
}

TEST_F(Buffers, AllBuffersTogetherAreBoundedAndFreeingMakesRoom)
{
    std::vector<int> handles;
    while (const int handle = buffers.FGvballoc(4096, 4096)) {
        handles.push_back(handle);
        ASSERT_LE(handles.size(), VirtualBuffers::kMaxAllocatedPixels / (4096 * 4096));
    }
    EXPECT_EQ(handles.size(), VirtualBuffers::kMaxAllocatedPixels / (4096 * 4096));
    EXPECT_EQ(buffers.FGvballoc(1, 1), 0);
    buffers.FGvbfree(handles.front());
    EXPECT_NE(buffers.FGvballoc(1, 1), 0);
}

TEST_F(Buffers, AHandleIsNotUsedAgainAfterFree)
{
    const int first = buffers.FGvballoc(4, 4);
    buffers.FGvbfree(first);
    const int second = buffers.FGvballoc(4, 4);
    EXPECT_NE(first, second);
    EXPECT_THAT(buffers.Pixels(first), IsEmpty());
    buffers.FGvbfree(first);
    EXPECT_EQ(buffers.AllocatedCount(), 1);
}

TEST_F(Buffers, AllocatedCountFollowsAllocAndFree)
{
    EXPECT_EQ(buffers.AllocatedCount(), 0);
    const int first = buffers.FGvballoc(4, 4);
    buffers.FGvballoc(4, 4);
    EXPECT_EQ(buffers.AllocatedCount(), 2);
    buffers.FGvbfree(first);
    EXPECT_EQ(buffers.AllocatedCount(), 1);
    buffers.FGvbfree(0);
    buffers.FGvbfree(-7);
    EXPECT_EQ(buffers.AllocatedCount(), 1);
}

TEST_F(Buffers, CallsWithoutAnActiveBufferDoNothing)
{
    Clipboard clipboard;
    buffers.FGsetcolor(5);
    buffers.FGfillpage();
    buffers.FGputpixel(0, 0);
    buffers.FGrect(0, 5, 0, 5);
    buffers.DrawTile(0, 0, kTileRows, 1, 2, false);
    buffers.FGvbscale(0, 5, 0, 5, 0, 5, 0, 5);
    buffers.FGvb2clip(0, 5, 0, 5, clipboard);
    buffers.FGvbclose();
    EXPECT_EQ(buffers.FGgetpixel(0, 0), 0);
    EXPECT_EQ(clipboard.calls, 0);
}

TEST_F(Buffers, FreeingTheActiveBufferLeavesNoneActive)
{
    const int handle = Open(4, 4);
    Put(1, 1, 9);
    buffers.FGvbfree(handle);
    buffers.FGfillpage();
    EXPECT_EQ(buffers.FGgetpixel(1, 1), 0);
}

TEST_F(Buffers, FreeingAnotherBufferKeepsTheActiveOne)
{
    const int other = buffers.FGvballoc(4, 4);
    Open(4, 4);
    Put(1, 1, 9);
    buffers.FGvbfree(other);
    EXPECT_EQ(buffers.FGgetpixel(1, 1), 9);
}

TEST_F(Buffers, OpeningAHandleOfNoneKeepsTheActiveBuffer)
{
    Open(4, 4);
    Put(1, 1, 9);
    buffers.FGvbopen(0);
    buffers.FGvbopen(12345);
    EXPECT_EQ(buffers.FGgetpixel(1, 1), 9);
}

TEST_F(Buffers, CloseLeavesTheActiveBufferAndKeepsItsPixels)
{
    const int handle = Open(4, 4);
    Put(1, 1, 9);
    buffers.FGvbclose();
    buffers.FGfillpage();
    EXPECT_EQ(buffers.FGgetpixel(1, 1), 0);
    EXPECT_EQ(buffers.Pixels(handle)[5], 9);
}

TEST_F(Buffers, PixelsOutsideReadAsZeroAndWritesThereAreDropped)
{
    const int handle = Open(3, 2);
    buffers.FGsetcolor(7);
    buffers.FGfillpage();
    for (const auto& [x, y] :
         {std::pair{-1, 0}, {3, 0}, {0, -1}, {0, 2}, {INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}}) {
        EXPECT_EQ(buffers.FGgetpixel(x, y), 0);
        Put(x, y, 1);
    }
    EXPECT_THAT(buffers.Pixels(handle), Each(7));
}

TEST_F(Buffers, FillPageFillsOnlyTheActiveBuffer)
{
    const int other = buffers.FGvballoc(3, 3);
    const int active = Open(3, 3);
    buffers.FGsetcolor(11);
    buffers.FGfillpage();
    EXPECT_THAT(buffers.Pixels(active), Each(11));
    EXPECT_THAT(buffers.Pixels(other), Each(0));
}

TEST_F(Buffers, OfAColourTheLowEightBitsCount)
{
    Open(1, 1);
    Put(0, 0, 0x1234);
    EXPECT_EQ(buffers.FGgetpixel(0, 0), 0x34);
    Put(0, 0, -1);
    EXPECT_EQ(buffers.FGgetpixel(0, 0), 0xFF);
}

TEST_F(Buffers, RectFillsBothBoundsInclusive)
{
    const int handle = Open(4, 3);
    buffers.FGsetcolor(2);
    buffers.FGrect(1, 2, 1, 2);
    EXPECT_THAT(buffers.Pixels(handle), ElementsAre(0, 0, 0, 0, 0, 2, 2, 0, 0, 2, 2, 0));
}

TEST_F(Buffers, RectClipsToTheBuffer)
{
    const int handle = Open(4, 3);
    buffers.FGsetcolor(2);
    buffers.FGrect(3, INT_MAX, INT_MIN, 0);
    EXPECT_THAT(buffers.Pixels(handle), ElementsAre(0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST_F(Buffers, RectOutsideOrTurnedAroundFillsNothing)
{
    const int handle = Open(4, 3);
    buffers.FGsetcolor(2);
    buffers.FGrect(2, 1, 0, 2);
    buffers.FGrect(0, 3, 2, 1);
    buffers.FGrect(4, 9, 0, 2);
    buffers.FGrect(-9, -1, 0, 2);
    buffers.FGrect(0, 3, 3, 9);
    buffers.FGrect(INT_MAX, INT_MIN, INT_MAX, INT_MIN);
    EXPECT_THAT(buffers.Pixels(handle), Each(0));
}

TEST_F(Buffers, CopyPlacesTheRectangleByItsLowerLeftCorner)
{
    const int source = Open(3, 3);
    Number(3, 3);
    const int target = buffers.FGvballoc(4, 4);
    buffers.FGvbcopy(1, 2, 0, 1, 1, 3, source, target);
    EXPECT_THAT(buffers.Pixels(target),
                ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 3, 0, 0, 5, 6, 0));
}

TEST_F(Buffers, CopyClipsToTheSource)
{
    const int source = Open(2, 2);
    Number(2, 2);
    const int target = buffers.FGvballoc(4, 4);
    buffers.FGvbcopy(-1, 9, -1, 9, 0, 10, source, target);
    EXPECT_THAT(buffers.Pixels(target),
                ElementsAre(0, 0, 0, 0, 0, 1, 2, 0, 0, 3, 4, 0, 0, 0, 0, 0));
}

TEST_F(Buffers, CopyClipsToTheDestinationOnEachSide)
{
    const int source = Open(3, 3);
    Number(3, 3);
    const int target = buffers.FGvballoc(2, 2);
    buffers.FGvbcopy(0, 2, 0, 2, -1, 1, source, target);
    EXPECT_THAT(buffers.Pixels(target), ElementsAre(5, 6, 8, 9));
    buffers.FGvbcopy(0, 2, 0, 2, 1, 3, source, target);
    EXPECT_THAT(buffers.Pixels(target), ElementsAre(5, 6, 8, 1));
}

TEST_F(Buffers, CopyWithImpossibleBoundsOrHandlesDoesNothing)
{
    const int source = Open(3, 3);
    Number(3, 3);
    const int target = buffers.FGvballoc(3, 3);
    buffers.FGvbcopy(2, 0, 0, 2, 0, 2, source, target);
    buffers.FGvbcopy(0, 2, 2, 0, 0, 2, source, target);
    buffers.FGvbcopy(0, 2, 0, 2, INT_MAX, INT_MIN, source, target);
    buffers.FGvbcopy(0, 2, 0, 2, INT_MIN, INT_MAX, source, target);
    buffers.FGvbcopy(INT_MIN, INT_MAX, INT_MIN, INT_MAX, 0, 2, source, target);
    buffers.FGvbcopy(0, 2, 0, 2, 0, 2, 0, target);
    buffers.FGvbcopy(0, 2, 0, 2, 0, 2, source, 99);
    EXPECT_THAT(buffers.Pixels(target), Each(0));
}

TEST_F(Buffers, AnOverlappingCopyWithinOneBufferMovesTheOldPixels)
{
    constexpr int side = 9;
    for (int moveY = -2; moveY <= 2; ++moveY) {
        for (int moveX = -2; moveX <= 2; ++moveX) {
            const int handle = Open(side, side);
            Number(side, side);
            buffers.FGvbcopy(2, 6, 2, 6, 2 + moveX, 6 + moveY, handle, handle);
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    const int fromX = x - moveX;
                    const int fromY = y - moveY;
                    const bool moved = fromX >= 2 && fromX <= 6 && fromY >= 2 && fromY <= 6;
                    const int expected = moved ? fromY * side + fromX + 1 : y * side + x + 1;
                    ASSERT_EQ(buffers.FGgetpixel(x, y), expected)
                        << x << ',' << y << " moved by " << moveX << ',' << moveY;
                }
            }
        }
    }
}

TEST_F(Buffers, FourCopiesMakeAMosaicThatWrapsAround)
{
    const int wrap = buffers.FGvballoc(10, 6);
    const int picture = Open(5, 3);
    Number(5, 3);
    for (const int x : {0, 5}) {
        for (const int y : {0, 3})
            buffers.FGvbcopy(0, 4, 0, 2, x, y + 2, picture, wrap);
    }
    buffers.FGvbcopy(4, 8, 1, 3, 0, 2, wrap, picture);
    EXPECT_THAT(buffers.Pixels(picture),
                ElementsAre(10, 6, 7, 8, 9, 15, 11, 12, 13, 14, 5, 1, 2, 3, 4));
}

TEST_F(Buffers, CopyPageCopiesAllPixelsBetweenBuffersOfOneSize)
{
    const int source = Open(4, 3);
    Number(4, 3);
    const int target = buffers.FGvballoc(4, 3);
    buffers.FGcopypage(source, target);
    EXPECT_THAT(buffers.Pixels(target), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
    buffers.FGcopypage(target, target);
    EXPECT_THAT(buffers.Pixels(target), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
}

TEST_F(Buffers, CopyPageBetweenDifferentSizesOrHandlesOfNoneDoesNothing)
{
    const int source = Open(4, 3);
    Number(4, 3);
    for (const auto& [width, height] : {std::pair{3, 4}, {4, 4}, {4, 2}, {5, 3}, {3, 3}}) {
        const int target = buffers.FGvballoc(width, height);
        buffers.FGcopypage(source, target);
        buffers.FGcopypage(source, 0);
        buffers.FGcopypage(0, target);
        EXPECT_THAT(buffers.Pixels(target), Each(0)) << width << " by " << height;
    }
}

TEST_F(Buffers, PalettesHaveHandlesAndBadOnesHaveNone)
{
    const std::vector<std::uint8_t> colours(48);
    const int first = buffers.FGlogpal(0, 16, colours);
    const int second = buffers.FGlogpal(0, 16, colours);
    EXPECT_NE(first, 0);
    EXPECT_NE(second, 0);
    EXPECT_NE(first, second);
    EXPECT_EQ(buffers.FGlogpal(0, 17, colours), 0);
    EXPECT_EQ(buffers.FGlogpal(-1, 16, colours), 0);
    EXPECT_EQ(buffers.FGlogpal(250, 16, colours), 0);
    EXPECT_EQ(buffers.FGlogpal(0, 0, colours), 0);
}

TEST_F(Buffers, RealisingAPaletteKeepsTheColoursThatShow)
{
    Open(1, 1);
    const std::vector<std::uint8_t> black(48);
    const int palette = buffers.FGlogpal(0, 16, black);
    const std::array<std::uint8_t, 3> colour = {1, 2, 3};
    buffers.FGsetdacs(0, 1, colour);
    buffers.FGrealize(palette);
    Clipboard clipboard;
    buffers.FGvb2clip(0, 0, 0, 0, clipboard);
    EXPECT_THAT(clipboard.pixels, ElementsAre(0xFF010203));
}

TEST_F(Buffers, AClipHasTheRectangleInItsColours)
{
    Open(3, 2);
    Number(3, 2);
    const std::array<std::uint8_t, 9> colours = {0x11, 0x22, 0x33, 0xFF, 0, 0, 0, 0, 0xFF};
    buffers.FGsetdacs(4, 3, colours);
    Clipboard clipboard;
    buffers.FGvb2clip(1, 2, 0, 1, clipboard);
    EXPECT_EQ(clipboard.width, 2);
    EXPECT_EQ(clipboard.height, 2);
    EXPECT_THAT(clipboard.pixels, ElementsAre(0xFF000000, 0xFF000000, 0xFFFF0000, 0xFF0000FF));
}

TEST_F(Buffers, AClipBeyondTheBufferShowsIndexZero)
{
    Open(2, 1);
    buffers.FGsetcolor(1);
    buffers.FGfillpage();
    const std::array<std::uint8_t, 6> colours = {9, 9, 9, 8, 8, 8};
    buffers.FGsetdacs(0, 2, colours);
    Clipboard clipboard;
    buffers.FGvb2clip(-1, 2, -1, 1, clipboard);
    constexpr std::uint32_t zero = 0xFF090909;
    constexpr std::uint32_t one = 0xFF080808;
    EXPECT_THAT(clipboard.pixels,
                ElementsAre(zero, zero, zero, zero, zero, one, one, zero, zero, zero, zero, zero));
}

TEST_F(Buffers, AnEmptyOrImpossibleClipIsNotHandedOut)
{
    Open(2, 1);
    Clipboard clipboard;
    buffers.FGvb2clip(1, 0, 0, 0, clipboard);
    buffers.FGvb2clip(0, 0, 1, 0, clipboard);
    buffers.FGvb2clip(INT_MIN, INT_MAX, INT_MIN, INT_MAX, clipboard);
    EXPECT_EQ(clipboard.calls, 0);
}

} // namespace
} // namespace lantern
