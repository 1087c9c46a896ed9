// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundDecoder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <thread>
#include <vector>

namespace lantern {

inline void WaitForEnd(const SoundDecoder& decoder)
{
    constexpr int kLongestMs = 60000;
    for (int i = 0; i < kLongestMs && !decoder.DecodedToEnd(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_TRUE(decoder.DecodedToEnd());
}

// Everything, in one read, once it is decoded.
inline std::vector<float> ReadAll(SoundDecoder& decoder)
{
    WaitForEnd(decoder);
    std::vector<float> all(static_cast<std::size_t>(decoder.FrameCount()) * 2);
    const SoundDecoder::Chunk chunk = decoder.Read(0, all);
    EXPECT_EQ(chunk.frames, decoder.FrameCount());
    EXPECT_TRUE(chunk.atEnd);
    EXPECT_FALSE(chunk.notYet);
    return all;
}

inline std::int64_t ToMs(std::int64_t frames, int sampleRate)
{
    return (frames * 1000 + sampleRate / 2) / sampleRate;
}

} // namespace lantern
