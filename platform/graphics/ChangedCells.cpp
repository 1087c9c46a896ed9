// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChangedCells.h"

#include "PixelBuffer.h"

#include <algorithm>

namespace lantern {

void ChangedCells::Reset(int width, int height)
{
    m_width = width;
    m_height = height;
    const int bands = (height + kTileHeight - 1) / kTileHeight;
    m_columns.assign(static_cast<std::size_t>(bands) * static_cast<std::size_t>(width), 0);
}

std::span<std::uint8_t> ChangedCells::Band(int y)
{
    const auto width = static_cast<std::size_t>(m_width);
    return std::span(m_columns).subspan(static_cast<std::size_t>(y / kTileHeight) * width, width);
}

void ChangedCells::CompareRow(int y, std::span<const std::uint8_t> before,
                              std::span<const std::uint8_t> after)
{
    const std::span<std::uint8_t> band = Band(y);
    for (std::size_t x = 0; x < band.size(); ++x)
        band[x] = static_cast<std::uint8_t>(band[x] | (before[x] ^ after[x]));
}

void ChangedCells::CompareRow(int y, std::span<const std::uint8_t> before,
                              const ColourWords& coloursBefore, std::span<const std::uint8_t> after,
                              const ColourWords& coloursAfter)
{
    const std::span<std::uint8_t> band = Band(y);
    for (std::size_t x = 0; x < band.size(); ++x) {
        if (coloursBefore[before[x]] != coloursAfter[after[x]])
            band[x] = 1;
    }
}

std::vector<AxisRange> ChangedCells::ChangedRuns(std::span<const std::uint8_t> band) const
{
    std::vector<AxisRange> runs;
    for (int x = 0; x < m_width; x += kTileWidth) {
        const int end = std::min(x + kTileWidth, m_width);
        if (!std::any_of(band.begin() + x, band.begin() + end, [](auto bits) { return bits != 0; }))
            continue;
        if (!runs.empty() && runs.back().end == x)
            runs.back().end = end;
        else
            runs.push_back({x, end});
    }
    return runs;
}

std::vector<ChangedCells::Block> ChangedCells::Blocks()
{
    std::vector<Block> blocks;
    std::vector<std::size_t> above; // the blocks that reach down to the current band
    std::vector<std::size_t> here;
    const auto beginOf = [&](std::size_t block) { return blocks[block].columns.begin; };
    for (int y = 0; y < m_height; y += kTileHeight) {
        const int end = std::min(y + kTileHeight, m_height);
        here.clear();
        for (const AxisRange& run : ChangedRuns(Band(y))) {
            const auto found = std::ranges::lower_bound(above, run.begin, {}, beginOf);
            if (found != above.end() && blocks[*found].columns == run) {
                blocks[*found].rows.end = end;
                here.push_back(*found);
            } else {
                here.push_back(blocks.size());
                blocks.push_back({run, {y, end}});
            }
        }
        std::swap(above, here);
    }
    return blocks;
}

} // namespace lantern
