// SPDX-License-Identifier: GPL-3.0-or-later
#include "SettledPicture.h"

#include "TileChannel.h"

#include <gtest/gtest.h>

#include <vector>

namespace lantern::test {
namespace {

class Recorder final : public SettledWatcher {
public:
    void PixelSettled(const SettledPixel& pixel) override { pixels.push_back(pixel); }
    void Rolled(int right, int down) override { rolls.emplace_back(right, down); }
    void Looked(PacketIndex) override {}

    std::vector<SettledPixel> pixels;
    std::vector<std::pair<int, int>> rolls;
};

// A picture of three colours, which nothing has been drawn on.
TileChannel BlankChannel()
{
    TileChannel channel(true, 0, 1);
    channel.Load({0x000, 0xFFF, 0xF00});
    while (channel.SentCount() < 100)
        channel.SendOne();
    return channel;
}

Recorder Ran(TileChannel& channel)
{
    while (channel.SentCount() < 300)
        channel.SendOne();
    const auto packets = channel.Take();
    Recorder recorder;
    SettledPicture(packets).Run(recorder);
    return recorder;
}

TEST(SettledPictureTest, TellsThePacketOfAPixelsLastChange)
{
    TileChannel channel = BlankChannel();
    channel.Put(13, 25, 1, TileChannel::Urgency::Drawn);
    const Recorder recorder = Ran(channel);
    ASSERT_EQ(recorder.pixels.size(), 1U);
    EXPECT_EQ(recorder.pixels[0].x, 13);
    EXPECT_EQ(recorder.pixels[0].y, 25);
    EXPECT_EQ(recorder.pixels[0].from, 0x000);
    EXPECT_EQ(recorder.pixels[0].to, 0xFFF);
    EXPECT_EQ(recorder.pixels[0].at, 101);
}

TEST(SettledPictureTest, PassesOverWhatIsSeenForAMomentOnly)
{
    TileChannel channel = BlankChannel();
    channel.Put(13, 25, 1, TileChannel::Urgency::Drawn);
    channel.SendOne();
    channel.Put(13, 25, 2, TileChannel::Urgency::Drawn);
    const Recorder recorder = Ran(channel);
    ASSERT_EQ(recorder.pixels.size(), 1U);
    EXPECT_EQ(recorder.pixels[0].to, 0xF00);
    EXPECT_EQ(recorder.pixels[0].at, 102);
}

TEST(SettledPictureTest, TellsAChangeOfColourAsOneOfThePixelsThatHaveIt)
{
    TileChannel channel = BlankChannel();
    channel.Put(13, 25, 1, TileChannel::Urgency::Drawn);
    while (channel.SentCount() < 200)
        channel.SendOne();
    channel.Load({0x000, 0x0F0, 0xF00});
    const Recorder recorder = Ran(channel);
    ASSERT_EQ(recorder.pixels.size(), 2U);
    EXPECT_EQ(recorder.pixels[1].from, 0xFFF);
    EXPECT_EQ(recorder.pixels[1].to, 0x0F0);
    EXPECT_EQ(recorder.pixels[1].at, 201);
}

TEST(SettledPictureTest, TakesWhatIsScrolledForTheSame)
{
    TileChannel channel = BlankChannel();
    channel.Put(13, 25, 1, TileChannel::Urgency::Drawn);
    while (channel.SentCount() < 200)
        channel.SendOne();
    channel.ScrollUp(0);
    const Recorder recorder = Ran(channel);
    EXPECT_EQ(recorder.pixels.size(), 1U);
    EXPECT_EQ(recorder.rolls, (std::vector<std::pair<int, int>>{{0, -12}}));
}

TEST(SettledPictureTest, TellsThePixelsThatAScrollFills)
{
    TileChannel channel = BlankChannel();
    channel.Put(13, 5, 1, TileChannel::Urgency::Drawn);
    while (channel.SentCount() < 200)
        channel.SendOne();
    channel.ScrollUp(0);
    const Recorder recorder = Ran(channel);
    ASSERT_EQ(recorder.pixels.size(), 2U);
    EXPECT_EQ(recorder.pixels[1].y, 209);
    EXPECT_EQ(recorder.pixels[1].from, 0xFFF);
    EXPECT_EQ(recorder.pixels[1].to, 0x000);
}

} // namespace
} // namespace lantern::test
