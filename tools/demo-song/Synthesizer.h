// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace lantern::demo {

inline constexpr int kSampleRate = 44100;

// The whole song as interleaved stereo. Only sums, products and divisions of doubles are used, so
// that every machine makes the same bytes.
std::vector<std::int16_t> RenderSong();

} // namespace lantern::demo
