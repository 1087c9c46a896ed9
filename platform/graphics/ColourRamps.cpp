// SPDX-License-Identifier: GPL-3.0-or-later
#include "ColourRamps.h"

#include <algorithm>
#include <limits>

namespace lantern {

// No pair is of one look twice, so that the slots' numbers are enough.
static_assert(256 * 255 <= std::numeric_limits<std::uint16_t>::max());

void ColourRamps::SetColours(const ColourWords& colours)
{
    if (!m_slots.empty() && colours == m_colours)
        return;
    m_colours = colours;
    for (std::size_t index = 0; index < colours.size(); ++index) {
        m_looks[index] =
            static_cast<std::uint8_t>(std::ranges::find(colours, colours[index]) - colours.begin());
    }
    m_slots.assign(std::size_t{256} * 256, 0);
    m_ramps.clear();
}

const ColourRamps::Ramp& ColourRamps::MakeRamp(std::uint8_t from, std::uint8_t to)
{
    Ramp& ramp = m_ramps.emplace_back();
    for (std::uint32_t step = 0; step <= kSteps; ++step) {
        std::uint32_t pixel = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            const std::uint32_t sum = (m_colours[from] >> shift & 0xFFU) * (kSteps - step) +
                                      (m_colours[to] >> shift & 0xFFU) * step;
            pixel |= (sum + kSteps / 2) / kSteps << shift;
        }
        ramp[step] = pixel;
    }
    m_slots[std::size_t{from} * 256 + to] = static_cast<std::uint16_t>(m_ramps.size());
    return ramp;
}

} // namespace lantern
