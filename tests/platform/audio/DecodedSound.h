// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <span>
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

// Frames from this one on, as a player reads them: in pieces, each as soon as it is there.
inline std::vector<float> ReadInPieces(SoundDecoder& decoder, std::int64_t first,
                                       std::int64_t frames)
{
    constexpr std::int64_t kPiece = 65536;
    constexpr int kLongestMs = 60000;
    std::vector<float> all(static_cast<std::size_t>(frames) * 2);
    std::int64_t got = 0;
    for (int waitedMs = 0; got < frames && waitedMs < kLongestMs;) {
        const auto piece = static_cast<std::size_t>(std::min(kPiece, frames - got)) * 2;
        const SoundDecoder::Chunk chunk = decoder.Read(
            first + got, std::span(all).subspan(static_cast<std::size_t>(got) * 2, piece));
        got += chunk.frames;
        if (chunk.atEnd)
            break;
        if (chunk.notYet) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            ++waitedMs;
        }
    }
    EXPECT_EQ(got, frames);
    return all;
}

// Everything, once the length is final.
inline std::vector<float> ReadAll(SoundDecoder& decoder)
{
    WaitForEnd(decoder);
    const std::int64_t frames = decoder.FrameCount();
    std::vector<float> all = ReadInPieces(decoder, 0, frames);
    std::vector<float> beyond(2);
    const SoundDecoder::Chunk chunk = decoder.Read(frames, beyond);
    EXPECT_EQ(chunk.frames, 0);
    EXPECT_TRUE(chunk.atEnd);
    EXPECT_FALSE(chunk.notYet);
    return all;
}

inline std::int64_t ToMs(std::int64_t frames, int sampleRate)
{
    return (frames * 1000 + sampleRate / 2) / sampleRate;
}

} // namespace lantern
