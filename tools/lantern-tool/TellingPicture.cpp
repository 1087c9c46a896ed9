// SPDX-License-Identifier: GPL-3.0-or-later
#include "TellingPicture.h"

#include "RunToPacket.h"
#include "VisiblePicture.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace lantern::tool {
namespace {

// Before and behind this part of a song, in hundredths, stand its title and its credits.
constexpr PacketIndex kWordsBegin = 20;
constexpr PacketIndex kWordsEnd = 90;

// Edges from left to right: a letter has one or two strokes to a tile, and most of its lines.
constexpr int kFewestEdges = 4;
constexpr int kMostEdges = 36;
// Below this difference of their brightness, of 255, two colours make no letter.
constexpr int kReadableDifference = 48;

using Readable = std::array<std::array<bool, kColourCount>, kColourCount>;

int Brightness(const ColourBytes& colours, std::size_t entry)
{
    return (299 * colours[3 * entry] + 587 * colours[3 * entry + 1] +
            114 * colours[3 * entry + 2]) /
           1000;
}

Readable ReadablePairs(const ColourBytes& colours)
{
    Readable readable = {};
    for (std::size_t first = 0; first < kColourCount; ++first) {
        for (std::size_t second = 0; second < kColourCount; ++second) {
            const int difference = Brightness(colours, first) - Brightness(colours, second);
            readable[first][second] = std::abs(difference) >= kReadableDifference;
        }
    }
    return readable;
}

int EdgesOfTile(std::span<const std::uint8_t> indexes, std::size_t corner, const Readable& readable)
{
    int edges = 0;
    for (int y = 0; y < kTileHeight; ++y) {
        const auto line = indexes.subspan(corner + static_cast<std::size_t>(y * kPictureWidth));
        for (std::size_t x = 1; x < kTileWidth; ++x)
            edges += readable[line[x - 1] % kColourCount][line[x] % kColourCount] ? 1 : 0;
    }
    return edges;
}

// The best of the pictures shown to it; among equal ones, the first.
class BestPicture {
public:
    void Consider(PictureMemory& picture, int score)
    {
        if (score <= m_score)
            return;
        m_score = score;
        m_image = VisiblePicture(picture);
    }
    bool HasWords() const { return m_score > 0; }
    const QImage& Image() const { return m_image; }

private:
    int m_score = 0;
    QImage m_image;
};

} // namespace

int LetteredTiles(std::span<const std::uint8_t> indexes, const ColourBytes& colours)
{
    const Readable readable = ReadablePairs(colours);
    int lettered = 0;
    for (int row = 1; row < kTileRows - 1; ++row) {
        for (int column = 1; column < kTileColumns - 1; ++column) {
            const int corner = row * kTileHeight * kPictureWidth + column * kTileWidth;
            const int edges = EdgesOfTile(indexes, static_cast<std::size_t>(corner), readable);
            lettered += edges >= kFewestEdges && edges <= kMostEdges ? 1 : 0;
        }
    }
    return lettered;
}

QImage TellingPicture(const OneBasedArray<CdgPacket>& packets)
{
    OfflinePicture offline;
    PictureMemory& picture = offline.Memory();
    const PacketIndex count = std::min(packets.Count(), kTellingPackets);
    const PacketIndex begin = count / 100 * kWordsBegin;
    const PacketIndex end = count / 100 * kWordsEnd;
    BestPicture song;
    BestPicture edge;
    QImage middle = VisiblePicture(picture); // of a track without packets
    bool isBehindMiddle = false;
    for (PacketIndex packet = 0; packet < count;) {
        packet = std::min(packet + kPacketsPerSecond, count);
        offline.RunTo(packets, packet);
        const int score =
            LetteredTiles(picture.Buffers().Pixels(picture.PictureBuffer), picture.ColourTable);
        (packet >= begin && packet <= end ? song : edge).Consider(picture, score);
        if (!isBehindMiddle && packet >= count / 2) {
            isBehindMiddle = true;
            middle = VisiblePicture(picture);
        }
    }
    if (song.HasWords())
        return song.Image();
    return edge.HasWords() ? edge.Image() : middle;
}

QImage ScaledToSquare(const QImage& image, int side)
{
    const QSize size = image.size().scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
    // By a whole factor first, which keeps the pixels flat.
    const int factor = (size.width() + image.width() - 1) / image.width();
    const QImage enlarged = image.scaled(image.size() * factor);
    return enlarged.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace lantern::tool
