// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AxisTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// One axis of a picture that is shown as cells, each from the middle of a pixel to that of the
// next: cell n begins in pixel n. Before the first pixel's middle there is half a cell more, -1,
// and behind the last one's another half.
//
// Within its cell each device pixel has weights for the cell's begin, middle and end, of a curve
// through three points.
class CellAxis {
public:
    static constexpr int kWeightBits = 14;
    static constexpr std::size_t kNodes = 3;
    static constexpr std::size_t kGroup = 8; // a cell's weights fill whole groups

    CellAxis() = default;
    explicit CellAxis(const AxisGeometry& geometry);

    const AxisGeometry& Geometry() const { return m_geometry; }
    int CellOf(int pixel) const
    {
        return m_cells[static_cast<std::size_t>(pixel - m_geometry.clipBegin)];
    }
    // The device pixels of a cell, clipped.
    AxisRange PixelsOf(int cell) const
    {
        const std::size_t at = CellIndex(cell);
        return {m_begins[at], m_begins[at + 1]};
    }
    // Those that may show any of a range of the picture's pixels: the cells that have one of them
    // at an end, and the cells beside these.
    AxisRange PixelsNear(AxisRange source) const;
    // From the cell's first device pixel on, up to Stride.
    const std::int16_t* Weights(int cell, std::size_t node) const
    {
        return m_weights[node].data() + CellIndex(cell) * m_stride;
    }
    std::size_t Stride() const { return m_stride; }

private:
    std::size_t CellIndex(int cell) const { return static_cast<std::size_t>(cell - m_firstCell); }

    AxisGeometry m_geometry;
    int m_firstCell = 0;
    std::vector<int> m_cells;  // of each device pixel
    std::vector<int> m_begins; // of each cell, and the end of the last one
    std::size_t m_stride = 0;
    std::array<std::vector<std::int16_t>, kNodes> m_weights;
};

} // namespace lantern
