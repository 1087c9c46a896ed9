// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CellAxis.h"
#include "SmoothCell.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// Paints cells, one row of device pixels at a time. It works in whole numbers throughout, so that
// a pixel is the same whatever is painted with it.
class CellPainter {
public:
    void SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical);
    const CellAxis& Columns() const { return m_columns; }
    const CellAxis& Rows() const { return m_rows; }

    // The row of all cells that are painted next.
    void SetRow(int deviceRow);
    // Paints the part of a cell's row that lies in the range, of which it has some; out is the
    // first pixel of that part.
    void PaintRow(const SmoothCell& cell, AxisRange range, std::uint32_t* out);

private:
    // A field along the row: its values at the cell's begin, middle and end.
    using RowNodes = std::array<std::int16_t, CellAxis::kNodes>;

    RowNodes NodesOf(const SmoothCell::Field& field) const;
    int WholeSide(const RowNodes& nodes) const;
    void ShareOut(const RowNodes& nodes, std::vector<std::int16_t>& shares) const;
    template <std::size_t kLooks>
    void FindNearest(const SmoothCell& cell);
    void MixShades(const SmoothCell& cell, std::size_t begin, std::size_t end, std::uint32_t* out);

    CellAxis m_columns;
    CellAxis m_rows;
    std::array<int, CellAxis::kNodes> m_rowWeights{};
    std::array<const std::int16_t*, CellAxis::kNodes> m_weights{}; // of the cell's columns
    std::int16_t m_steepness = 0; // how fast a colour's share grows with the distance
    std::int16_t m_half = 0;      // of a step, as a distance
    int m_far = 0;                // where no share is left, as a node
    // For each device pixel of the cell's row: how much of the second colour it has, in steps of a
    // ramp, and which of a crowd's ramps it takes.
    std::vector<std::int16_t> m_shares;
    std::vector<std::int16_t> m_ramps;
    std::array<std::vector<std::int16_t>, SmoothCell::kMostLooks> m_shadeShares;
};

} // namespace lantern
