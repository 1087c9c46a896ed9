// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace lantern {

// The highest level between the samples, too, of a stereo sound: at four times its rate, as ITU-R
// BS.1770 has it. The library that measures loudness could tell it, but takes twenty times as long.
class TruePeak {
public:
    TruePeak();

    void Add(std::span<const float> stereo);
    float Value() const { return m_peak; } // 1 is full scale

private:
    static constexpr std::size_t kPhases = 4;
    static constexpr std::size_t kTaps = 12; // of each phase
    static constexpr std::size_t kBlockFrames = 512;

    void AddBlock(std::span<const float> stereo);
    void AddChannel(std::size_t channel, std::size_t frames);

    std::array<std::array<float, kTaps>, kPhases - 1> m_filters{}; // without that of the samples
    float m_mostGain = 0; // that any of them can give to the highest sample
    // Of each channel: the last samples of the block before, and this one's.
    std::array<std::array<float, kTaps - 1 + kBlockFrames>, 2> m_samples{};
    std::array<float, kBlockFrames> m_levels{};
    float m_lastBlockPeak = 0;
    float m_peak = 0;
};

} // namespace lantern
