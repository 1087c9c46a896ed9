// SPDX-License-Identifier: GPL-3.0-or-later
#include "Track.h"

#include "OwnMemory.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lantern::test {
namespace {

constexpr PacketIndex kPacketsOfAnHour = 3600 * kPacketsPerSecond;

TEST(Track, AnHourOfEmptyPacketsTakesNoMemory)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "A sanitizer fills memory itself.";
#endif
    const std::int64_t before = OwnKibibytes();
    Track track;
    track.PacketStore.Resize(kPacketsOfAnHour);
    const CdgPacket empty;
    EXPECT_EQ(std::ranges::count(track.PacketStore, empty), kPacketsOfAnHour);
    EXPECT_LT(OwnKibibytes() - before, 1024);
    track.PacketStore[kPacketsOfAnHour].Command = 9;
    EXPECT_EQ(track.PacketStore[kPacketsOfAnHour].Command, 9);
}

TEST(Track, PacketsStayAsTheArrayGrowsAndNewOnesAreEmpty)
{
    Track track;
    auto& packets = track.PacketStore;
    for (const PacketIndex count : {10, 4, 12, 3000, 5, 200'000}) {
        const PacketIndex before = packets.Count();
        packets.Resize(count);
        for (PacketIndex i = 1; i <= count; ++i) {
            ASSERT_EQ(packets[i].Command, i <= before ? 9 : 0) << i << " of " << count;
            packets[i].Command = 9;
        }
    }
    packets.Erase();
    packets.Resize(200'000);
    EXPECT_EQ(std::ranges::count(packets, CdgPacket{}), 200'000);
}

} // namespace
} // namespace lantern::test
