// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <random>
#include <vector>

namespace lantern {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kSmoothWidth = 40;
constexpr int kSmoothHeight = 30;

// A small picture, shown as large as a test wants it.
class Smooth : public testing::Test {
protected:
    Smooth()
    {
        buffers.FGvbinit();
        buffers.FGvbopen(buffers.FGvballoc(kSmoothWidth, kSmoothHeight));
        SetColour(kPaper, 0x000055);
        SetColour(kInk, 0xFFDD00);
        SetColour(kRim, 0x000000);
        SetColour(kOther, 0xEE3322);
    }

    void SetColour(int index, unsigned rgb)
    {
        const std::array<std::uint8_t, 3> bytes = {static_cast<std::uint8_t>(rgb >> 16),
                                                   static_cast<std::uint8_t>(rgb >> 8),
                                                   static_cast<std::uint8_t>(rgb)};
        buffers.FGsetdacs(index, 1, bytes);
        words[static_cast<std::size_t>(index)] = 0xFF000000U | rgb;
    }
    void Put(int x, int y, int index)
    {
        buffers.FGsetcolor(index);
        buffers.FGputpixel(x, y);
    }
    void Rect(int minX, int maxX, int minY, int maxY, int index)
    {
        buffers.FGsetcolor(index);
        buffers.FGrect(minX, maxX, minY, maxY);
    }
    void Noise(int colours)
    {
        for (int y = 0; y < kSmoothHeight; ++y) {
            for (int x = 0; x < kSmoothWidth; ++x)
                Put(x, y, Below(colours));
        }
    }
    int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    RetainedImage Shown(int width, int height, PictureLook look = PictureLook::Smooth)
    {
        RetainedImage image(width, height);
        image.look = look;
        buffers.FGsetdc(&image);
        buffers.FGvbscale(0, kSmoothWidth - 1, 0, kSmoothHeight - 1, 0, width, 0, height);
        buffers.FGsetdc(nullptr);
        return image;
    }
    // The device pixel that shows the middle of a pixel of the picture.
    static std::uint32_t Middle(const RetainedImage& image, int x, int y)
    {
        return image.At((2 * x + 1) * image.width / (2 * kSmoothWidth),
                        (2 * y + 1) * image.height / (2 * kSmoothHeight));
    }
    int CountOf(const RetainedImage& image, std::uint32_t word) const
    {
        return static_cast<int>(std::ranges::count(image.pixels, word));
    }

    static constexpr int kPaper = 0;
    static constexpr int kInk = 1;
    static constexpr int kRim = 2;
    static constexpr int kOther = 3;
    VirtualBuffers buffers;
    std::array<std::uint32_t, 256> words{};
    std::mt19937 random{7};
};

// How far a colour is from lying between two others, in parts of a channel.
double DistanceFromMixes(std::uint32_t pixel, std::uint32_t first, std::uint32_t second)
{
    const auto channel = [](std::uint32_t word, int shift) {
        return static_cast<double>(word >> shift & 0xFF);
    };
    double along = 0;
    double length = 0;
    for (const int shift : {0, 8, 16}) {
        const double span = channel(second, shift) - channel(first, shift);
        along += (channel(pixel, shift) - channel(first, shift)) * span;
        length += span * span;
    }
    const double part = length == 0 ? 0 : std::clamp(along / length, 0.0, 1.0);
    double farthest = 0;
    for (const int shift : {0, 8, 16}) {
        const double mix =
            channel(first, shift) + part * (channel(second, shift) - channel(first, shift));
        farthest = std::max(farthest, std::abs(channel(pixel, shift) - mix));
    }
    return farthest;
}

TEST_F(Smooth, BelowOneAndAHalfItIsSharp)
{
    Noise(4);
    EXPECT_EQ(Shown(59, 45).pixels, Shown(59, 45, PictureLook::Sharp).pixels);
    EXPECT_EQ(Shown(60, 44).pixels, Shown(60, 44, PictureLook::Sharp).pixels);
    EXPECT_EQ(Shown(20, 15).pixels, Shown(20, 15, PictureLook::Sharp).pixels);
    EXPECT_NE(Shown(60, 45).pixels, Shown(60, 45, PictureLook::Sharp).pixels);
}

TEST_F(Smooth, OneColourFillsAll)
{
    Rect(0, kSmoothWidth, 0, kSmoothHeight, kInk);
    const RetainedImage image = Shown(443, 331);
    EXPECT_EQ(CountOf(image, words[kInk]), 443 * 331);
    EXPECT_EQ(CountOf(image, RetainedImage::kUntouched), RetainedImage::kMargin * 331);
}

TEST_F(Smooth, StraightEdgesStayWhereTheyAre)
{
    Rect(10, 29, 8, 21, kInk);
    const RetainedImage image = Shown(kSmoothWidth * 8, kSmoothHeight * 8);
    const auto expectEdge = [&](std::uint32_t paper, std::uint32_t ink, int at) {
        // The two at the edge may have a trace of each other, the ones beyond have none.
        ASSERT_LE((paper >> 16 & 0xFF), 16U) << at;
        ASSERT_GE((ink >> 16 & 0xFF), 0xEFU) << at;
    };
    for (int y = 11 * 8; y < 19 * 8; ++y) {
        expectEdge(image.At(10 * 8 - 1, y), image.At(10 * 8, y), y);
        expectEdge(image.At(30 * 8, y), image.At(30 * 8 - 1, y), y);
        ASSERT_EQ(image.At(10 * 8 - 2, y), words[kPaper]);
        ASSERT_EQ(image.At(30 * 8 - 2, y), words[kInk]);
    }
    for (int x = 13 * 8; x < 27 * 8; ++x) {
        expectEdge(image.At(x, 8 * 8 - 1), image.At(x, 8 * 8), x);
        expectEdge(image.At(x, 22 * 8), image.At(x, 22 * 8 - 1), x);
        ASSERT_EQ(image.At(x, 8 * 8 - 2), words[kPaper]);
        ASSERT_EQ(image.At(x, 22 * 8 - 2), words[kInk]);
    }
}

TEST_F(Smooth, ASteppedDiagonalBecomesOne)
{
    for (int y = 0; y < kSmoothHeight; ++y)
        Rect(0, y, y, y, kInk);
    const RetainedImage image = Shown(kSmoothWidth * 8, kSmoothHeight * 8);
    // Away from the picture's border, ink and paper part along the diagonal.
    for (int y = 5 * 8; y < 25 * 8; ++y) {
        const int edge = y + 4; // it goes through the middles of the steps
        EXPECT_EQ(image.At(edge - 3, y), words[kInk]) << y;
        EXPECT_EQ(image.At(edge + 3, y), words[kPaper]) << y;
    }
}

TEST_F(Smooth, EachPixelKeepsItsColourInItsMiddle)
{
    Noise(2);
    for (const int scale : {3, 5, 11}) {
        const RetainedImage image = Shown(kSmoothWidth * scale, kSmoothHeight * scale);
        for (int y = 0; y < kSmoothHeight; ++y) {
            for (int x = 0; x < kSmoothWidth; ++x) {
                const std::uint32_t own = words[static_cast<std::size_t>(buffers.FGgetpixel(x, y))];
                const std::uint32_t other = own == words[kInk] ? words[kPaper] : words[kInk];
                const std::uint32_t seen = Middle(image, x, y);
                const auto green = [](std::uint32_t word) {
                    return static_cast<int>(word >> 8 & 0xFF);
                };
                EXPECT_LT(std::abs(green(seen) - green(own)), std::abs(green(seen) - green(other)))
                    << x << ", " << y << " at " << scale;
            }
        }
    }
}

TEST_F(Smooth, LinesOfOnePixelHaveNoGaps)
{
    Rect(5, 34, 4, 4, kInk);
    Rect(7, 7, 8, 26, kInk);
    for (int step = 0; step < 16; ++step) // and a diagonal, whose pixels touch at corners only
        Put(14 + step, 9 + step, kInk);
    const int scale = 10;
    const RetainedImage image = Shown(kSmoothWidth * scale, kSmoothHeight * scale);
    for (int x = 5 * scale + scale / 2; x < 34 * scale; ++x)
        EXPECT_EQ(image.At(x, 4 * scale + scale / 2), words[kInk]) << x;
    for (int y = 8 * scale + scale / 2; y < 26 * scale; ++y)
        EXPECT_EQ(image.At(7 * scale + scale / 2, y), words[kInk]) << y;
    for (int step = scale; step < 15 * scale; ++step)
        EXPECT_EQ(image.At(14 * scale + scale / 2 + step, 9 * scale + scale / 2 + step),
                  words[kInk])
            << step;
    // As thick as before, more or less.
    int inked = 0;
    for (int y = 3 * scale; y < 6 * scale; ++y)
        inked += image.At(20 * scale, y) == words[kInk] ? 1 : 0;
    EXPECT_GE(inked, 7);
    EXPECT_LE(inked, 13);
}

TEST_F(Smooth, ADotStays)
{
    Put(10, 10, kInk);
    Rect(20, 21, 10, 11, kInk);
    const int scale = 12;
    const RetainedImage image = Shown(kSmoothWidth * scale, kSmoothHeight * scale);
    const auto area = [&](int left, int right) {
        int inked = 0;
        for (int y = 0; y < image.height; ++y) {
            for (int x = left * scale; x < right * scale; ++x)
                inked += image.At(x, y) == words[kInk] ? 1 : 0;
        }
        return static_cast<double>(inked) / (scale * scale);
    };
    EXPECT_GT(area(8, 13), 0.5);
    EXPECT_LT(area(8, 13), 1.1);
    EXPECT_GT(area(18, 24), 2.8);
    EXPECT_LT(area(18, 24), 4.1);
}

TEST_F(Smooth, OnlyMixesOfNeighbouringColoursAppear)
{
    for (std::size_t index = 0; index < 16; ++index) {
        SetColour(static_cast<int>(index), static_cast<unsigned>(random() & 0xFFFFFF));
    }
    Noise(16);
    const int scale = 6;
    const RetainedImage image = Shown(kSmoothWidth * scale, kSmoothHeight * scale);
    int shades = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const int column = static_cast<int>(std::floor((x + 0.5) / scale - 0.5));
            const int row = static_cast<int>(std::floor((y + 0.5) / scale - 0.5));
            std::vector<std::uint32_t> around;
            for (int corner = 0; corner < 4; ++corner) {
                const int px = std::clamp(column + corner % 2, 0, kSmoothWidth - 1);
                const int py = std::clamp(row + corner / 2, 0, kSmoothHeight - 1);
                around.push_back(words[static_cast<std::size_t>(buffers.FGgetpixel(px, py))]);
            }
            double nearest = 255;
            for (const std::uint32_t first : around) {
                for (const std::uint32_t second : around)
                    nearest = std::min(nearest, DistanceFromMixes(image.At(x, y), first, second));
            }
            // Colours on one line, more or less, may all three be in it.
            ASSERT_LE(nearest, 10) << x << ", " << y;
            shades += nearest > 1 ? 1 : 0;
            ASSERT_EQ(image.At(x, y) >> 24, 0xFFU);
        }
    }
    EXPECT_LT(shades, image.width * image.height / 500);
}

TEST_F(Smooth, ShadesInARowFollowEachOther)
{
    // From paper to ink through two shades, level and slanted.
    SetColour(4, 0x554938);
    SetColour(5, 0xAA931C);
    for (int y = 0; y < kSmoothHeight; ++y) {
        const int x = 10 + y / 2;
        Rect(x, x, y, y, 4);
        Rect(x + 1, x + 1, y, y, 5);
        Rect(x + 2, kSmoothWidth, y, y, kInk);
    }
    const RetainedImage image = Shown(kSmoothWidth * 9, kSmoothHeight * 9);
    for (int y = 0; y < image.height; ++y) {
        std::uint32_t red = 0;
        for (int x = 0; x < image.width; ++x) {
            const std::uint32_t next = image.At(x, y) >> 16 & 0xFF;
            ASSERT_GE(next, red) << x << ", " << y;
            red = next;
        }
    }
}

TEST_F(Smooth, TwoIndexesOfOneColourAreOne)
{
    Noise(3);
    const std::vector<std::uint32_t> before = Shown(400, 300).pixels;
    // Every other pixel of the ink gets another number for the same colour.
    SetColour(9, 0xFFDD00);
    for (int y = 0; y < kSmoothHeight; ++y) {
        for (int x = y % 2; x < kSmoothWidth; x += 2) {
            if (buffers.FGgetpixel(x, y) == kInk)
                Put(x, y, 9);
        }
    }
    EXPECT_EQ(Shown(400, 300).pixels, before);
}

// A letter with an outline is wiped from one side: its outline was never touched.
TEST_F(Smooth, AWipeLeavesTheOutlineAsItIs)
{
    Rect(8, 30, 6, 24, kRim);
    Rect(10, 28, 8, 22, kInk);
    Rect(14, 24, 12, 18, kRim);
    Rect(15, 23, 13, 17, kPaper);
    const RetainedImage before = Shown(kSmoothWidth * 7, kSmoothHeight * 7);
    for (int y = 0; y < kSmoothHeight; ++y) {
        for (int x = 0; x < 17; ++x) {
            if (buffers.FGgetpixel(x, y) == kInk)
                Put(x, y, kOther);
        }
    }
    const RetainedImage after = Shown(kSmoothWidth * 7, kSmoothHeight * 7);
    // Where outline meets paper nothing changed at all, not even where old and new colour meet.
    const auto isRimOrPaper = [&](std::uint32_t word) {
        return (word >> 16 & 0xFF) == 0 && (word >> 8 & 0xFF) == 0;
    };
    int compared = 0;
    for (std::size_t at = 0; at < before.pixels.size(); ++at) {
        if (!isRimOrPaper(before.pixels[at]))
            continue;
        ++compared;
        ASSERT_EQ(after.pixels[at], before.pixels[at]) << at;
    }
    EXPECT_GT(compared, 10000);
}

class SmoothView : public View {
protected:
    SmoothView() { image.look = PictureLook::Smooth; }
};

constexpr std::array<std::uint8_t, 12> kSolidTile = {63, 63, 63, 63, 63, 63,
                                                     63, 63, 63, 63, 63, 63};

TEST_F(SmoothView, AnotherLookDrawsAll)
{
    Show();
    const std::vector<std::uint32_t> smooth = image.pixels;
    image.look = PictureLook::Sharp;
    EXPECT_THAT(ChangesOfShow(), ElementsAre(kAll));
    image.look = PictureLook::Smooth;
    EXPECT_THAT(ChangesOfShow(), ElementsAre(kAll));
    EXPECT_EQ(image.pixels, smooth);
    EXPECT_THAT(ChangesOfShow(), IsEmpty());
}

// So far the pixels around reach; at twice its size a pixel's middle lies between two of the
// surface.
TEST_F(SmoothView, ATileRedrawsAPixelAndAHalfAroundIt)
{
    Show();
    buffers.DrawTile(6 + 60, 12 + 48, kSolidTile, 0, 1, false);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{120 - 3, 96 - 3, 12 + 6, 24 + 6}));
    buffers.DrawTile(6, 12, kSolidTile, 0, 1, false);
    EXPECT_THAT(ChangesOfShow(), ElementsAre(DeviceRect{0, 0, 12 + 3, 24 + 3}));
}

TEST_F(SmoothView, APictureCutOffByTheImageIsPartOfTheWhole)
{
    std::mt19937 noise(3);
    for (int y = 12; y < 204; y += 12) {
        for (int x = 6; x < 294; x += 6) {
            std::array<std::uint8_t, 12> rows{};
            for (std::uint8_t& row : rows)
                row = static_cast<std::uint8_t>(noise() % 64);
            buffers.DrawTile(x, y, rows, static_cast<std::uint8_t>(noise() % 16),
                             static_cast<std::uint8_t>(noise() % 16), false);
        }
    }
    RetainedImage whole(1000, 700);
    whole.look = PictureLook::Smooth;
    buffers.FGsetdc(&whole);
    buffers.FGvbscale(6, 293, 12, 203, 0, 1000, 0, 700);
    RetainedImage part(431, 283);
    part.look = PictureLook::Smooth;
    buffers.FGsetdc(&part);
    buffers.FGvbscale(6, 293, 12, 203, -301, 699, -207, 493);
    for (int y = 0; y < part.height; ++y) {
        for (int x = 0; x < part.width; ++x)
            ASSERT_EQ(part.At(x, y), whole.At(x + 301, y + 207)) << x << ", " << y;
    }
}

TEST_F(SmoothView, AHugeScaleShowsOnePixelOfThePicture)
{
    buffers.FGsetcolor(5);
    buffers.FGfillpage();
    buffers.FGvbscale(6, 293, 12, 203, -1'000'000'000, 1'000'000'000, -1'000'000'000,
                      1'000'000'000);
    EXPECT_EQ(image.At(0, 0), image.At(575, 383));
    EXPECT_EQ(image.At(0, 0) & 0xFF, std::uint32_t{colours[17]});
}

TEST_F(SmoothView, EachOf256ColoursMeetsEveryOther)
{
    std::vector<std::uint8_t> all(std::size_t{3} * 256);
    for (std::size_t byte = 0; byte < all.size(); ++byte)
        all[byte] = static_cast<std::uint8_t>(byte / 3 * (byte % 3 == 0 ? 1 : byte % 3 * 37));
    buffers.FGsetdacs(0, 256, all);
    std::mt19937 noise(5);
    for (int y = 0; y < 216; ++y) {
        for (int x = 0; x < 300; ++x) {
            buffers.FGsetcolor(static_cast<int>(noise() % 256));
            buffers.FGputpixel(x, y);
        }
    }
    Show();
    const std::vector<std::uint32_t> first = image.pixels;
    ++image.generation;
    Show();
    EXPECT_EQ(image.pixels, first);
    // Black and white come back as they were.
    buffers.FGsetcolor(3);
    buffers.FGfillpage();
    Show();
    EXPECT_EQ(image.At(77, 99),
              0xFF000000U | std::uint32_t{all[9]} << 16 | std::uint32_t{all[10]} << 8 | all[11]);
}

} // namespace
} // namespace lantern
