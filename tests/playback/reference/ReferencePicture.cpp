// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReferencePicture.h"

#include <algorithm>

namespace lantern {

bool ReferencePicture::Apply(PacketIndex packetNo, const CdgPacket& packet)
{
    if (packetNo == 1) {
        Clear(0);
        Colours.fill(0);
        Border = 0;
    }
    bool paint = packetNo % 15 == 0;
    if (packet.Command % 64 == 9) {
        switch (packet.Instruction % 64) {
        case 1:
            Clear(packet.PacketData[0] % 16);
            break;
        case 2:
            Border = packet.PacketData[0] % 16;
            Dirty = true;
            paint = true;
            break;
        case 6:
            DrawTile(packet, false);
            break;
        case 38:
            DrawTile(packet, true);
            break;
        case 20:
            Scroll(packet, true);
            break;
        case 24:
            Scroll(packet, false);
            break;
        case 30:
            LoadColours(packet, 0);
            paint = false;
            break;
        case 31:
            LoadColours(packet, 8);
            paint = true;
            break;
        default:
            break;
        }
    }
    return paint && Dirty;
}

void ReferencePicture::DecodeTo(const OneBasedArray<CdgPacket>& packets, PacketIndex target)
{
    for (PacketIndex packetNo = 1; packetNo <= target; ++packetNo)
        Apply(packetNo, packets[packetNo]);
}

void ReferencePicture::Clear(int colour)
{
    std::ranges::fill(m_pixels, static_cast<std::uint8_t>(colour));
    Left = 6;
    Top = 12;
    Dirty = true;
}

void ReferencePicture::DrawTile(const CdgPacket& packet, bool exclusive)
{
    const auto& data = packet.PacketData;
    const int channel = data[0] / 16 % 4 * 4 + data[1] / 16 % 4;
    const int row = data[2] % 32;
    const int column = data[3] % 64;
    if (channel > 1 || row > 17 || column > 49)
        return;
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 6; ++x) {
            const bool set = (data[static_cast<std::size_t>(4 + y)] & (32 >> x)) != 0;
            std::uint8_t& pixel = m_pixels[Offset(column * 6 + x, row * 12 + y)];
            const int colour = data[set ? 1 : 0] % 16;
            pixel = static_cast<std::uint8_t>(exclusive ? pixel ^ colour : colour);
        }
    }
    Dirty = true;
}

void ReferencePicture::Scroll(const CdgPacket& packet, bool fill)
{
    const auto& data = packet.PacketData;
    constexpr std::array<int, 4> kDirection = {0, 1, -1, 0};
    const int moveX = 6 * kDirection[data[1] / 16 % 4];
    const int moveY = 12 * kDirection[data[2] / 16 % 4];
    Left = 6 + data[1] % 8;
    Top = 12 + data[2] % 16;
    Dirty = true;
    if (moveX == 0 && moveY == 0)
        return;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int fromX = x - moveX;
            const int fromY = y - moveY;
            const bool wraps = fromX < 0 || fromX >= kWidth || fromY < 0 || fromY >= kHeight;
            m_scrolled[Offset(x, y)] =
                wraps && fill
                    ? data[0] % 16
                    : m_pixels[Offset((fromX + kWidth) % kWidth, (fromY + kHeight) % kHeight)];
        }
    }
    m_pixels.swap(m_scrolled);
}

void ReferencePicture::LoadColours(const CdgPacket& packet, int first)
{
    for (int i = 0; i < 8; ++i) {
        const auto pair = static_cast<std::size_t>(2 * i);
        const auto entry = static_cast<std::size_t>(3 * (first + i));
        const int twelveBits = packet.PacketData[pair] % 64 * 64 + packet.PacketData[pair + 1] % 64;
        Colours[entry] = static_cast<std::uint8_t>(twelveBits / 256 * 17);
        Colours[entry + 1] = static_cast<std::uint8_t>(twelveBits / 16 % 16 * 17);
        Colours[entry + 2] = static_cast<std::uint8_t>(twelveBits % 16 * 17);
    }
    Dirty = true;
}

} // namespace lantern
