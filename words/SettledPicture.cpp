// SPDX-License-Identifier: GPL-3.0-or-later
#include "SettledPicture.h"

#include "Turned.h"

#include <algorithm>

namespace lantern {
namespace {

constexpr PacketIndex kLookInterval = 15;
constexpr PacketIndex kRest = 10;
// Of colours: the steps of a fade come after each other as fast as this and faster.
constexpr PacketIndex kRestOfColours = 45;
constexpr std::size_t kPixelCount = std::size_t{kPictureWidth} * kPictureHeight;

DiscColour ColourIn(const ColourBytes& table, std::size_t entry)
{
    const auto component = [&](std::size_t i) { return table[3 * entry + i] / 17; };
    return static_cast<DiscColour>(component(0) << 8 | component(1) << 4 | component(2));
}

} // namespace

SettledPicture::SettledPicture(const OneBasedArray<CdgPacket>& packets)
    : m_packets(packets), m_indexes(kPixelCount), m_changes(kPixelCount), m_settled(kPixelCount)
{
}

void SettledPicture::Run(SettledWatcher& watcher)
{
    m_memory.SetupGraphics(true);
    m_memory.CatchingUp = true;
    for (PacketIndex now = 1; now <= m_packets.Count(); ++now) {
        Apply(m_packets[now], now, watcher);
        if (now % kLookInterval == 0)
            Look(now, watcher);
        if (now % SnapshotInterval == 0)
            m_memory.FreeSnapshots(); // nobody goes back
    }
    // What changed last comes to rest, too.
    const PacketIndex end = m_packets.Count() + kRestOfColours;
    Look(end - end % kLookInterval + kLookInterval, watcher);
    m_memory.SetupGraphics(false);
}

void SettledPicture::Apply(const CdgPacket& packet, PacketIndex now, SettledWatcher& watcher)
{
    m_memory.CurrentPacket = packet;
    m_interpreter.ShowCode(now);
    if ((packet.Command & kSymbolMask) != kGraphicsCommand)
        return;
    switch (static_cast<CdgInstruction>(packet.Instruction & kSymbolMask)) {
    case CdgInstruction::TileBlock:
    case CdgInstruction::TileBlockXor: {
        const int row = packet.PacketData[2] & 0x1F;
        const int column = packet.PacketData[3] & kSymbolMask;
        if (row < kTileRows && column < kTileColumns)
            TakeTile(row * kTileColumns + column, now);
        break;
    }
    case CdgInstruction::MemoryPreset:
        TakeAll(now);
        watcher.Filled(m_colours[packet.PacketData[0] & 0x0F]);
        break;
    case CdgInstruction::ScrollPreset:
    case CdgInstruction::ScrollCopy:
        Roll(packet, watcher);
        TakeAll(now);
        break;
    case CdgInstruction::LoadColourTableLow:
    case CdgInstruction::LoadColourTableHigh:
        TakeColours(now);
        break;
    case CdgInstruction::BorderPreset:
    case CdgInstruction::DefineTransparentColour:
        break;
    }
}

void SettledPicture::Roll(const CdgPacket& packet, SettledWatcher& watcher)
{
    const auto direction = [&](std::size_t byte) {
        const int command = packet.PacketData[byte] >> 4 & 3;
        return command == 1 ? 1 : command == 2 ? -1 : 0;
    };
    const int right = direction(1);
    const int down = direction(2);
    if (right == 0 && down == 0)
        return;
    const auto roll = [&](auto& pixels) {
        Turn(pixels, kPictureWidth, right * kTileWidth, down * kTileHeight);
    };
    roll(m_indexes);
    roll(m_changes);
    roll(m_settled);
    Turn(m_isRestless, kTileColumns, right, down);
    watcher.Rolled(right * kTileWidth, down * kTileHeight);
}

void SettledPicture::TakeTile(int tile, PacketIndex now)
{
    const auto pixels = m_buffers.Pixels(m_memory.PictureBuffer);
    const int left = tile % kTileColumns * kTileWidth;
    const int top = tile / kTileColumns * kTileHeight;
    for (int y = top; y < top + kTileHeight; ++y) {
        for (int x = left; x < left + kTileWidth; ++x) {
            const std::size_t place = Place(x, y);
            if (m_indexes[place] != pixels[place]) {
                m_indexes[place] = pixels[place];
                m_changes[place] = now;
                m_isRestless[static_cast<std::size_t>(tile)] = true;
            }
        }
    }
}

void SettledPicture::TakeAll(PacketIndex now)
{
    // Most of such packets are repeats.
    if (std::ranges::equal(m_buffers.Pixels(m_memory.PictureBuffer), m_indexes))
        return;
    for (int tile = 0; tile < kTiles; ++tile)
        TakeTile(tile, now);
}

void SettledPicture::TakeColours(PacketIndex now)
{
    for (std::size_t entry = 0; entry < m_colours.size(); ++entry) {
        const DiscColour colour = ColourIn(m_memory.ColourTable, entry);
        if (m_colours[entry] == colour)
            continue;
        m_colours[entry] = colour;
        m_colourChanges[entry] = now;
        m_isRestless.fill(true);
    }
}

void SettledPicture::Look(PacketIndex now, SettledWatcher& watcher)
{
    for (int tile = 0; tile < kTiles; ++tile) {
        bool& isRestless = m_isRestless[static_cast<std::size_t>(tile)];
        if (isRestless)
            isRestless = LookAtTile(tile, now, watcher);
    }
    watcher.Looked(now);
}

bool SettledPicture::LookAtTile(int tile, PacketIndex now, SettledWatcher& watcher)
{
    bool isRestless = false;
    const int left = tile % kTileColumns * kTileWidth;
    const int top = tile / kTileColumns * kTileHeight;
    for (int y = top; y < top + kTileHeight; ++y) {
        for (int x = left; x < left + kTileWidth; ++x) {
            const std::size_t place = Place(x, y);
            const std::uint8_t index = m_indexes[place];
            const DiscColour colour = m_colours[index];
            if (colour == m_settled[place])
                continue;
            const PacketIndex at = std::max(m_changes[place], m_colourChanges[index]);
            if (m_changes[place] > now - kRest || m_colourChanges[index] > now - kRestOfColours) {
                isRestless = true;
                continue;
            }
            watcher.PixelSettled(
                {x, y, m_settled[place], colour, at, m_colourChanges[index] > m_changes[place]});
            m_settled[place] = colour;
        }
    }
    return isRestless;
}

} // namespace lantern
