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
//
// It is kept as if its right side met its left and its bottom met its top. To roll it then only
// moves its origin; but for that, nobody has to know.
class PixelBuffer {
public:
    PixelBuffer(int width, int height); // IsHoldable; filled with index 0

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    std::size_t Size() const { return m_storage.size() - kSlack; }
    // Row by row without padding, up to the next operation.
    std::span<const std::uint8_t> Pixels();

    std::uint8_t Get(int x, int y) const { return Contains(x, y) ? m_storage[Offset(x, y)] : 0; }
    void Put(int x, int y, std::uint8_t index);
    void Fill(std::uint8_t index);
    void FillRect(const PixelBounds& bounds, std::uint8_t index);
    // The pixel at left, top comes to 0, 0; what leaves on one side comes in on the other. For a
    // pixel inside.
    void Roll(int left, int top);
    // The part of the source that lies in both images; source may be this buffer.
    void Copy(PixelBuffer& source, const PixelBounds& bounds, int newX, std::int64_t newY);
    void CopyAll(const PixelBuffer& source); // only between images of the same size
    void DrawTile(int x, int y, const TilePattern& pattern);
    // The row's pixels from x on, index 0 where they lie outside.
    void ReadRow(int x, int y, std::span<std::uint8_t> out) const;

private:
    bool Contains(int x, int y) const { return x >= 0 && x < m_width && y >= 0 && y < m_height; }
    // Where a pixel inside stands in the storage.
    int StoredX(int x) const { return Wrapped(x + m_originX, m_width); }
    int StoredY(int y) const { return Wrapped(y + m_originY, m_height); }
    static int Wrapped(int position, int size)
    {
        return position < size ? position : position - size;
    }
    std::size_t Offset(int x, int y) const { return StoredOffset(StoredX(x), StoredY(y)); }
    std::size_t StoredOffset(int storedX, int storedY) const
    {
        return static_cast<std::size_t>(storedY) * static_cast<std::size_t>(m_width) +
               static_cast<std::size_t>(storedX);
    }
    void Straighten(); // the origin is at the storage's begin
    void FillStored(int storedX, int y, int width, int height, std::uint8_t index);
    void DrawWholeTile(std::size_t offset, const TilePattern& pattern);
    void DrawPixelByPixel(int x, int y, const TilePattern& pattern);

    // A few pixels are written as one word, which reaches beyond them.
    static constexpr std::ptrdiff_t kSlack = sizeof(std::uint64_t) - kTileWidth;

    int m_width;
    int m_height;
    int m_originX = 0; // where pixel 0, 0 stands in the storage
    int m_originY = 0;
    std::vector<std::uint8_t> m_storage; // the rows, then the slack
};

} // namespace lantern
