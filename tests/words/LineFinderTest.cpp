// SPDX-License-Identifier: GPL-3.0-or-later
#include "LineFinder.h"

#include "TileChannel.h"

#include <gtest/gtest.h>

#include <vector>

namespace lantern::test {
namespace {

constexpr DiscColour kUnsung = 0xFFF;
constexpr DiscColour kSung = 0xF00;

class LineRecorder final : public LineWatcher {
public:
    void LineEnded(const FoundLine& line) override { lines.push_back(line); }
    std::vector<FoundLine> lines;
};

// Strokes for letters, in colour 1 while they are not sung and 2 then.
class LineFinderTest : public ::testing::Test {
protected:
    static constexpr int kStrokes = 20;

    LineFinderTest()
    {
        m_channel.Load({0x000, kUnsung, kSung});
        Wait(100);
    }
    void Wait(int packets)
    {
        for (int i = 0; i < packets; ++i)
            m_channel.SendOne();
    }
    // Each stroke after so many packets.
    void Draw(std::uint8_t index, int packetsEach)
    {
        for (int stroke = 0; stroke < kStrokes; ++stroke) {
            for (int y = 50; y < 65; ++y) {
                for (int x = 0; x < 3; ++x)
                    m_channel.Put(60 + 6 * stroke + x, y, index, TileChannel::Urgency::Drawn);
            }
            Wait(packetsEach);
        }
    }
    std::vector<FoundLine> Found()
    {
        Wait(300);
        WordColours colours;
        colours.text.set(kUnsung);
        colours.text.set(kSung);
        colours.wipes = {{kUnsung, kSung}};
        const auto packets = m_channel.Take();
        LineRecorder recorder;
        LineFinder(packets, colours, recorder).Run();
        return recorder.lines;
    }

    TileChannel m_channel{true, 0, 1};
};

TEST_F(LineFinderTest, FindsALineOnceAndWhenEachPixelWasSung)
{
    Draw(1, 3);
    Wait(200);
    const PacketIndex sungFrom = m_channel.SentCount();
    Draw(2, 20);
    const std::vector<FoundLine> lines = Found();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].top, 50);
    EXPECT_EQ(lines[0].height, 15);
    EXPECT_EQ(lines[0].At(60, 0).wipedAt, sungFrom + 1);
    EXPECT_EQ(lines[0].At(60 + 6 * (kStrokes - 1), 0).wipedAt, sungFrom + 1 + 20 * (kStrokes - 1));
    EXPECT_FALSE(lines[0].At(64, 0).isText);
}

// As a chorus may be, with the next one's letters exactly where the last one's were.
TEST_F(LineFinderTest, FindsALineThatIsDrawnAgainOverItselfTwice)
{
    Draw(1, 3);
    Wait(200);
    Draw(2, 20);
    Draw(1, 20);
    Wait(200);
    const PacketIndex sungFrom = m_channel.SentCount();
    Draw(2, 20);
    const std::vector<FoundLine> lines = Found();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1].At(60, 0).wipedAt, sungFrom + 1);
}

TEST_F(LineFinderTest, WaitsForALineThatIsDrawnSlowly)
{
    Draw(1, 40);
    Wait(200);
    Draw(2, 20);
    const std::vector<FoundLine> lines = Found();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].At(60 + 6 * (kStrokes - 1), 0).isText);
}

} // namespace
} // namespace lantern::test
