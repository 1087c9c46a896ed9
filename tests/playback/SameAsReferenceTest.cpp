// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFixture.h"
#include "RandomPackets.h"
#include "ReferencePicture.h"
#include "RunToPacket.h"

#include <gtest/gtest.h>

#include <random>

// The real decoder and the naive one over the same random packets: same indexes, same colours,
// same border, same view, same paints.
namespace lantern {

namespace {

// Comparing the whole picture costs more than decoding, so most packets compare the rest alone.
void ExpectSameStream(std::uint32_t seed, const PacketMix& mix, PacketIndex count,
                      PacketIndex comparePixelsEvery)
{
    RandomPackets source(seed, mix);
    PictureSet fast;
    ReferencePicture naive;
    for (PacketIndex packetNo = 1; packetNo <= count; ++packetNo) {
        const CdgPacket packet = source.Next();
        fast.Painter.Paints = 0;
        fast.Show(packetNo, packet);
        const bool painted = naive.Apply(packetNo, packet);
        if (painted)
            naive.Dirty = false;
        ASSERT_EQ(fast.Painter.Paints, painted ? 1 : 0) << seed << ": " << packetNo;
        ASSERT_EQ(fast.Picture.PictureDirty, naive.Dirty) << seed << ": " << packetNo;
        ASSERT_TRUE(StateEquals(fast.Picture, naive)) << seed << ": " << packetNo;
        if (packetNo % comparePixelsEvery == 0) {
            ASSERT_TRUE(PixelsEqual(fast, naive)) << seed << ": " << packetNo;
        }
    }
    EXPECT_TRUE(PixelsEqual(fast, naive));
}

TEST(SameAsReference, OverAMillionPacketsOfMostlyTiles)
{
    for (std::uint32_t seed = 1; seed <= 4; ++seed)
        ExpectSameStream(seed, kTileMix, 400'000, 61);
}

TEST(SameAsReference, OverAMillionPacketsOfTilesAlone)
{
    ExpectSameStream(5, kDenseTiles, 1'500'000, 127);
}

TEST(SameAsReference, OverStreamsThatScrollAlot)
{
    for (std::uint32_t seed = 11; seed <= 14; ++seed)
        ExpectSameStream(seed, kScrollMix, 2'500, 1);
}

TEST(SameAsReference, OverNoise)
{
    constexpr PacketMix kNoise = {.preset = 0,
                                  .tile = 0,
                                  .tileXor = 0,
                                  .scroll = 0,
                                  .colours = 0,
                                  .unknown = 0,
                                  .noGraphics = 0,
                                  .noise = 1};
    ExpectSameStream(21, kNoise, 500'000, 1009);
}

// A seek of a listener: anywhere, a little on, a little back, or to a snapshot's neighbourhood.
PacketIndex NextTarget(std::mt19937& random, PacketIndex current, PacketIndex count)
{
    const auto below = [&random](PacketIndex limit) {
        return static_cast<PacketIndex>(random() % static_cast<std::uint32_t>(limit));
    };
    PacketIndex target = 0;
    switch (random() % 4) {
    case 0:
        target = 1 + below(count + 50);
        break;
    case 1:
        target = current + below(600);
        break;
    case 2:
        target = current - below(600);
        break;
    default:
        target = below(count / SnapshotInterval + 1) * SnapshotInterval + below(5) - 2;
        break;
    }
    return std::clamp(target, 1, count + 50);
}

void ExpectSeeksLikeAFreshDecode(std::uint32_t seed, const PacketMix& mix, int seeks)
{
    constexpr PacketIndex kCount = 10'000;
    const auto packets = RandomPackets(seed, mix).Stream(kCount);
    std::mt19937 random(seed);
    PictureSet fast;
    for (int seek = 0; seek < seeks; ++seek) {
        const PacketIndex target = NextTarget(random, fast.Picture.PlayedPacket, kCount);
        RunToPacket(fast.Picture, fast.Interpreter, packets, target);
        ReferencePicture naive;
        naive.DecodeTo(packets, std::min(target, kCount));
        ASSERT_TRUE(StateEquals(fast.Picture, naive)) << seed << ": " << seek << " to " << target;
        ASSERT_TRUE(PixelsEqual(fast, naive)) << seed << ": " << seek << " to " << target;
    }
}

TEST(SameAsReference, AnyOrderOfSeeksIsLikeAFreshDecode)
{
    for (std::uint32_t seed = 31; seed <= 36; ++seed)
        ExpectSeeksLikeAFreshDecode(seed, kTileMix, 80);
}

TEST(SameAsReference, AnyOrderOfSeeksOverScrollsIsLikeAFreshDecode)
{
    PacketMix someScrolls = kTileMix;
    someScrolls.scroll = 4;
    ExpectSeeksLikeAFreshDecode(41, someScrolls, 15);
}

} // namespace

} // namespace lantern
