// SPDX-License-Identifier: GPL-3.0-or-later
#include "TickTrack.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace lantern {
namespace {

constexpr std::size_t kImageHeader = 46;

// The first frame of each stretch of sound, left; both sides are to be alike.
std::vector<std::int64_t> ClickStarts(const Track& track)
{
    const auto audio = track.ClipList[1].Data.Bytes().subspan(kImageHeader);
    std::vector<std::int64_t> starts;
    std::int64_t lastLoud = -10'000;
    for (std::size_t i = 0; i + 3 < audio.size(); i += 4) {
        EXPECT_TRUE(audio[i] == audio[i + 2] && audio[i + 1] == audio[i + 3]);
        const auto frame = static_cast<std::int64_t>(i / 4);
        if (audio[i] == 0 && audio[i + 1] == 0)
            continue;
        if (frame - lastLoud > 1000)
            starts.push_back(frame);
        lastLoud = frame;
    }
    return starts;
}

// The packets that make the picture bright.
std::vector<std::int32_t> FlashPackets(const Track& track)
{
    std::vector<std::int32_t> flashes;
    for (std::int32_t i = 1; i <= track.PacketCount(); ++i) {
        if (track.PacketStore[i].Instruction == 31 && track.PacketStore[i].PacketData[2] != 0)
            flashes.push_back(i);
    }
    return flashes;
}

TEST(TickTrack, EachClickComesWithItsFlash)
{
    for (const int ms : {1000, 1200, 100, 1900, 10}) {
        const Track track = MakeTickTrack(ms);
        const std::vector<std::int32_t> flashes = FlashPackets(track);
        ASSERT_EQ(flashes.size(), static_cast<std::size_t>(kTicksOfTrack)) << ms;
        EXPECT_EQ(track.TotalLengthMs, ms * (kTicksOfTrack + 1));
        EXPECT_EQ(track.PacketCount(), track.TotalLengthMs * 3 / 10);
        EXPECT_EQ(track.ClipList[1].LengthMs, track.TotalLengthMs);
        EXPECT_EQ(track.ClipList[1].Data.Bytes().size(),
                  kImageHeader + static_cast<std::size_t>(track.TotalLengthMs) * 441 / 10 * 4);
        for (std::size_t i = 0; i < flashes.size(); ++i)
            EXPECT_EQ(flashes[i], static_cast<std::int32_t>(i + 1) * ms * 3 / 10);
        if (ms < 100)
            continue; // one click goes over into the next
        const std::vector<std::int64_t> clicks = ClickStarts(track);
        ASSERT_EQ(clicks.size(), flashes.size()) << ms;
        for (std::size_t i = 0; i < clicks.size(); ++i)
            EXPECT_EQ(clicks[i] * kPacketsPerSecond, std::int64_t{flashes[i]} * 44100) << ms;
    }
}

TEST(TickTrack, AnyDistanceMakesATrack)
{
    for (const int ms : {0, -5, 4, 1004})
        EXPECT_EQ(FlashPackets(MakeTickTrack(ms)).size(), static_cast<std::size_t>(kTicksOfTrack));
}

} // namespace
} // namespace lantern
