// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lantern {

// Sound as it stands on a compact disc: 16-bit stereo at 44100 Hz.
inline constexpr std::uint32_t kDiscSampleRate = 44100;
inline constexpr std::uint32_t kDiscFrameBytes = 4;
inline constexpr std::uint32_t kDiscBytesPerSecond = kDiscSampleRate * kDiscFrameBytes;

// Two bytes more than the usual header, since its format chunk carries the size of an extension.
inline constexpr std::size_t kWavHeaderSize = 46;

// The header of a sound image that holds that many bytes of disc audio.
std::array<std::uint8_t, kWavHeaderSize> WavHeader(std::uint32_t audioBytes);

} // namespace lantern
