// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketParity.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <span>

namespace lantern {
namespace {

using PacketBytes = std::array<std::uint8_t, kPacketSize>;

PacketBytes BytesOf(const CdgPacket& packet)
{
    PacketBytes bytes;
    std::memcpy(bytes.data(), &packet, kPacketSize);
    return bytes;
}

CdgPacket PacketOf(const PacketBytes& bytes)
{
    CdgPacket packet;
    std::memcpy(&packet, bytes.data(), kPacketSize);
    return packet;
}

// By the rules of the field alone, one bit after the other: no table is shared with the code.
unsigned Times(unsigned a, unsigned b)
{
    unsigned product = 0;
    for (; b != 0; b >>= 1U) {
        if ((b & 1U) != 0)
            product ^= a;
        a <<= 1U;
        if ((a & 0x40U) != 0)
            a ^= 0x43U;
    }
    return product;
}

// The value of the polynomial at the root-th power of x, with the first symbol as the highest
// power.
unsigned Syndrome(std::span<const std::uint8_t> symbols, int root)
{
    unsigned at = 1;
    for (int i = 0; i < root; ++i)
        at = Times(at, 2);
    unsigned value = 0;
    for (const std::uint8_t symbol : symbols)
        value = Times(value, at) ^ symbol;
    return value;
}

CdgPacket RandomPacket(std::mt19937& random)
{
    PacketBytes bytes;
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random() % 64);
    bytes[0] = kGraphicsCommand;
    return WithParity(PacketOf(bytes));
}

TEST(PacketParity, TheSyndromesOfAPacketAreZero)
{
    std::mt19937 random(1);
    for (int i = 0; i < 500; ++i) {
        const CdgPacket packet = RandomPacket(random);
        const PacketBytes bytes = BytesOf(packet);
        for (int root = 0; root < 2; ++root)
            EXPECT_EQ(Syndrome(std::span(bytes).first<4>(), root), 0U);
        for (int root = 0; root < 4; ++root)
            EXPECT_EQ(Syndrome(bytes, root), 0U);
        EXPECT_EQ(QParity(packet), Parity::Right);
        EXPECT_EQ(PParity(packet), Parity::Right);
    }
}

// The codes are linear: that of a single 1 tells them. Computed by hand from the four roots.
TEST(PacketParity, ASymbolBeforeItsParityIsTheGenerator)
{
    CdgPacket packet;
    packet.Instruction = 1;
    packet = WithParity(packet);
    // (z + 1)(z + x) = z^2 + (x + 1) z + x
    EXPECT_EQ(packet.ParityQ, (std::array<std::uint8_t, 2>{3, 2}));

    packet = {};
    packet.PacketData[15] = 1;
    packet = WithParity(packet);
    // times (z + x^2)(z + x^3) = z^2 + (x^3 + x^2) z + x^5, by x^6 = x + 1
    EXPECT_EQ(packet.ParityQ, (std::array<std::uint8_t, 2>{0, 0}));
    const unsigned a = 8 ^ 4;
    EXPECT_EQ(packet.ParityP[0], 3U ^ a);
    EXPECT_EQ(packet.ParityP[1], 2U ^ Times(3, a) ^ 32U);
    EXPECT_EQ(packet.ParityP[2], Times(2, a) ^ Times(3, 32));
    EXPECT_EQ(packet.ParityP[3], Times(2, 32));
}

TEST(PacketParity, OneToFourWrongSymbolsAreFoundWhereverTheyAre)
{
    std::mt19937 random(2);
    for (std::size_t place = 0; place < kPacketSize; ++place) {
        for (unsigned error = 1; error < 64; ++error) {
            PacketBytes bytes = BytesOf(RandomPacket(random));
            bytes[place] = static_cast<std::uint8_t>(bytes[place] ^ error);
            EXPECT_NE(PParity(PacketOf(bytes)), Parity::Right) << place << ' ' << error;
            EXPECT_EQ(QParity(PacketOf(bytes)) == Parity::Right, place >= 4) << place;
            for (const std::size_t further : {1U, 5U, 9U}) {
                std::uint8_t& other = bytes[(place + further) % kPacketSize];
                other = static_cast<std::uint8_t>(other ^ error);
                EXPECT_NE(PParity(PacketOf(bytes)), Parity::Right) << place << ' ' << error;
            }
        }
    }
}

TEST(PacketParity, BitsOfOtherChannelsDoNotCount)
{
    std::mt19937 random(3);
    PacketBytes bytes = BytesOf(RandomPacket(random));
    for (std::uint8_t& byte : bytes)
        byte |= 0xC0;
    EXPECT_EQ(QParity(PacketOf(bytes)), Parity::Right);
    EXPECT_EQ(PParity(PacketOf(bytes)), Parity::Right);
}

TEST(PacketParity, ZerosAreNone)
{
    EXPECT_EQ(QParity({}), Parity::Empty);
    EXPECT_EQ(PParity({}), Parity::Empty);
    CdgPacket packet = GraphicsPacket(CdgInstruction::TileBlock);
    EXPECT_EQ(QParity(packet), Parity::Absent);
    EXPECT_EQ(PParity(packet), Parity::Absent);
    packet.ParityQ[1] = 1;
    packet.ParityP[3] = 1;
    EXPECT_EQ(QParity(packet), Parity::Wrong);
    EXPECT_EQ(PParity(packet), Parity::Wrong);
}

} // namespace
} // namespace lantern
