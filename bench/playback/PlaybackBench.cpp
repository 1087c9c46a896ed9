// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketInterpreter.h"
#include "Painter.h"
#include "PictureMemory.h"
#include "RandomPackets.h"
#include "ReferencePicture.h"
#include "RunToPacket.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <memory>

namespace lantern {

namespace {

constexpr std::uint32_t kSeed = 2026;
// A song of four minutes.
constexpr PacketIndex kSong = 4 * 60 * kPacketsPerSecond;

class NoPainter : public Painter {
public:
    void PaintDisplay() override {}
};

struct PictureSet {
    PictureSet() { Picture.SetupGraphics(true); }

    void Show(PacketIndex packetNo, const CdgPacket& packet)
    {
        Picture.CurrentPacket = packet;
        Interpreter.ShowCode(packetNo);
    }

    VirtualBuffers Buffers;
    PictureMemory Picture{Buffers};
    NoPainter Painter;
    PacketInterpreter Interpreter{Picture, Painter};
};

void DecodeFast(PictureSet& set, const OneBasedArray<CdgPacket>& packets)
{
    PacketIndex packetNo = 0;
    for (const CdgPacket& packet : packets)
        set.Show(++packetNo, packet);
}

void DecodeNaive(ReferencePicture& picture, const OneBasedArray<CdgPacket>& packets)
{
    PacketIndex packetNo = 0;
    for (const CdgPacket& packet : packets)
        picture.Apply(++packetNo, packet);
}

void CountPackets(benchmark::State& state, PacketIndex packetsEach)
{
    state.SetItemsProcessed(state.iterations() * packetsEach);
}

// A tile as the disc standard tells it, pixel by pixel through the pixel calls of the same buffers.
void DrawByPixelCalls(VirtualBuffers& buffers, const CdgPacket& packet)
{
    const auto& data = packet.PacketData;
    const int row = data[2] & 0x1F;
    const int column = data[3] & 0x3F;
    if (row >= kTileRows || column >= kTileColumns || (data[0] & 0x30) != 0 ||
        (data[1] & 0x20) != 0)
        return;
    const bool exclusive = (packet.Instruction & 0x3F) == 38;
    for (int i = 0; i < kTileHeight; ++i) {
        for (int bit = 0; bit < kTileWidth; ++bit) {
            const int x = column * kTileWidth + kTileWidth - 1 - bit;
            const int y = row * kTileHeight + i;
            const bool set = (data[4 + static_cast<std::size_t>(i)] & 1 << bit) != 0;
            const int old = buffers.FGgetpixel(x, y);
            buffers.FGsetcolor((data[set ? 1 : 0] & 0x0F) ^ (exclusive ? old : 0));
            buffers.FGputpixel(x, y);
        }
    }
}

// Processor time, so that a busy machine doesn't count.
template <typename Work>
double SecondsOf(Work work)
{
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Packets a second, and how many times the processor time of ShowCode is taken by two ways to draw
// pixel by pixel: by the pixel calls of the buffers, and by the reference decoder of the tests. All
// three run in turn, so that each meets the same machine.
void ShowCodeTiles(benchmark::State& state)
{
    const auto packets = RandomPackets(kSeed, kDenseTiles).Stream(kSong);
    PictureSet set;
    PictureSet byCalls;
    ReferencePicture reference;
    double seconds = 0;
    double callSeconds = 0;
    double referenceSeconds = 0;
    for (auto _ : state) {
        const double fast = SecondsOf([&] { DecodeFast(set, packets); });
        state.SetIterationTime(fast);
        seconds += fast;
        callSeconds += SecondsOf([&] {
            for (const CdgPacket& packet : packets)
                DrawByPixelCalls(byCalls.Buffers, packet);
        });
        referenceSeconds += SecondsOf([&] { DecodeNaive(reference, packets); });
    }
    if (!std::ranges::equal(set.Buffers.Pixels(set.Picture.PictureBuffer), reference.Pixels()))
        state.SkipWithError("the pictures differ");
    CountPackets(state, kSong);
    state.counters["times_pixel_calls"] = callSeconds / seconds;
    state.counters["times_reference"] = referenceSeconds / seconds;
}
BENCHMARK(ShowCodeTiles)->UseManualTime()->Unit(benchmark::kMillisecond);

void ShowCodeColourLoads(benchmark::State& state)
{
    constexpr PacketMix kColours = {.preset = 0,
                                    .tile = 0,
                                    .tileXor = 0,
                                    .scroll = 0,
                                    .colours = 1,
                                    .unknown = 0,
                                    .noGraphics = 0,
                                    .noise = 0};
    const auto packets = RandomPackets(kSeed, kColours).Stream(kSong);
    PictureSet set;
    for (auto _ : state)
        DecodeFast(set, packets);
    CountPackets(state, kSong);
}
BENCHMARK(ShowCodeColourLoads)->Unit(benchmark::kMillisecond);

// An hour of packets that all move the picture, both ways along both axes, some with a fill.
void ShowCodeScrolls(benchmark::State& state)
{
    constexpr PacketIndex kHour = 60 * 60 * kPacketsPerSecond;
    constexpr std::array<std::uint8_t, 8> kMoves = {0x10, 0x20, 0x10, 0x00, 0x20, 0x20, 0x00, 0x10};
    OneBasedArray<CdgPacket> packets;
    for (PacketIndex i = 0; i < kHour; ++i) {
        const auto across = kMoves[static_cast<std::size_t>(i % 8)];
        const auto down = kMoves[static_cast<std::size_t>((i + 1) % 8)];
        const auto instruction = static_cast<std::uint8_t>(i / 8 % 2 == 0 ? 20 : 24);
        packets.Add({.Command = 9,
                     .Instruction = instruction,
                     .PacketData = {static_cast<std::uint8_t>(i % 16),
                                    static_cast<std::uint8_t>(across | i % 6),
                                    static_cast<std::uint8_t>(down | i % 12)}});
    }
    PictureSet set;
    for (auto _ : state)
        DecodeFast(set, packets);
    CountPackets(state, kHour);
}
BENCHMARK(ShowCodeScrolls)->Unit(benchmark::kMillisecond);

// Seeks. The mix is that of a song: tiles, now and then a scroll or new colours.

void FirstSeekAcrossASong(benchmark::State& state)
{
    const auto packets = RandomPackets(kSeed, kTileMix).Stream(kSong);
    for (auto _ : state) {
        state.PauseTiming();
        auto set = std::make_unique<PictureSet>();
        state.ResumeTiming();
        RunToPacket(set->Picture, set->Interpreter, packets, kSong);
        state.PauseTiming();
        set.reset();
        state.ResumeTiming();
    }
    CountPackets(state, kSong);
}
BENCHMARK(FirstSeekAcrossASong)->Unit(benchmark::kMillisecond);

// From the end to just before a snapshot, where most packets are to be decoded once more.
void SeekBackOverPlayedGround(benchmark::State& state)
{
    const auto packets = RandomPackets(kSeed, kTileMix).Stream(kSong);
    PictureSet set;
    RunToPacket(set.Picture, set.Interpreter, packets, kSong);
    PacketIndex target = kSong - 1;
    for (auto _ : state) {
        RunToPacket(set.Picture, set.Interpreter, packets, target);
        target -= SnapshotInterval;
        if (target <= SnapshotInterval) {
            state.PauseTiming();
            target = kSong - 1;
            RunToPacket(set.Picture, set.Interpreter, packets, kSong);
            state.ResumeTiming();
        }
    }
}
BENCHMARK(SeekBackOverPlayedGround)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace lantern
