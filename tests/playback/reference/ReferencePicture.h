// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// The picture decoder once more, pixel by pixel from the disc standard: slow, without buffers,
// snapshots or any code of the real one, to compare it with.
class ReferencePicture {
public:
    static constexpr int kWidth = 300;
    static constexpr int kHeight = 216;

    // The packet with the given number in its stream; the first one starts from black. The result
    // is whether it is followed by a paint when painting isn't held back.
    bool Apply(PacketIndex packetNo, const CdgPacket& packet);
    // From the start of the stream up to a packet. With target 0 nothing happens.
    void DecodeTo(const OneBasedArray<CdgPacket>& packets, PacketIndex target);

    // Anything outside the picture is a bug of the reference, and ends the program.
    int Pixel(int x, int y) const;
    const std::vector<std::uint8_t>& Pixels() const { return m_pixels; }

    std::array<std::uint8_t, 48> Colours = {};
    int Border = 0;
    int Left = 6;
    int Top = 12;
    bool Dirty = false;

private:
    void SetPixel(int x, int y, int colour);
    void Clear(int colour);
    void DrawTile(const CdgPacket& packet, bool exclusive);
    void Scroll(const CdgPacket& packet, bool fill);
    void LoadColours(const CdgPacket& packet, std::size_t first);

    std::vector<std::uint8_t> m_pixels = std::vector<std::uint8_t>(std::size_t{kWidth} * kHeight);
};

} // namespace lantern
