// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundDecoder.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

namespace lantern::test {

// A sound that lies in memory, decoded as far as the test says.
class MemoryDecoder final : public SoundDecoder {
public:
    explicit MemoryDecoder(std::vector<float> stereo, int sampleRate = 44100)
        : m_stereo(std::move(stereo)), m_sampleRate(sampleRate), m_decoded(FrameCount())
    {
    }

    void DecodeTo(std::int64_t frame) { m_decoded = std::min(frame, FrameCount()); }

    int SampleRate() const override { return m_sampleRate; }
    std::int64_t FrameCount() const override
    {
        return static_cast<std::int64_t>(m_stereo.size() / 2);
    }
    bool DecodedToEnd() const override { return m_decoded == FrameCount(); }

    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override
    {
        const auto asked = static_cast<std::int64_t>(stereo.size() / 2);
        const std::int64_t decoded = m_decoded;
        const auto frames = std::clamp<std::int64_t>(decoded - firstFrame, 0, asked);
        std::copy_n(m_stereo.begin() + std::min(firstFrame, decoded) * 2, frames * 2,
                    stereo.begin());
        const bool atEnd = firstFrame + frames >= FrameCount();
        return {static_cast<int>(frames), atEnd, frames < asked && !atEnd};
    }

private:
    std::vector<float> m_stereo;
    int m_sampleRate;
    std::atomic<std::int64_t> m_decoded; // by the test's thread, while another reads
};

} // namespace lantern::test
