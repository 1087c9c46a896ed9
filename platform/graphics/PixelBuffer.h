// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TileSize.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// A rectangle of pixels, all bounds inclusive. It may be empty or reach anywhere.
struct PixelBounds {
    int minX = 0;
    int maxX = 0;
    int minY = 0;
    int maxY = 0;

    std::int64_t Width() const { return std::int64_t{maxX} - minX + 1; }
    std::int64_t Height() const { return std::int64_t{maxY} - minY + 1; }
    bool operator==(const PixelBounds&) const = default;
};

// The largest rectangle that is held in memory at once: a limit against sizes that come from a
// slip, far above any picture.
inline constexpr std::int64_t kMaxSide = 16384;
inline constexpr std::int64_t kMaxPixels = std::int64_t{1} << 24;

constexpr bool IsHoldable(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && width <= kMaxSide && height <= kMaxSide &&
           width * height <= kMaxPixels;
}

struct TilePattern {
    std::span<const std::uint8_t, kTileHeight> rows; // bit 5 is the leftmost pixel
    std::uint8_t colour0 = 0;
    std::uint8_t colour1 = 0;
    bool exclusive = false;
};

// One image of 8-bit colour indexes. Every operation clips to it; a read outside gives index 0.
class PixelBuffer {
public:
    PixelBuffer(int width, int height); // IsHoldable; filled with index 0

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    std::span<const std::uint8_t> Pixels() const;

    std::uint8_t Get(int x, int y) const { return Contains(x, y) ? m_storage[Offset(x, y)] : 0; }
    void Put(int x, int y, std::uint8_t index);
    void Fill(std::uint8_t index);
    void FillRect(const PixelBounds& bounds, std::uint8_t index);
    // The part of the source that lies in both images; source may be this buffer.
    void Copy(const PixelBuffer& source, const PixelBounds& bounds, int newX, std::int64_t newY);
    void CopyAll(const PixelBuffer& source); // only between images of the same size
    void DrawTile(int x, int y, const TilePattern& pattern);
    // The row's pixels from x on, index 0 where they lie outside.
    void ReadRow(int x, int y, std::span<std::uint8_t> out) const;

private:
    bool Contains(int x, int y) const { return x >= 0 && x < m_width && y >= 0 && y < m_height; }
    std::size_t Offset(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
               static_cast<std::size_t>(x);
    }
    void DrawWholeTile(int x, int y, const TilePattern& pattern);
    void DrawClippedTile(int x, int y, const TilePattern& pattern);

    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_storage; // the rows, then a few bytes that a tile may touch
};

} // namespace lantern
