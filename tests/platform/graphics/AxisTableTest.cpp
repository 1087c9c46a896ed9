// SPDX-License-Identifier: GPL-3.0-or-later
#include "AxisTable.h"

#include <gmock/gmock.h>
#include <numeric>

namespace lantern {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

AxisGeometry Plain(int sourceCount, int deviceCount)
{
    return MakeAxisGeometry(sourceCount, 0, deviceCount, 1.0, deviceCount);
}

TEST(AxisGeometry, EdgesAreRoundedAtDevicePixelsAndClippedToTheImage)
{
    const AxisGeometry geometry = MakeAxisGeometry(10, -3, 101, 1.25, 120);
    EXPECT_EQ(geometry.beginEdge, -4);
    EXPECT_EQ(geometry.endEdge, 126);
    EXPECT_EQ(geometry.clipBegin, 0);
    EXPECT_EQ(geometry.clipEnd, 120);
}

TEST(AxisTable, AtAWholeMultipleEachDevicePixelShowsOneSourcePixel)
{
    const AxisTable table(Plain(3, 6));
    EXPECT_THAT(table.FirstSources({0, 6}), ElementsAre(0, 0, 1, 1, 2, 2));
    EXPECT_THAT(table.PairPixels({0, 6}).pixels, IsEmpty());
    EXPECT_THAT(table.CrowdedPixels({0, 6}), IsEmpty());
}

TEST(AxisTable, EnlargedOnlyPixelsOnAnEdgeArePairs)
{
    const AxisTable table(Plain(2, 5));
    EXPECT_THAT(table.PairPixels({0, 5}).pixels, ElementsAre(2));
    EXPECT_THAT(table.PairPixels({0, 5}).weights, ElementsAre(16384, 16384, 16384, 16384));
    EXPECT_THAT(table.CrowdedPixels({0, 5}), IsEmpty());
    EXPECT_THAT(table.Weights(2),
                ElementsAre(AxisTable::kWholeWeight / 2, AxisTable::kWholeWeight / 2));
    EXPECT_THAT(table.PairPixels({0, 2}).pixels, IsEmpty());
    EXPECT_THAT(table.PairPixels({3, 5}).pixels, IsEmpty());
}

TEST(AxisTable, ReducedEachSourcePixelTakesPart)
{
    const AxisTable table(Plain(10, 4));
    EXPECT_EQ(table.FirstSource(0), 0);
    EXPECT_EQ(table.LastSource(0), 2);
    EXPECT_EQ(table.FirstSource(1), 2);
    EXPECT_EQ(table.LastSource(3), 9);
    EXPECT_THAT(table.CrowdedPixels({0, 4}), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(table.CrowdedPixels({1, 3}), ElementsAre(1, 2));
}

TEST(AxisTable, WeightsOfEachPixelAddUpToTheWhole)
{
    for (const int source : {1, 2, 3, 7, 192, 288, 1000}) {
        for (const int device : {1, 2, 5, 191, 289, 431, 1001}) {
            const AxisTable table(Plain(source, device));
            for (int pixel = 0; pixel < device; ++pixel) {
                const auto weights = table.Weights(pixel);
                ASSERT_EQ(std::accumulate(weights.begin(), weights.end(), 0U),
                          AxisTable::kWholeWeight);
                ASSERT_LT(table.LastSource(pixel), source);
            }
        }
    }
}

TEST(AxisTable, AClippedAxisHasTheSamePixelsAsAWholeOne)
{
    const AxisTable whole(Plain(288, 1000));
    const AxisTable part(MakeAxisGeometry(288, -300, 700, 1.0, 200));
    for (int pixel = 0; pixel < 200; ++pixel) {
        ASSERT_EQ(part.FirstSource(pixel), whole.FirstSource(pixel + 300));
        ASSERT_THAT(part.Weights(pixel), testing::ElementsAreArray(whole.Weights(pixel + 300)));
    }
}

TEST(DevicePixels, AreThoseThatTheTableGivesToTheSourcePixels)
{
    for (const int device : {1, 5, 100, 288, 431, 576, 721}) {
        const AxisGeometry geometry = MakeAxisGeometry(288, -7, device - 7, 1.0, device);
        const AxisTable table(geometry);
        for (const AxisRange source : {AxisRange{0, 6}, {6, 12}, {7, 8}, {282, 288}, {0, 288}}) {
            const AxisRange pixels = DevicePixelsOf(geometry, source);
            for (int pixel = geometry.clipBegin; pixel < geometry.clipEnd; ++pixel) {
                const bool shows = table.FirstSource(pixel) < source.end &&
                                   table.LastSource(pixel) >= source.begin;
                ASSERT_EQ(shows, pixel >= pixels.begin && pixel < pixels.end)
                    << "pixel " << pixel << " of " << device;
            }
        }
    }
}

} // namespace
} // namespace lantern
