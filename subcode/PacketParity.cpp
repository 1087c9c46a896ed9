// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketParity.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace lantern {
namespace {

constexpr int kFieldSize = 64;
constexpr int kPowers = kFieldSize - 1; // of the element x, until they repeat
constexpr std::uint8_t kPolynomial = 0b1000011;

struct Field {
    std::array<std::uint8_t, kPowers> power = {}; // of x
    std::array<std::uint8_t, kFieldSize> logarithm = {};
};

constexpr Field MakeField()
{
    Field field;
    unsigned element = 1;
    for (std::uint8_t i = 0; i < kPowers; ++i) {
        field.power[i] = static_cast<std::uint8_t>(element);
        field.logarithm[element] = i;
        element <<= 1U;
        if ((element & kFieldSize) != 0)
            element ^= kPolynomial;
    }
    return field;
}
constexpr Field kField = MakeField();
static_assert(kField.power[kPowers - 1] != 1, "x must generate the whole field");

constexpr std::uint8_t Product(std::uint8_t a, std::uint8_t b)
{
    if (a == 0 || b == 0)
        return 0;
    return kField
        .power[static_cast<std::size_t>(kField.logarithm[a] + kField.logarithm[b]) % kPowers];
}

// The product of (z - x^i) for each i below the count, without its highest power, which is 1; the
// next highest comes first.
template <std::size_t count>
constexpr std::array<std::uint8_t, count> Generator()
{
    std::array<std::uint8_t, count> generator = {};
    for (std::size_t root = 0; root < count; ++root) {
        // Times z, plus times the root: in this field plus and minus are the same.
        std::array<std::uint8_t, count> next = {};
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t higher = i == 0 ? 1 : generator[i - 1];
            next[i] = static_cast<std::uint8_t>(generator[i] ^ Product(higher, kField.power[root]));
        }
        generator = next;
    }
    return generator;
}

// What is left of the message, moved up by as many places, when it is divided by the generator.
template <std::size_t count>
std::array<std::uint8_t, count> ParityOf(std::span<const std::uint8_t> message)
{
    static constexpr std::array<std::uint8_t, count> kGenerator = Generator<count>();
    std::array<std::uint8_t, count> rest = {};
    for (const std::uint8_t symbol : message) {
        const auto first = static_cast<std::uint8_t>(rest[0] ^ symbol);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t next = i + 1 < count ? rest[i + 1] : 0;
            rest[i] = static_cast<std::uint8_t>(next ^ Product(first, kGenerator[i]));
        }
    }
    return rest;
}

using Symbols = std::array<std::uint8_t, kPacketSize>;

Symbols SymbolsOf(const CdgPacket& packet)
{
    Symbols symbols;
    std::memcpy(symbols.data(), &packet, kPacketSize);
    for (std::uint8_t& symbol : symbols)
        symbol &= kSymbolMask;
    return symbols;
}

bool AreZeros(std::span<const std::uint8_t> symbols)
{
    return std::ranges::all_of(symbols, [](std::uint8_t symbol) { return symbol == 0; });
}

// The last symbols are the parity of those before them.
template <std::size_t count>
Parity StateOf(std::span<const std::uint8_t> symbols)
{
    const auto message = symbols.first(symbols.size() - count);
    const auto parity = symbols.last(count);
    if (AreZeros(symbols))
        return Parity::Empty;
    if (std::ranges::equal(ParityOf<count>(message), parity))
        return Parity::Right;
    return AreZeros(parity) ? Parity::Absent : Parity::Wrong;
}

constexpr std::size_t kQSymbols = 4; // that Q guards, with its own
constexpr std::size_t kQParity = sizeof(CdgPacket::ParityQ);
constexpr std::size_t kPParity = sizeof(CdgPacket::ParityP);

} // namespace

Parity QParity(const CdgPacket& packet)
{
    const Symbols symbols = SymbolsOf(packet);
    return StateOf<kQParity>(std::span(symbols).first<kQSymbols>());
}

Parity PParity(const CdgPacket& packet)
{
    return StateOf<kPParity>(SymbolsOf(packet));
}

CdgPacket WithParity(CdgPacket packet)
{
    Symbols symbols = SymbolsOf(packet);
    const std::span all(symbols);
    std::ranges::copy(ParityOf<kQParity>(all.first<kQSymbols - kQParity>()),
                      all.subspan<kQSymbols - kQParity>().begin());
    std::ranges::copy(ParityOf<kPParity>(all.first<kPacketSize - kPParity>()),
                      all.last<kPParity>().begin());
    std::memcpy(&packet, symbols.data(), kPacketSize);
    return packet;
}

} // namespace lantern
