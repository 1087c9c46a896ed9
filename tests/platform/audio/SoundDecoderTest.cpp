// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundDecoder.h"
#include "TestSounds.h"

#include <gtest/gtest.h>
#include <thread>

namespace lantern {
namespace {

void WaitForEnd(const SoundDecoder& decoder)
{
    for (int i = 0; i < 20000 && !decoder.DecodedToEnd(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_TRUE(decoder.DecodedToEnd());
}

std::vector<float> ReadAll(SoundDecoder& decoder)
{
    std::vector<float> all(static_cast<std::size_t>(decoder.FrameCount()) * 2);
    const SoundDecoder::Chunk chunk = decoder.Read(0, all);
    EXPECT_EQ(chunk.frames, decoder.FrameCount());
    EXPECT_TRUE(chunk.atEnd);
    EXPECT_FALSE(chunk.notYet);
    return all;
}

std::vector<float> AsFloats(const Pcm& pcm)
{
    std::vector<float> floats;
    for (const std::int16_t sample : pcm.samples)
        floats.push_back(static_cast<float>(sample) / 32768.0F);
    return floats;
}

TEST(SoundDecoder, AWavImageComesBackBitForBit)
{
    const Pcm pcm = MakeTicks(44100, 2, 3 * 44100 + 17);
    const auto image = WavImage(pcm);
    const auto decoder = SoundDecoder::OpenMemory(image);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->SampleRate(), 44100);
    EXPECT_EQ(decoder->FrameCount(), pcm.FrameCount());
    WaitForEnd(*decoder);
    EXPECT_EQ(ReadAll(*decoder), AsFloats(pcm));
}

} // namespace
} // namespace lantern
