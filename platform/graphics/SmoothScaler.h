// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CellPainter.h"
#include "ColourRamps.h"
#include "DistanceTable.h"
#include "PictureScaler.h"
#include "SmoothCell.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lantern {

// Scales an indexed picture so that letters look like type: edges between colours run where they
// would in letters with such pixels, not in steps. Each square between the centres of four pixels
// is drawn from these and the twelve around them, by the distances of DistanceTable; it shows only
// the colours of its four pixels, and mixes of two of them, or of shades in a row, along an edge
// one device pixel wide. Indexes of one colour are one.
class SmoothScaler final : public PictureScaler {
public:
    SmoothScaler();

    // Below a scale of 1.5 there is no room for what it does.
    static bool Suits(const AxisGeometry& horizontal, const AxisGeometry& vertical);

    void SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical) override;
    DeviceRect Reach(AxisRange columns, AxisRange rows) const override;
    void Draw(const IndexedPicture& picture, const ColourWords& colours, const SurfaceImage& image,
              const DeviceRect& rect) override;

private:
    static constexpr int kRim = 2; // so far a cell looks beyond its first pixel, plus its own

    // Cells of one colour that lie side by side, and the one that ends them, if one does.
    struct Run {
        std::uint32_t colour = 0;
        int end = 0; // of the run's device pixels
        bool hasCell = false;
    };

    void ReadLooks(const IndexedPicture& picture, AxisRange columns, AxisRange rows);
    const std::uint8_t* LooksAt(int column, int row) const;
    void ReadCells(int row, AxisRange columns);
    void DrawRow(AxisRange columns, std::uint32_t* out);

    DistanceTable m_table;
    ColourRamps m_colours;
    CellPainter m_painter;
    std::vector<std::uint8_t> m_looks; // with a rim that repeats the picture's border
    std::vector<Run> m_runs;           // of one row of cells
    std::vector<SmoothCell> m_cells;
    std::size_t m_cellCount = 0;
};

} // namespace lantern
