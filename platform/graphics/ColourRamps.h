// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PictureScaler.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace lantern {

// The steps from one colour of a picture to another, made when a pair is first asked for.
class ColourRamps {
public:
    static constexpr int kStepBits = 6;
    static constexpr int kSteps = 1 << kStepBits;
    using Ramp = std::array<std::uint32_t, kSteps + 1>; // from the one to the other

    // Forgets all ramps if the colours differ from the last ones.
    void SetColours(const ColourWords& colours);
    const ColourWords& Colours() const { return m_colours; }
    // Two indexes of one colour are one look: the first such index.
    std::uint8_t LookOf(std::uint8_t index) const { return m_looks[index]; }
    // It stays where it is until the colours change.
    const std::uint32_t* RampOf(std::uint8_t from, std::uint8_t to)
    {
        const std::uint16_t slot = m_slots[std::size_t{from} * 256 + to];
        return (slot != 0 ? m_ramps[slot - 1U] : MakeRamp(from, to)).data();
    }

private:
    const Ramp& MakeRamp(std::uint8_t from, std::uint8_t to);

    ColourWords m_colours{};
    std::array<std::uint8_t, 256> m_looks{};
    std::vector<std::uint16_t> m_slots; // of each pair, one more than the ramp's; 0 for none
    std::deque<Ramp> m_ramps;
};

} // namespace lantern
