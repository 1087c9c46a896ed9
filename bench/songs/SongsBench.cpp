// SPDX-License-Identifier: GPL-3.0-or-later
#include "ByteSource.h"
#include "LoudnessScan.h"
#include "PathText.h"
#include "SongMemory.h"
#include "SqliteSongStore.h"
#include "Track.h"
#include "WorkLimit.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <thread>

namespace lantern {
namespace {

constexpr int kSongSeconds = 240;
constexpr int kRate = 44100;

SongId Number(int number)
{
    return QByteArray::number(number).rightJustified(kSongIdSize, '0');
}

SongRecord Sung(int key)
{
    return {.tune = {key, 0}, .loudness = KeptLoudness{Number(key), -12, 1}};
}

// A packet in three draws, as many as a busy song has.
void NameASong(benchmark::State& state)
{
    Track track;
    track.PacketStore.Resize(kSongSeconds * kPacketsPerSecond);
    std::mt19937 random(3);
    for (std::int32_t i = 1; i <= track.PacketCount(); i += 3) {
        CdgPacket& packet = track.PacketStore[i];
        packet.Command = 9;
        packet.Instruction = 6;
        for (std::uint8_t& byte : packet.PacketData)
            byte = static_cast<std::uint8_t>(random() % 64);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(IdentityOf(track));
}
BENCHMARK(NameASong)->Unit(benchmark::kMillisecond);

// What is asked, and what is told, on the user-interface thread, with ten thousand songs known.
class KnownSongs {
public:
    KnownSongs()
    {
        SongRecords many;
        for (int i = 0; i < 10'000; ++i)
            many.insert(Number(i), Sung(1 + i % 10));
        MakeSqliteSongStore(File())->Write({.forgetAll = false, .records = many});
    }
    QString File() const { return m_folder.filePath(QStringLiteral("songs.db")); }

private:
    QTemporaryDir m_folder;
};

void AwaitRead(const SongMemory& memory)
{
    while (!memory.IsRead())
        std::this_thread::sleep_for(std::chrono::microseconds(100));
}

void ReadTenThousandSongs(benchmark::State& state)
{
    const KnownSongs songs;
    for (auto _ : state)
        AwaitRead(SongMemory(MakeSqliteSongStore(songs.File())));
}
BENCHMARK(ReadTenThousandSongs)->UseRealTime()->Unit(benchmark::kMillisecond);

void FindASongAmongTenThousand(benchmark::State& state)
{
    const KnownSongs songs;
    const SongMemory memory(MakeSqliteSongStore(songs.File()));
    AwaitRead(memory);
    int number = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(memory.Find(Number(number++ % 10'000)));
}
BENCHMARK(FindASongAmongTenThousand)->Unit(benchmark::kMicrosecond);

void KeepAChange(benchmark::State& state)
{
    const KnownSongs songs;
    SongMemory memory(MakeSqliteSongStore(songs.File()));
    AwaitRead(memory);
    int number = 0;
    for (auto _ : state) {
        ++number;
        memory.Keep(Number(number % 100), Sung(number % 9 - 4));
    }
}
BENCHMARK(KeepAChange)->Unit(benchmark::kMicrosecond);

// Four minutes of noise that comes and goes, as an encoder makes it.
std::unique_ptr<ByteSource> SongOf(const QTemporaryDir& folder, const std::string& encoder,
                                   const std::string& name)
{
    const std::string path = folder.path().toStdString() + "/";
    std::ofstream raw(path + "raw", std::ios::binary);
    std::mt19937 random(5);
    for (int i = 0; i < kSongSeconds * kRate; ++i) {
        const double level = 6000 * (1 + std::sin(i / 30000.0));
        for (int side = 0; side < 2; ++side) {
            const auto sample = static_cast<std::int16_t>(
                level * (static_cast<double>(random()) / 4294967295.0 - 0.5) +
                level * std::sin(i / (7.0 + side)));
            raw.write(reinterpret_cast<const char*>(&sample), sizeof(sample));
        }
    }
    raw.close();
    const std::string command =
        "cd " + path + " && ffmpeg -v error -y -f s16le -ar 44100 -ac 2 -i raw " + encoder + name;
    if (std::system(command.c_str()) != 0)
        return nullptr;
    return OpenFileBytes(TextFromNative((path + name).c_str()));
}

void MeasureASong(benchmark::State& state, const std::string& encoder, const std::string& name)
{
    const QTemporaryDir folder;
    std::vector<std::unique_ptr<ByteSource>> sources;
    sources.push_back(SongOf(folder, encoder, name));
    if (!sources.front()) {
        state.SkipWithError("the song could not be made");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(MeasureLoudness(sources, WorkLimit()));
}
BENCHMARK_CAPTURE(MeasureASong, wav, "", "song.wav")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureASong, mp3, "-b:a 192k ", "song.mp3")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureASong, flac, "", "song.flac")->Unit(benchmark::kMillisecond);

void EstimateASong(benchmark::State& state)
{
    const QTemporaryDir folder;
    std::vector<std::unique_ptr<ByteSource>> sources;
    sources.push_back(SongOf(folder, "-b:a 192k ", "song.mp3"));
    if (!sources.front()) {
        state.SkipWithError("the song could not be made");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(EstimateLoudness(sources, WorkLimit()));
}
BENCHMARK(EstimateASong)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace lantern
