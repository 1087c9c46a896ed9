// SPDX-License-Identifier: GPL-3.0-or-later
#include "MusepackHeader.h"

#include <gtest/gtest.h>

#include <vector>

namespace lantern {
namespace {

// 441000 frames, 100 of them silent: 7 bits a byte.
const std::vector<std::uint8_t> kHeader = {'M', 'P', 'C', 'K',  'S',  'H',  0x10, 1, 2,
                                           3,   4,   8,   0x9A, 0xF5, 0x28, 100,  0, 0};

TEST(MusepackHeader, TellsTheFramesToBeHeard)
{
    const auto header = ParseMusepackHeader(kHeader);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->frameCount, 441000 - 100);
    EXPECT_EQ(header->silentFrames, 100);
}

TEST(MusepackHeader, CutOffAnywhereItTellsNothing)
{
    for (std::size_t size = 0; size < 16; ++size)
        EXPECT_FALSE(ParseMusepackHeader(std::span(kHeader).first(size))) << size;
    EXPECT_TRUE(ParseMusepackHeader(std::span(kHeader).first(16)));
}

TEST(MusepackHeader, ANumberWithoutAnEndTellsNothing)
{
    std::vector<std::uint8_t> header = kHeader;
    header.resize(12);
    header.resize(100, 0xFF);
    EXPECT_FALSE(ParseMusepackHeader(header));
}

TEST(MusepackHeader, ANumberHasEightBytesAtMost)
{
    std::vector<std::uint8_t> header = kHeader;
    header.resize(12);
    header.insert(header.end(), {0x80, 0x80, 0x80, 0x80, 0x80, 0x81, 0x80, 0, 5});
    ASSERT_TRUE(ParseMusepackHeader(header));
    EXPECT_EQ(ParseMusepackHeader(header)->frameCount, 16384 - 5);
    header.insert(header.begin() + 12, 0x80);
    EXPECT_FALSE(ParseMusepackHeader(header));
}

TEST(MusepackHeader, NoMoreFramesThanSilenceTellsNothing)
{
    std::vector<std::uint8_t> header = kHeader;
    header[12] = 0x80;
    header[13] = 0x80;
    for (const std::uint8_t frames : {std::uint8_t{0}, std::uint8_t{99}, std::uint8_t{100}}) {
        header[14] = frames;
        EXPECT_FALSE(ParseMusepackHeader(header));
    }
    header[14] = 101;
    ASSERT_TRUE(ParseMusepackHeader(header));
    EXPECT_EQ(ParseMusepackHeader(header)->frameCount, 1);
}

TEST(MusepackHeader, OtherBytesTellNothing)
{
    std::vector<std::uint8_t> header = kHeader;
    header[3] = '+';
    EXPECT_FALSE(ParseMusepackHeader(header));
}

} // namespace
} // namespace lantern
