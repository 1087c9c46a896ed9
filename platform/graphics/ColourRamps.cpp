// SPDX-License-Identifier: GPL-3.0-or-later
#include "ColourRamps.h"

#include "ColourLine.h"

#include <algorithm>
#include <optional>

namespace lantern {

void ColourRamps::SetColours(const ColourWords& colours)
{
    if (!m_words.empty() && colours == m_colours)
        return;
    m_colours = colours;
    m_words.clear();
    for (std::size_t index = 0; index < colours.size(); ++index) {
        const auto found = std::ranges::find(m_words, colours[index]);
        m_looks[index] = static_cast<std::uint8_t>(found - m_words.begin());
        if (found == m_words.end())
            m_words.push_back(colours[index]);
    }
    m_pairs.clear();
    m_pairs.resize(m_words.size() * m_words.size());
}

std::unique_ptr<ColourRamps::Pair> ColourRamps::MakePair(std::uint8_t from, std::uint8_t to) const
{
    auto pair = std::make_unique<Pair>();
    for (std::uint32_t step = 0; step <= kSteps; ++step) {
        std::uint32_t pixel = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            const std::uint32_t sum = (m_words[from] >> shift & 0xFFU) * (kSteps - step) +
                                      (m_words[to] >> shift & 0xFFU) * step;
            pixel |= (sum + kSteps / 2) / kSteps << shift;
        }
        pair->ramp[step] = pixel;
    }
    return pair;
}

ColourSide ColourRamps::FindSide(std::uint8_t from, std::uint8_t to, std::uint8_t third) const
{
    const ColourLine line(m_words[from], m_words[to]);
    const std::optional<int> place = line.PlaceOf(m_words[third]);
    if (!place || 2 * *place == line.Length())
        return ColourSide::Neither;
    return 2 * *place < line.Length() ? ColourSide::From : ColourSide::To;
}

} // namespace lantern
