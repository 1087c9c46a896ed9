// SPDX-License-Identifier: GPL-3.0-or-later
#include "PixelBuffer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace lantern {

namespace {

// A tile row is written as one word of eight bytes, of which the last two are put back unchanged.
using TileWord = std::uint64_t;
constexpr unsigned kRowPatterns = 1U << kTileWidth;

constexpr TileWord WordByte(int position, std::uint8_t value)
{
    const int byte = std::endian::native == std::endian::little ? position : 7 - position;
    return TileWord{value} << (8 * byte);
}

// The same byte for each of the six pixels.
constexpr TileWord WordOf(std::uint8_t value)
{
    TileWord word = 0;
    for (int pixel = 0; pixel < kTileWidth; ++pixel)
        word |= WordByte(pixel, value);
    return word;
}

constexpr std::array<TileWord, kRowPatterns> MakeRowMasks()
{
    std::array<TileWord, kRowPatterns> masks{};
    for (unsigned row = 0; row < kRowPatterns; ++row) {
        for (int pixel = 0; pixel < kTileWidth; ++pixel) {
            if ((row >> (kTileWidth - 1 - pixel) & 1U) != 0)
                masks[row] |= WordByte(pixel, 0xFF);
        }
    }
    return masks;
}

constexpr TileWord kTilePixels = WordOf(0xFF);
constexpr TileWord kEachPixel = WordOf(1);
constexpr std::array<TileWord, kRowPatterns> kRowMasks = MakeRowMasks();

// The pixels of a tile's row are put, the word's other bytes kept.
void PutTileRow(std::uint8_t* target, TileWord pixels)
{
    TileWord word;
    std::memcpy(&word, target, sizeof word);
    word = (word & ~kTilePixels) | (pixels & kTilePixels);
    std::memcpy(target, &word, sizeof word);
}

} // namespace

PixelBuffer::PixelBuffer(int width, int height)
    : m_width(width), m_height(height),
      m_storage(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) + kSlack)
{
}

std::span<const std::uint8_t> PixelBuffer::Pixels()
{
    Straighten();
    return std::span(m_storage).first(Size());
}

void PixelBuffer::Roll(int left, int top)
{
    m_originX = StoredX(left);
    m_originY = StoredY(top);
}

void PixelBuffer::Straighten()
{
    if (m_originX == 0 && m_originY == 0)
        return;
    const auto begin = m_storage.begin();
    std::rotate(begin, begin + m_originY * m_width, m_storage.end() - kSlack);
    for (int y = 0; y < m_height; ++y) {
        const auto row = begin + y * m_width;
        std::rotate(row, row + m_originX, row + m_width);
    }
    m_originX = m_originY = 0;
}

void PixelBuffer::Put(int x, int y, std::uint8_t index)
{
    if (Contains(x, y))
        m_storage[Offset(x, y)] = index;
}

void PixelBuffer::Fill(std::uint8_t index)
{
    std::ranges::fill(m_storage, index);
}

void PixelBuffer::FillRect(const PixelBounds& bounds, std::uint8_t index)
{
    const int minX = std::max(bounds.minX, 0);
    const int maxX = std::min(bounds.maxX, m_width - 1);
    const int minY = std::max(bounds.minY, 0);
    const int maxY = std::min(bounds.maxY, m_height - 1);
    if (minX > maxX || minY > maxY)
        return;
    // In two parts where it meets the end of the storage's rows.
    const int storedX = StoredX(minX);
    const int width = maxX - minX + 1;
    const int first = std::min(width, m_width - storedX);
    FillStored(storedX, minY, first, maxY - minY + 1, index);
    if (first < width)
        FillStored(0, minY, width - first, maxY - minY + 1, index);
}

void PixelBuffer::FillStored(int storedX, int y, int width, int height, std::uint8_t index)
{
    for (int row = y; row < y + height; ++row) {
        std::uint8_t* target = &m_storage[StoredOffset(storedX, StoredY(row))];
        // The sides of a scroll are as narrow as a tile, where a call costs more than the pixels.
        if (width == kTileWidth)
            PutTileRow(target, kEachPixel * index);
        else
            std::memset(target, index, static_cast<std::size_t>(width));
    }
}

void PixelBuffer::Copy(PixelBuffer& source, const PixelBounds& bounds, int newX, std::int64_t newY)
{
    // The move from a source pixel to its place, then the source range that both images allow.
    const std::int64_t moveX = std::int64_t{newX} - bounds.minX;
    const std::int64_t moveY = newY - bounds.minY;
    const auto minX = std::max<std::int64_t>({bounds.minX, 0, -moveX});
    const auto minY = std::max<std::int64_t>({bounds.minY, 0, -moveY});
    const auto maxX =
        std::min<std::int64_t>({bounds.maxX, source.m_width - 1, m_width - 1 - moveX});
    const auto maxY =
        std::min<std::int64_t>({bounds.maxY, source.m_height - 1, m_height - 1 - moveY});
    if (minX > maxX || minY > maxY)
        return;

    source.Straighten();
    Straighten();
    // Within one buffer a row must be read before the copy reaches it.
    const bool upwards = moveY > 0;
    const auto length = static_cast<std::size_t>(maxX - minX + 1);
    for (std::int64_t step = 0; step <= maxY - minY; ++step) {
        const std::int64_t y = upwards ? maxY - step : minY + step;
        const std::size_t from = source.Offset(static_cast<int>(minX), static_cast<int>(y));
        const std::size_t to = Offset(static_cast<int>(minX + moveX), static_cast<int>(y + moveY));
        std::memmove(&m_storage[to], &source.m_storage[from], length);
    }
}

void PixelBuffer::CopyAll(const PixelBuffer& source)
{
    if (&source == this || source.m_width != m_width || source.m_height != m_height)
        return;
    std::ranges::copy(source.m_storage, m_storage.begin());
    m_originX = source.m_originX;
    m_originY = source.m_originY;
}

void PixelBuffer::DrawTile(int x, int y, const TilePattern& pattern)
{
    if (x >= 0 && x <= m_width - kTileWidth && y >= 0 && y <= m_height - kTileHeight) {
        // A picture rolls by whole tiles, so none of its own lies across the end of the storage.
        const int storedX = StoredX(x);
        const int storedY = StoredY(y);
        if (storedX <= m_width - kTileWidth && storedY <= m_height - kTileHeight) {
            DrawWholeTile(StoredOffset(storedX, storedY), pattern);
            return;
        }
    }
    DrawPixelByPixel(x, y, pattern);
}

void PixelBuffer::DrawWholeTile(std::size_t offset, const TilePattern& pattern)
{
    // Where a bit is clear the pixel is colour 0, where it is set colour 0 with the bits flipped
    // that make it colour 1. What is kept of the old word takes part by exclusive or.
    const TileWord base = kEachPixel * pattern.colour0;
    const TileWord flip = kEachPixel * static_cast<std::uint8_t>(pattern.colour0 ^ pattern.colour1);
    const TileWord keep = pattern.exclusive ? ~TileWord{0} : ~kTilePixels;
    const auto stride = static_cast<std::size_t>(m_width);
    std::uint8_t* target = m_storage.data() + offset;
    for (const std::uint8_t row : pattern.rows) {
        TileWord word;
        std::memcpy(&word, target, sizeof word);
        word = (word & keep) ^ base ^ (kRowMasks[row & (kRowPatterns - 1)] & flip);
        std::memcpy(target, &word, sizeof word);
        target += stride;
    }
}

void PixelBuffer::DrawPixelByPixel(int x, int y, const TilePattern& pattern)
{
    for (int row = 0; row < kTileHeight; ++row) {
        for (int pixel = 0; pixel < kTileWidth; ++pixel) {
            const std::int64_t pixelX = std::int64_t{x} + pixel;
            const std::int64_t pixelY = std::int64_t{y} + row;
            if (pixelX < 0 || pixelX >= m_width || pixelY < 0 || pixelY >= m_height)
                continue;
            std::uint8_t& target =
                m_storage[Offset(static_cast<int>(pixelX), static_cast<int>(pixelY))];
            const int bits = pattern.rows[static_cast<std::size_t>(row)];
            const bool set = (bits >> (kTileWidth - 1 - pixel) & 1) != 0;
            const std::uint8_t colour = set ? pattern.colour1 : pattern.colour0;
            target = static_cast<std::uint8_t>(colour ^ (pattern.exclusive ? target : 0));
        }
    }
}

void PixelBuffer::ReadRow(int x, int y, std::span<std::uint8_t> out) const
{
    const auto length = static_cast<std::int64_t>(out.size());
    const std::int64_t begin = std::clamp<std::int64_t>(-std::int64_t{x}, 0, length);
    const std::int64_t end = std::clamp<std::int64_t>(std::int64_t{m_width} - x, begin, length);
    if (y < 0 || y >= m_height || begin == end) {
        std::ranges::fill(out, std::uint8_t{0});
        return;
    }
    std::fill(out.begin(), out.begin() + begin, std::uint8_t{0});
    std::fill(out.begin() + end, out.end(), std::uint8_t{0});
    // In two parts where it meets the end of the storage's rows.
    const std::span inside =
        out.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
    const int storedX = StoredX(static_cast<int>(x + begin));
    const std::size_t first = std::min(inside.size(), static_cast<std::size_t>(m_width - storedX));
    std::ranges::copy(std::span(m_storage).subspan(StoredOffset(storedX, StoredY(y)), first),
                      inside.begin());
    std::ranges::copy(
        std::span(m_storage).subspan(StoredOffset(0, StoredY(y)), inside.size() - first),
        inside.begin() + static_cast<std::ptrdiff_t>(first));
}

} // namespace lantern
