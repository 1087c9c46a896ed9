// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReferencePicture.h"

#include <algorithm>
#include <cstdlib>

namespace lantern {

namespace {

std::size_t Offset(int x, int y)
{
    if (x < 0 || x >= ReferencePicture::kWidth || y < 0 || y >= ReferencePicture::kHeight)
        std::abort();
    const int offset = y * ReferencePicture::kWidth + x;
    return static_cast<std::size_t>(offset);
}

} // namespace

int ReferencePicture::Pixel(int x, int y) const
{
    return m_pixels[Offset(x, y)];
}

void ReferencePicture::SetPixel(int x, int y, int colour)
{
    m_pixels[Offset(x, y)] = static_cast<std::uint8_t>(colour);
}

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
    for (int tileY = 0; tileY < 12; ++tileY) {
        for (int tileX = 0; tileX < 6; ++tileX) {
            const int x = column * 6 + tileX;
            const int y = row * 12 + tileY;
            const bool set = (data[4 + static_cast<std::size_t>(tileY)] & (32 >> tileX)) != 0;
            const int colour = data[set ? 1 : 0] % 16;
            SetPixel(x, y, exclusive ? Pixel(x, y) ^ colour : colour);
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
    const ReferencePicture before = *this;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int fromX = x - moveX;
            const int fromY = y - moveY;
            const bool wraps = fromX < 0 || fromX >= kWidth || fromY < 0 || fromY >= kHeight;
            const int old = before.Pixel((fromX + kWidth) % kWidth, (fromY + kHeight) % kHeight);
            SetPixel(x, y, wraps && fill ? data[0] % 16 : old);
        }
    }
}

void ReferencePicture::LoadColours(const CdgPacket& packet, std::size_t first)
{
    for (std::size_t i = 0; i < 8; ++i) {
        const std::size_t pair = 2 * i;
        const std::size_t entry = 3 * (first + i);
        const int twelveBits = packet.PacketData[pair] % 64 * 64 + packet.PacketData[pair + 1] % 64;
        Colours[entry] = static_cast<std::uint8_t>(twelveBits / 256 * 17);
        Colours[entry + 1] = static_cast<std::uint8_t>(twelveBits / 16 % 16 * 17);
        Colours[entry + 2] = static_cast<std::uint8_t>(twelveBits % 16 * 17);
    }
    Dirty = true;
}

} // namespace lantern
