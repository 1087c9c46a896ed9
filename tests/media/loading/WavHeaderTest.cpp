// SPDX-License-Identifier: GPL-3.0-or-later
#include "WavHeader.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(WavHeader, IsThatOfDiscAudioWithAFormatChunkOf18Bytes)
{
    const std::array<std::uint8_t, 46> expected = {
        'R', 'I', 'F', 'F', 0x36, 0xB1, 0x02, 0x00, 'W',  'A',  'V',  'E',  'f',  'm',  't',  ' ',
        18,  0,   0,   0,   1,    0,    2,    0,    0x44, 0xAC, 0x00, 0x00, 0x10, 0xB1, 0x02, 0x00,
        4,   0,   16,  0,   0,    0,    'd',  'a',  't',  'a',  0x10, 0xB1, 0x02, 0x00};
    EXPECT_EQ(WavHeader(176400), expected);
}

TEST(WavHeader, CountsWhatFollowsTheFirstChunksHead)
{
    const auto header = WavHeader(176);
    EXPECT_EQ(header[4], 214);
    EXPECT_EQ(header[42], 176);
}

TEST(WavHeader, SizesFillTheirFourBytes)
{
    const auto header = WavHeader(0x12345678);
    EXPECT_EQ(header[42], 0x78);
    EXPECT_EQ(header[43], 0x56);
    EXPECT_EQ(header[44], 0x34);
    EXPECT_EQ(header[45], 0x12);
    EXPECT_EQ(header[4], 0x78 + 38);
}

} // namespace
} // namespace lantern
