// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LineFinder.h"
#include "LinePicture.h"

#include <vector>

namespace lantern {

// What is kept of a line that was found: its letters, and when each of their columns was sung.
struct SungLine {
    LineMask mask;
    std::vector<LineMask> singles;        // of a line in two colours, each alone in the same frame
    std::vector<PacketIndex> columnTimes; // 0 where nothing tells
    PacketIndex litAt = 0; // where it was lit tile by tile in rows, not as it was sung; else 0
    PacketIndex shown = 0;
    PacketIndex gone = 0;
};

// A line whose letters were neither recoloured nor went one after the other has no times. One
// without letters has no columns.
SungLine MakeSungLine(const FoundLine& found, const WordColours& colours);

} // namespace lantern
