// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TileSize.h"
#include "Track.h"
#include "VirtualBuffers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// The picture's geometry by the disc standard: tiles, of which the outermost ring is the border.
inline constexpr int kTileColumns = 50;
inline constexpr int kTileRows = 18;
inline constexpr int kPictureWidth = kTileColumns * kTileWidth;
inline constexpr int kPictureHeight = kTileRows * kTileHeight;
inline constexpr int kVisibleWidth = kPictureWidth - 2 * kTileWidth;
inline constexpr int kVisibleHeight = kPictureHeight - 2 * kTileHeight;
static_assert(kPictureWidth == 300 && kPictureHeight == 216);
static_assert(kVisibleWidth == 288 && kVisibleHeight == 192);

inline constexpr int kRestingViewLeft = kTileWidth;
inline constexpr int kRestingViewTop = kTileHeight;

// Red, green and blue of each entry, 0 to 255.
inline constexpr int kColourCount = 16;
using ColourBytes = std::array<std::uint8_t, std::size_t{3} * kColourCount>;

// Ten seconds of packets.
inline constexpr PacketIndex SnapshotInterval = 10 * kPacketsPerSecond;

// The picture as it was right after the packet whose number is the snapshot's index times
// SnapshotInterval.
struct PictureSnapshot {
    std::int32_t ViewLeft = 0;
    std::int32_t ViewTop = 0;
    ColourBytes Colours = {};
    std::int16_t BorderColour = 0;
    int SnapshotBuffer = 0; // 0 if the snapshot was never taken
};

// The lyric picture: its two buffers, its colours, and the snapshots that make seeking fast.
//
// Life cycle: construct, SetupGraphics(true) before anything is drawn, SetupGraphics(false) at the
// end; both in this order and as often as wanted. From then on PictureBuffer is the active buffer
// of the buffers given, and nothing may open another. Everything runs on the user-interface
// thread. The fields are the state that interpreter, clock and display share.
class PictureMemory {
public:
    explicit PictureMemory(VirtualBuffers& buffers);

    // The surface is what the display shows the picture on; without one nothing is shown.
    void SetupGraphics(bool open, ScaleSurface* surface = nullptr);
    // Selects the palette for the surface once more, when the window comes to the front.
    void RealizePalette();

    // Black, with black colours, view and border at rest.
    void Reset();
    void ResetView();
    // Makes ColourTable the colours of the next paint.
    void SendColours();

    // For a packet number that is a positive multiple of SnapshotInterval. A snapshot that exists
    // stands as it is. If the memory for it can't be had, it is left out.
    void TakeSnapshot(PacketIndex packetNo);
    // The index of the last snapshot at or before a packet; 0 for none.
    std::int32_t NearestSnapshot(PacketIndex target) const;
    // For an index that NearestSnapshot gave, 1 or more. Sets PlayedPacket, too.
    void RestoreSnapshot(std::int32_t index);
    void FreeSnapshots();

    VirtualBuffers& Buffers() { return m_buffers; }

    int PictureBuffer = 0; // kPictureWidth by kPictureHeight, indexes 0 to 15
    int WrapBuffer = 0;    // two by two pictures, room for scrolls to wrap; RollPage needs none
    int PaletteHandle = 0;
    ColourBytes ColourTable = {};
    std::int16_t BorderColour = 0; // index into ColourTable, 0 to 15
    bool PictureDirty = false;     // picture or colours changed since the last paint
    std::int32_t ViewLeft = kRestingViewLeft;
    std::int32_t ViewTop = kRestingViewTop;

    CdgPacket CurrentPacket;                // the packet being interpreted
    PacketIndex PlayedPacket = 0;           // the last packet applied to the picture; 0 for none
    bool CatchingUp = false;                // during a long run of packets, which isn't shown
    std::vector<PictureSnapshot> Snapshots; // empty, or from index 0, which is never filled

private:
    VirtualBuffers& m_buffers;
};

} // namespace lantern
