// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AxisTable.h"
#include "VirtualBuffers.h"

#include <array>
#include <cstdint>
#include <span>

namespace lantern {

using ColourWords = std::array<std::uint32_t, 256>; // 0xFFRRGGBB by index

// A picture of indexes, row by row without padding.
struct IndexedPicture {
    std::span<const std::uint8_t> indexes;
    int width = 0;
};

// A way to show an indexed picture as a true-colour image. What a device pixel shows depends on
// the picture and its place alone, not on the rectangle with which it is drawn.
class PictureScaler {
public:
    virtual ~PictureScaler() = default;

    // First; makes the tables anew for an axis whose geometry differs. None is empty.
    virtual void SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical) = 0;
    // The device pixels that may look different when these pixels of the picture do, clipped.
    virtual DeviceRect Reach(AxisRange columns, AxisRange rows) const = 0;
    // The rectangle lies within the clip range of the geometry, and that within the image.
    virtual void Draw(const IndexedPicture& picture, const ColourWords& colours,
                      const SurfaceImage& image, const DeviceRect& rect) = 0;
};

} // namespace lantern
