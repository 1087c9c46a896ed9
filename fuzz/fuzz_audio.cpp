// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundDecoder.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <thread>

// Any bytes as a sound image: opened, read while it is being decoded for a while, here and far
// ahead, and closed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr int kLongestMs = 200;
    const auto decoder = lantern::SoundDecoder::OpenMemory(std::span(data, size));
    if (!decoder)
        return 0;

    std::array<float, 2 * 1024> stereo = {};
    std::int64_t frame = 0;
    for (std::int64_t part = 1; part < 4; ++part) {
        const auto chunk = decoder->Read(decoder->FrameCount() / 4 * part, stereo);
        if (chunk.frames < 0 || chunk.frames > 1024 || (chunk.atEnd && chunk.notYet))
            std::abort();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (int waitedMs = 0; waitedMs < kLongestMs;) {
        const auto chunk = decoder->Read(frame, stereo);
        if (chunk.frames < 0 || chunk.frames > 1024 || (chunk.atEnd && chunk.notYet))
            std::abort();
        frame += chunk.frames;
        if (chunk.atEnd)
            break;
        if (chunk.notYet) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            ++waitedMs;
        }
        // Far into a long sound there is nothing new to see.
        if (frame > std::int64_t{60} * decoder->SampleRate())
            break;
    }
    return 0;
}
