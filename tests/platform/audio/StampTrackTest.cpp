// SPDX-License-Identifier: GPL-3.0-or-later
#include "StampTrack.h"

#include <gtest/gtest.h>

#include <limits>

namespace lantern {
namespace {

constexpr AVRational kMilliseconds = {1, 1000};
constexpr int kStampRate = 8000; // eight frames to a millisecond

// The stamps of packets, in milliseconds.
struct Track : StampTrack {
    Track() : StampTrack(kMilliseconds) {}

    Track& Packet(std::int64_t stamp, std::int64_t duration)
    {
        AVPacket packet = {};
        packet.pts = stamp;
        packet.duration = duration;
        Note(packet);
        return *this;
    }
    bool Bears(std::int64_t claimedFrames) const { return BearsOut(claimedFrames, kStampRate); }
    bool Refuses(std::int64_t claimedFrames) const { return Refutes(claimedFrames, kStampRate); }
};

TEST(StampTrack, WithoutStampsNoClaimIsBorneOutOrRefuted)
{
    Track track;
    EXPECT_FALSE(track.Bears(0));
    EXPECT_FALSE(track.Refuses(0));
    track.Packet(AV_NOPTS_VALUE, 100);
    EXPECT_FALSE(track.Bears(0));
    EXPECT_FALSE(track.Refuses(0));
}

TEST(StampTrack, APacketWithoutAStampIsPassedOver)
{
    EXPECT_TRUE(Track().Packet(0, 100).Packet(AV_NOPTS_VALUE, 100).Packet(100, 100).Bears(8 * 200));
}

TEST(StampTrack, AClaimMayLieUpToASecondBehindTheLastPacket)
{
    Track track;
    track.Packet(0, 900).Packet(900, 100);
    EXPECT_TRUE(track.Bears(8 * 1000));
    EXPECT_TRUE(track.Bears(8 * 2000));
    EXPECT_FALSE(track.Bears(8 * 2000 + 1));
}

TEST(StampTrack, AClaimIsRefutedByAPacketMoreThanASecondBehindIt)
{
    Track track;
    track.Packet(0, 3000).Packet(3000, 100);
    EXPECT_FALSE(track.Refuses(8 * 2000));
    EXPECT_TRUE(track.Bears(8 * 2000));
    EXPECT_TRUE(track.Refuses(8 * 2000 - 1));
    EXPECT_FALSE(track.Bears(8 * 2000 - 1));
}

TEST(StampTrack, PacketsMayLeaveGapsOfASecondAndNoMore)
{
    EXPECT_TRUE(Track().Packet(0, 100).Packet(1100, 100).Bears(8 * 1200));
    EXPECT_FALSE(Track().Packet(0, 100).Packet(1101, 100).Bears(8 * 1201));
    // And a broken row does not mend.
    EXPECT_FALSE(Track().Packet(0, 100).Packet(1101, 100).Packet(1201, 100).Bears(8 * 1301));
}

TEST(StampTrack, PacketsMayNotGoBack)
{
    EXPECT_TRUE(Track().Packet(0, 100).Packet(100, 100).Packet(100, 100).Bears(8 * 200));
    EXPECT_FALSE(Track().Packet(0, 100).Packet(100, 100).Packet(99, 100).Bears(8 * 200));
}

TEST(StampTrack, PacketsWithoutDurationsAreAsLongAsTheStepBetweenThem)
{
    Track track;
    track.Packet(0, 0).Packet(5000, 0);
    EXPECT_TRUE(track.Bears(8 * 11000));
    EXPECT_FALSE(track.Bears(8 * 11000 + 1));
    track.Packet(11000, 0);
    EXPECT_TRUE(track.Bears(8 * 17000));
    track.Packet(18001, 0); // at 17000 or a second later it would follow upon the last
    EXPECT_FALSE(track.Bears(8 * 18000));
}

TEST(StampTrack, AFirstPacketWithoutADurationHasNone)
{
    Track track;
    track.Packet(700, 0);
    EXPECT_TRUE(track.Bears(8 * 1000));
    EXPECT_FALSE(track.Bears(8 * 1000 + 1));
}

TEST(StampTrack, TheSoundStartsWithTheFirstPacketButNotBeforeTimeZero)
{
    EXPECT_TRUE(Track().Packet(500, 100).Packet(600, 100).Bears(8 * 1200));
    EXPECT_FALSE(Track().Packet(500, 100).Packet(600, 100).Bears(8 * 1200 + 1));
    EXPECT_TRUE(Track().Packet(-100, 100).Packet(0, 100).Bears(8 * 1100));
    EXPECT_FALSE(Track().Packet(-100, 100).Packet(0, 100).Bears(8 * 1100 + 1));
}

TEST(StampTrack, StampsOutOfAllReasonHarmNothing)
{
    constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min() + 1;
    Track late;
    late.Packet(0, 100).Packet(kHighest, kHighest);
    EXPECT_FALSE(late.Bears(8 * 100));
    EXPECT_FALSE(late.Refuses(kHighest));
    Track early;
    early.Packet(500, 100).Packet(kLowest, 100);
    EXPECT_FALSE(early.Bears(8 * 100));
    EXPECT_FALSE(early.Refuses(8 * 100));
}

} // namespace
} // namespace lantern
