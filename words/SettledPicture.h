// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PacketInterpreter.h"
#include "PictureMemory.h"
#include "Track.h"
#include "VirtualBuffers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// A colour as the disc carries it, 0xRGB with four bits each. Whether letters are drawn in another
// index or an index gets another colour is the same to who looks.
using DiscColour = std::uint16_t;
inline constexpr std::size_t kDiscColours = 4096;

// What a pixel became after it had been left alone for a moment.
struct SettledPixel {
    int x = 0;
    int y = 0;
    DiscColour from = 0;
    DiscColour to = 0;
    PacketIndex at = 0;           // the packet that changed it last
    bool isByColourTable = false; // that was no tile, but a change of colours
};

class SettledWatcher {
public:
    virtual ~SettledWatcher() = default;
    virtual void PixelSettled(const SettledPixel& pixel) = 0;
    // All that lay at x, y lies at x + right, y + down now; what leaves on one side comes in on
    // the other. What is filled there settles later.
    virtual void Rolled(int right, int down) = 0;
    // At each look, when all that settled has been told.
    virtual void Looked(PacketIndex now) = 0;
    virtual void Filled(DiscColour) {}
};

// The picture of a track, run from its start to its end without a clock, as it is once each pixel
// has come to rest: discs draw a tile with several packets, whose colours in between nobody sees.
class SettledPicture {
public:
    explicit SettledPicture(const OneBasedArray<CdgPacket>& packets);

    void Run(SettledWatcher& watcher);
    // During the run.
    DiscColour At(int x, int y) const { return m_settled[Place(x, y)]; }

private:
    static constexpr int kTiles = kTileColumns * kTileRows;
    class NoPainter final : public Painter {
        void PaintDisplay() override {}
    };

    static std::size_t Place(int x, int y)
    {
        return static_cast<std::size_t>(y) * kPictureWidth + static_cast<std::size_t>(x);
    }
    void Apply(const CdgPacket& packet, PacketIndex now, SettledWatcher& watcher);
    void Roll(const CdgPacket& packet, SettledWatcher& watcher);
    void TakeTile(int tile, PacketIndex now);
    void TakeAll(PacketIndex now);
    void TakeColours(PacketIndex now);
    void Look(PacketIndex now, SettledWatcher& watcher);
    bool LookAtTile(int tile, PacketIndex now, SettledWatcher& watcher);

    const OneBasedArray<CdgPacket>& m_packets;
    VirtualBuffers m_buffers;
    PictureMemory m_memory{m_buffers};
    NoPainter m_painter;
    PacketInterpreter m_interpreter{m_memory, m_painter};

    std::vector<std::uint8_t> m_indexes;
    std::vector<PacketIndex> m_changes; // of each pixel's index
    std::vector<DiscColour> m_settled;
    std::array<DiscColour, kColourCount> m_colours{};
    std::array<PacketIndex, kColourCount> m_colourChanges{};
    std::array<bool, kTiles> m_isRestless{}; // it may have pixels that haven't settled
};

} // namespace lantern
