// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileChannel.h"

#include <algorithm>

namespace lantern::test {
namespace {

constexpr int kTileAcross = 6;
constexpr int kTileDown = 12;
constexpr int kTilesAcross = TileChannel::kWidth / kTileAcross;
constexpr int kTilesDown = TileChannel::kHeight / kTileDown;

using TilePixels = std::array<std::uint8_t, kTileAcross * kTileDown>;

// A set bit where the pixel has that bit.
CdgPacket TilePacket(CdgInstruction instruction, int tile, int colour0, int colour1,
                     const TilePixels& pixels, std::uint8_t bit)
{
    CdgPacket packet = GraphicsPacket(instruction);
    packet.PacketData[0] = static_cast<std::uint8_t>(colour0);
    packet.PacketData[1] = static_cast<std::uint8_t>(colour1);
    packet.PacketData[2] = static_cast<std::uint8_t>(tile / kTilesAcross);
    packet.PacketData[3] = static_cast<std::uint8_t>(tile % kTilesAcross);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (pixels[i] & bit)
            packet.PacketData[4 + i / kTileAcross] |= std::uint8_t(0x20U >> i % kTileAcross);
    }
    return packet;
}

} // namespace

TileChannel::TileChannel(bool exclusive, int damagedOneIn, std::uint32_t seed)
    : m_exclusive(exclusive), m_damagedOneIn(damagedOneIn), m_random(seed),
      m_wanted(std::size_t{kWidth} * kHeight), m_shown(m_wanted)
{
}

void TileChannel::Put(int x, int y, std::uint8_t index, Urgency urgency)
{
    if (x < 0 || x >= kWidth || y < 0 || y >= kHeight)
        return;
    m_wanted[Index(x, y)] = index;
    if (m_shown[Index(x, y)] != index)
        m_dirty.emplace(urgency, y / kTileDown * kTilesAcross + x / kTileAcross);
}

void TileChannel::Clear(std::uint8_t index)
{
    constexpr int kRepeats = 4;
    for (int i = 0; i < kRepeats; ++i) {
        CdgPacket packet = GraphicsPacket(CdgInstruction::MemoryPreset);
        packet.PacketData[0] = index;
        packet.PacketData[1] = static_cast<std::uint8_t>(i);
        m_queue.push_back(packet);
    }
    std::ranges::fill(m_wanted, index);
    std::ranges::fill(m_shown, index);
    m_dirty.clear();
}

void TileChannel::Load(const Palette& palette)
{
    for (const std::size_t base : {0U, 8U}) {
        CdgPacket packet = GraphicsPacket(base == 0 ? CdgInstruction::LoadColourTableLow
                                                    : CdgInstruction::LoadColourTableHigh);
        for (std::size_t i = 0; i < 8; ++i) {
            const int colour = palette[base + i];
            packet.PacketData[2 * i] = std::uint8_t(colour >> 6 & 0x3F);
            packet.PacketData[2 * i + 1] = std::uint8_t((colour >> 4 & 3) << 4 | (colour & 15));
        }
        m_queue.push_back(packet);
    }
}

void TileChannel::ScrollUp(std::uint8_t index)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::ScrollPreset);
    packet.PacketData[0] = index;
    packet.PacketData[2] = 2 << 4;
    m_queue.push_back(packet);
    for (auto* pixels : {&m_wanted, &m_shown}) {
        std::ranges::rotate(*pixels, pixels->begin() + kTileDown * kWidth);
        std::fill(pixels->end() - kTileDown * kWidth, pixels->end(), index);
    }
    std::set<std::pair<Urgency, int>> moved;
    for (const auto& [urgency, tile] : m_dirty) {
        if (tile >= kTilesAcross)
            moved.emplace(urgency, tile - kTilesAcross);
    }
    m_dirty.swap(moved);
}

void TileChannel::SendOne()
{
    while (m_queue.empty() && !m_dirty.empty()) {
        const int tile = m_dirty.begin()->second;
        m_dirty.erase(m_dirty.begin());
        QueueTile(tile);
    }
    CdgPacket packet;
    if (!m_queue.empty()) {
        packet = Damaged(m_queue.front());
        m_queue.pop_front();
    }
    m_packets.Add(packet);
}

void TileChannel::QueueTile(int tile)
{
    TilePixels pixels{};
    TilePixels change{};
    std::set<std::uint8_t> colours;
    std::set<std::uint8_t> changes;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::size_t at = Index(tile % kTilesAcross * kTileAcross + int(i) % kTileAcross,
                                     tile / kTilesAcross * kTileDown + int(i) / kTileAcross);
        pixels[i] = m_wanted[at];
        change[i] = m_wanted[at] ^ m_shown[at];
        colours.insert(pixels[i]);
        changes.insert(change[i]);
        m_shown[at] = m_wanted[at];
    }
    changes.erase(0);
    if (changes.empty())
        return;
    const std::uint8_t mask = *changes.begin();
    if (m_exclusive && changes.size() == 1) {
        m_queue.push_back(TilePacket(CdgInstruction::TileBlockXor, tile, 0, mask, change, mask));
        return;
    }
    // The bits that all of the tile's pixels have alike, and the others one by one.
    std::uint8_t common = 15;
    std::uint8_t any = 0;
    for (const std::uint8_t colour : colours) {
        common &= colour;
        any |= colour;
    }
    const auto varying = static_cast<std::uint8_t>(any & ~common);
    if (colours.size() == 2) {
        const std::uint8_t low = *colours.begin();
        const std::uint8_t high = *colours.rbegin();
        const auto bit = static_cast<std::uint8_t>(1U << (31 - __builtin_clz(low ^ high)));
        m_queue.push_back(TilePacket(CdgInstruction::TileBlock, tile, low, high, pixels, bit));
        return;
    }
    bool isFirst = true;
    for (std::uint8_t bit = 1; bit < 16; bit = std::uint8_t(bit << 1)) {
        if (!(varying & bit) && !(isFirst && varying == 0))
            continue;
        m_queue.push_back(
            isFirst ? TilePacket(CdgInstruction::TileBlock, tile, common, common | bit, pixels, bit)
                    : TilePacket(CdgInstruction::TileBlockXor, tile, 0, bit, pixels, bit));
        isFirst = false;
        if (varying == 0) {
            m_queue.back().PacketData[1] = common;
            break;
        }
    }
}

CdgPacket TileChannel::Damaged(CdgPacket packet)
{
    if (m_damagedOneIn == 0 || m_random() % static_cast<unsigned>(m_damagedOneIn) != 0)
        return packet;
    if (m_random() % 2 == 0)
        return {};
    packet.PacketData[m_random() % packet.PacketData.size()] ^= std::uint8_t(1U << m_random() % 6);
    return packet;
}

} // namespace lantern::test
