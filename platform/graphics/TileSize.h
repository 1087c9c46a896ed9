// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// Of a tile by the disc standard, in pixels.
inline constexpr int kTileWidth = 6;
inline constexpr int kTileHeight = 12;

} // namespace lantern
