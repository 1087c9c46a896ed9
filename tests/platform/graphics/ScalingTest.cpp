// SPDX-License-Identifier: GPL-3.0-or-later
#include "RetainedImage.h"
#include "VirtualBuffers.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <gmock/gmock.h>
#include <random>
#include <string>

namespace lantern {
namespace {

using testing::Each;
using testing::IsEmpty;

// A small picture of random indexes in strong random colours.
class Scaling : public testing::Test {
protected:
    static constexpr int kWidth = 30;
    static constexpr int kHeight = 24;

    Scaling()
    {
        buffers.FGvbinit();
        handle = buffers.FGvballoc(kWidth, kHeight);
        buffers.FGvbopen(handle);
        for (std::uint8_t& byte : colours)
            byte = static_cast<std::uint8_t>(random() % 4 == 0 ? random() : (random() % 2) * 255);
        buffers.FGsetdacs(0, 16, colours);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                buffers.FGsetcolor(static_cast<int>(random() % 16));
                buffers.FGputpixel(x, y);
            }
        }
    }

    void ScaleAll(RetainedImage& image, int toX, int toY)
    {
        buffers.FGsetdc(&image);
        buffers.FGvbscale(0, kWidth - 1, 0, kHeight - 1, 0, toX, 0, toY);
    }
    double Channel(int x, int y, int channel) const
    {
        const auto entry = static_cast<std::size_t>(buffers.FGgetpixel(x, y));
        return colours[entry * 3 + static_cast<std::size_t>(channel)];
    }
    // The mean of the source over a rectangle of it, by the plain definition.
    double Mean(double left, double right, double top, double bottom, int channel) const
    {
        double sum = 0;
        for (int y = static_cast<int>(std::floor(top)); y < bottom; ++y) {
            for (int x = static_cast<int>(std::floor(left)); x < right; ++x) {
                const double covered = (std::min(right, x + 1.0) - std::max(left, double(x))) *
                                       (std::min(bottom, y + 1.0) - std::max(top, double(y)));
                sum += covered * Channel(x, y, channel);
            }
        }
        return sum / ((right - left) * (bottom - top));
    }
    void ExpectNearMean(const RetainedImage& image, int x, int y, double stepX, double stepY,
                        double tolerance)
    {
        const std::uint32_t pixel = image.At(x, y);
        ASSERT_EQ(pixel >> 24, 0xFFU);
        for (int channel = 0; channel < 3; ++channel) {
            const double mean =
                Mean(x * stepX, (x + 1) * stepX, y * stepY, (y + 1) * stepY, channel);
            const double actual = pixel >> (16 - 8 * channel) & 0xFF;
            ASSERT_LE(std::abs(actual - mean), tolerance)
                << "at " << x << ',' << y << " of " << image.width << 'x' << image.height
                << ", channel " << channel;
        }
    }

    void ExpectMeansAt(int width, int height, double tolerance)
    {
        RetainedImage image(width, height);
        ScaleAll(image, width, height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                ExpectNearMean(image, x, y, double(kWidth) / width, double(kHeight) / height,
                               tolerance);
                if (HasFatalFailure())
                    return;
            }
        }
    }

    std::mt19937 random{7};
    VirtualBuffers buffers;
    int handle = 0;
    std::array<std::uint8_t, 48> colours{};
};

TEST_F(Scaling, EachPixelIsTheMeanOfTheAreaItCovers)
{
    constexpr std::array<std::pair<int, int>, 14> sizes = {{{1, 1},
                                                            {2, 23},
                                                            {7, 5},
                                                            {29, 24},
                                                            {30, 23},
                                                            {30, 24},
                                                            {31, 25},
                                                            {37, 11},
                                                            {45, 36},
                                                            {53, 41},
                                                            {13, 77},
                                                            {59, 49},
                                                            {100, 80},
                                                            {337, 271}}};
    // Each axis rounds for itself.
    for (const auto& [width, height] : sizes)
        ExpectMeansAt(width, height, 1.06);
}

TEST_F(Scaling, MixedAlongOneAxisEachPixelIsTheNearestToItsMean)
{
    for (const auto& [width, height] :
         {std::pair{37, 24}, {45, 48}, {100, 24}, {337, 24}, {13, 24}, {7, 72}, {1, 24}})
        ExpectMeansAt(width, height, 0.53);
    for (const auto& [width, height] :
         {std::pair{30, 37}, {60, 41}, {30, 271}, {30, 11}, {90, 5}, {30, 1}})
        ExpectMeansAt(width, height, 0.53);
}

TEST_F(Scaling, AtWholeMultiplesEachPixelIsTheNearestSourcePixel)
{
    for (const auto& [factorX, factorY] : {std::pair{1, 1}, {2, 2}, {3, 3}, {5, 2}, {1, 7}}) {
        RetainedImage image(kWidth * factorX, kHeight * factorY);
        ScaleAll(image, image.width, image.height);
        for (int y = 0; y < image.height; ++y) {
            for (int x = 0; x < image.width; ++x) {
                for (int channel = 0; channel < 3; ++channel) {
                    ASSERT_EQ(image.At(x, y) >> (16 - 8 * channel) & 0xFF,
                              Channel(x / factorX, y / factorY, channel));
                }
            }
        }
    }
}

TEST_F(Scaling, ThePixelRatioMultipliesTheDestination)
{
    RetainedImage image(45, 36, 1.5);
    ScaleAll(image, 30, 24);
    RetainedImage same(45, 36);
    ScaleAll(same, 45, 36);
    EXPECT_EQ(image.pixels, same.pixels);
}

TEST_F(Scaling, OneWholeChangedRectangleIsTold)
{
    RetainedImage image(80, 70);
    buffers.FGsetdc(&image);
    buffers.FGvbscale(0, 29, 0, 23, 10, 70, 5, 65);
    ASSERT_EQ(image.changes.size(), 1U);
    EXPECT_EQ(image.changes[0], (DeviceRect{10, 5, 60, 60}));
}

TEST_F(Scaling, NothingBesideTheDestinationIsTouched)
{
    RetainedImage image(80, 70);
    buffers.FGsetdc(&image);
    buffers.FGvbscale(0, 29, 0, 23, 10, 71, 5, 66);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width + RetainedImage::kMargin; ++x) {
            const bool inside = x >= 10 && x < 71 && y >= 5 && y < 66;
            ASSERT_EQ(image.At(x, y) == RetainedImage::kUntouched, !inside) << x << ',' << y;
        }
    }
}

TEST_F(Scaling, ADestinationBeyondTheImageIsClipped)
{
    RetainedImage whole(100, 80);
    ScaleAll(whole, 100, 80);
    RetainedImage part(40, 30);
    buffers.FGsetdc(&part);
    buffers.FGvbscale(0, kWidth - 1, 0, kHeight - 1, -31, 69, -17, 63);
    for (int y = 0; y < part.height; ++y) {
        for (int x = 0; x < part.width; ++x)
            ASSERT_EQ(part.At(x, y), whole.At(x + 31, y + 17)) << x << ',' << y;
    }
    ASSERT_EQ(part.changes.size(), 1U);
    EXPECT_EQ(part.changes[0], (DeviceRect{0, 0, 40, 30}));
}

TEST_F(Scaling, ASourceBeyondTheBufferShowsIndexZero)
{
    RetainedImage image(40, 34);
    buffers.FGsetdc(&image);
    buffers.FGvbscale(-5, 34, -5, 28, 0, 40, 0, 34);
    RetainedImage plain(kWidth, kHeight);
    ScaleAll(plain, kWidth, kHeight);
    const std::uint32_t outside =
        0xFF000000U | std::uint32_t{colours[0]} << 16 | std::uint32_t{colours[1]} << 8 | colours[2];
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const bool inside = x >= 5 && x < 35 && y >= 5 && y < 29;
            ASSERT_EQ(image.At(x, y), inside ? plain.At(x - 5, y - 5) : outside) << x << ',' << y;
        }
    }
}

TEST_F(Scaling, ASourceWhollyOutsideShowsIndexZero)
{
    RetainedImage image(4, 4);
    buffers.FGsetdc(&image);
    buffers.FGvbscale(INT_MAX - 3, INT_MAX, INT_MIN, INT_MIN + 3, 0, 4, 0, 4);
    EXPECT_EQ(image.changes.size(), 1U);
    EXPECT_EQ(image.At(0, 0), image.At(3, 3));
    EXPECT_EQ(image.At(0, 0) >> 16 & 0xFF, colours[0]);
}

TEST_F(Scaling, EmptyOrImpossibleRequestsDrawNothing)
{
    RetainedImage image(40, 30);
    buffers.FGsetdc(&image);
    buffers.FGvbscale(0, 29, 0, 23, 0, 0, 0, 30);
    buffers.FGvbscale(0, 29, 0, 23, 0, 40, 0, -1);
    buffers.FGvbscale(0, 29, 0, 23, 40, 0, 30, 0);
    buffers.FGvbscale(1, 0, 0, 23, 0, 40, 0, 30);
    buffers.FGvbscale(0, 29, 9, 3, 0, 40, 0, 30);
    buffers.FGvbscale(0, 29, 0, 23, 40, 90, 0, 30);
    buffers.FGvbscale(0, 29, 0, 23, -50, 0, 0, 30);
    buffers.FGvbscale(INT_MIN, INT_MAX, INT_MIN, INT_MAX, 0, 40, 0, 30);
    buffers.FGvbscale(0, 29, 0, 23, INT_MAX, INT_MIN, INT_MAX, INT_MIN);
    EXPECT_THAT(image.changes, IsEmpty());
    EXPECT_THAT(image.pixels, Each(RetainedImage::kUntouched));
}

TEST_F(Scaling, AnEnormousDestinationDrawsItsVisiblePart)
{
    RetainedImage image(40, 30, 64.0);
    buffers.FGsetdc(&image);
    buffers.FGvbscale(0, 29, 0, 23, INT_MIN, INT_MAX, INT_MIN, INT_MAX);
    EXPECT_EQ(image.changes.size(), 1U);
    EXPECT_EQ(image.At(39, 29) >> 24, 0xFFU);
}

class BadSurface : public ScaleSurface {
public:
    SurfaceImage Image() override { return image; }
    void Changed(const DeviceRect&) override { ++changes; }
    SurfaceImage image;
    int changes = 0;
};

TEST_F(Scaling, ASurfaceWithoutAUsableImageIsLeftAlone)
{
    std::vector<std::uint32_t> pixels(100, 5);
    const SurfaceImage good{pixels.data(), 10, 10, 10, 1.0, 1};
    std::vector<SurfaceImage> images(8, good);
    images[0].pixels = nullptr;
    images[1].width = 0;
    images[2].height = -4;
    images[3].stride = 9;
    images[4].devicePixelRatio = 0.0;
    images[5].devicePixelRatio = -1.0;
    images[6].devicePixelRatio = std::nan("");
    images[7].devicePixelRatio = 1e300;
    BadSurface surface;
    buffers.FGsetdc(&surface);
    for (const SurfaceImage& image : images) {
        surface.image = image;
        buffers.FGvbscale(0, 29, 0, 23, 0, 10, 0, 10);
    }
    EXPECT_EQ(surface.changes, 0);
    EXPECT_THAT(pixels, Each(5U));
    surface.image = good; // its rows follow each other without a gap
    buffers.FGvbscale(0, 29, 0, 23, 0, 10, 0, 10);
    EXPECT_EQ(surface.changes, 1);
    EXPECT_EQ(std::ranges::count(pixels, 5U), 0);
}

TEST_F(Scaling, NoSurfaceShowsNothing)
{
    RetainedImage image(30, 24);
    ScaleAll(image, 30, 24);
    buffers.FGsetdc(nullptr);
    image.changes.clear();
    buffers.FGfillpage();
    buffers.FGvbscale(0, 29, 0, 23, 0, 30, 0, 24);
    EXPECT_THAT(image.changes, IsEmpty());
}

TEST_F(Scaling, ReducedNoLineIsLost)
{
    // One bright line on black, at each place in turn, in an eighth of the height.
    buffers.FGsetdacs(0, 2, std::array<std::uint8_t, 6>{0, 0, 0, 255, 255, 255});
    for (int line = 0; line < kHeight; ++line) {
        buffers.FGsetcolor(0);
        buffers.FGfillpage();
        buffers.FGsetcolor(1);
        buffers.FGrect(0, kWidth - 1, line, line);
        RetainedImage image(kWidth, 3);
        ScaleAll(image, kWidth, 3);
        EXPECT_EQ(image.At(4, line / 8) & 0xFF, 32U) << "line " << line;
    }
}

} // namespace
} // namespace lantern
