// SPDX-License-Identifier: GPL-3.0-or-later
#include "RandomPackets.h"

#include <array>

namespace lantern {

namespace {

// Now and then a tile lies off the picture, on a channel that isn't shown, or both.
constexpr std::uint32_t kStrayTileInverse = 16;

// A disc carries the P and Q channels in the two top bits of each byte, so they are noise here.
std::uint8_t WithTopBits(std::uint8_t symbol, std::uint8_t noise)
{
    return static_cast<std::uint8_t>((noise & 0xC0) | symbol);
}

} // namespace

RandomPackets::RandomPackets(std::uint32_t seed, const PacketMix& mix)
    : m_generator(seed), m_mix(mix)
{
}

CdgPacket RandomPackets::Next()
{
    enum Kind { Preset, Tile, TileXor, Scroll, Colours, Unknown, NoGraphics, Noise, KindCount };
    const std::array<double, KindCount> weights = {m_mix.preset,     m_mix.tile,    m_mix.tileXor,
                                                   m_mix.scroll,     m_mix.colours, m_mix.unknown,
                                                   m_mix.noGraphics, m_mix.noise};
    double sum = 0;
    for (const double weight : weights)
        sum += weight;
    double point = sum * Word() / 4294967296.0;
    std::size_t kind = 0;
    while (kind + 1 < weights.size() && point >= weights[kind])
        point -= weights[kind++];

    CdgPacket packet = Bytes();
    if (kind == Noise)
        return packet;
    packet.Command = kind == NoGraphics ? Symbol(9) : WithTopBits(9, packet.Command);

    constexpr std::array<std::uint8_t, 8> kNoInstructions = {0, 3, 5, 7, 28, 29, 37, 63};
    const std::array<std::uint8_t, KindCount> instructions = {
        static_cast<std::uint8_t>(1 + Below(2)),
        6,
        38,
        static_cast<std::uint8_t>(20 + 4 * Below(2)),
        static_cast<std::uint8_t>(30 + Below(2)),
        kNoInstructions[Below(8)],
        static_cast<std::uint8_t>(Below(64)),
        0};
    packet.Instruction = WithTopBits(instructions[kind], packet.Instruction);
    const bool isTile = kind == Tile || kind == TileXor;
    if (isTile && Below(kStrayTileInverse) != 0) {
        packet.PacketData[0] &= 0xCF;
        packet.PacketData[1] &= 0xDF;
        packet.PacketData[2] = Symbol(18);
        packet.PacketData[3] = Symbol(50);
    }
    return packet;
}

OneBasedArray<CdgPacket> RandomPackets::Stream(PacketIndex count)
{
    OneBasedArray<CdgPacket> packets;
    for (PacketIndex i = 0; i < count; ++i)
        packets.Add(Next());
    return packets;
}

std::uint8_t RandomPackets::Symbol(std::uint32_t limit)
{
    return static_cast<std::uint8_t>(Below(limit) | (Below(4) << 6));
}

CdgPacket RandomPackets::Bytes()
{
    CdgPacket packet;
    packet.Command = static_cast<std::uint8_t>(Word());
    packet.Instruction = static_cast<std::uint8_t>(Word());
    for (std::size_t i = 0; i < packet.PacketData.size(); i += 4) {
        const std::uint32_t four = Word();
        for (std::size_t k = 0; k < 4; ++k)
            packet.PacketData[i + k] = static_cast<std::uint8_t>(four >> 8 * k);
    }
    return packet;
}

} // namespace lantern
