// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeAudioEngine.h"
#include "MakeZipHandler.h"
#include "NativeFile.h"
#include "NoWindow.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <string>

namespace lantern {
namespace {

constexpr std::size_t kSectorBytes = 2448;
constexpr std::size_t kDiscBytes = 700'000'000 / kSectorBytes * kSectorBytes;
constexpr double kMegabyte = 1e6;

// A file as large as a disc, in the system's cache.
class DiscFile {
public:
    DiscFile()
    {
        std::string block(1'000'000, '\0');
        for (std::size_t i = 0; i < block.size(); ++i)
            block[i] = static_cast<char>(i * 7 % 251);
        std::ofstream file(Path().toStdString(), std::ios::binary);
        for (std::size_t left = kDiscBytes; left > 0;) {
            const std::size_t size = std::min(left, block.size());
            file.write(block.data(), static_cast<std::streamsize>(size));
            left -= size;
        }
    }
    QString Path() const { return m_folder.filePath(QStringLiteral("disc.bin")); }

private:
    QTemporaryDir m_folder;
};

// Reads the file and copies its bytes once, as simply as can be.
void ReadAndCopy(const QString& path)
{
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    std::optional<NativeFile> file = NativeFile::OpenForReading(path);
    const auto size = static_cast<std::size_t>(file->Size());
    const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(size);
    ReadInPieces(*file, std::span(bytes.get(), size), kPiece);
    const auto copy = std::make_unique_for_overwrite<std::uint8_t[]>(size);
    std::memcpy(copy.get(), bytes.get(), size);
    benchmark::DoNotOptimize(copy[size / 2]);
}

struct Loaded {
    explicit Loaded(const QString& path) { loader.AddMedia(path); }

    Track track;
    FakeAudioEngine engine;
    NoWindow window;
    MediaLoader loader{track, engine, window, {[] { return MakeZipHandler(); }, QString()}};
};

// A line of the process's state, in bytes.
double MemoryOf(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name))
            return std::stod(line.substr(name.size() + 1)) * 1024;
    }
    return 0;
}

// How much more memory than before the work takes at its peak.
template <typename Work>
double PeakBytesOf(Work work)
{
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5; // the peak starts anew
    const double before = MemoryOf("VmRSS");
    work();
    return MemoryOf("VmHWM") - before;
}

template <typename Work>
double SecondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The speed beside that of reading and copying the bytes once, in turn, so that each meets the same
// machine; and the memory beyond twice the file's size.
void LoadADisc(benchmark::State& state)
{
    const DiscFile disc;
    double seconds = 0;
    double plainSeconds = 0;
    double peak = 0;
    for (auto _ : state) {
        std::unique_ptr<Loaded> loaded;
        const auto load = [&] { loaded = std::make_unique<Loaded>(disc.Path()); };
        const double loading = SecondsOf([&] { peak = std::max(peak, PeakBytesOf(load)); });
        if (loaded->track.PacketCount() != static_cast<int>(kDiscBytes / kSectorBytes * 4))
            state.SkipWithError("the disc did not load");
        loaded.reset();
        state.SetIterationTime(loading);
        seconds += loading;
        plainSeconds += SecondsOf([&] { ReadAndCopy(disc.Path()); });
    }
    state.counters["speed_of_a_plain_copy"] = plainSeconds / seconds;
    state.counters["peak_of_the_size"] = peak / static_cast<double>(kDiscBytes);
    state.counters["peak_beyond_twice_the_size_mb"] =
        (peak - 2.0 * static_cast<double>(kDiscBytes)) / kMegabyte;
}
BENCHMARK(LoadADisc)->UseManualTime()->Unit(benchmark::kMillisecond);

// A folder of songs, a third of them with accents in either form. No name is like another, but
// they differ late.
class SongFolder {
public:
    SongFolder()
    {
        for (int i = 0; i < kSongs; ++i)
            Make(i % 3 == 0   ? "Los mejores exitos %1.CDG"
                 : i % 3 == 1 ? "Los mejores \u00E9xitos %1.Mp3"
                              : "LOS MEJORES E\u0301XITOS %1.mp3",
                 i);
        Make("Los mejores \u00E9xitos.cdg", 0);
    }
    QString Path() const
    {
        return m_folder.filePath(QString::fromUtf8("Los mejores \u00E9xitos.cdg"));
    }

private:
    static constexpr int kSongs = 50'000;

    void Make(const char* name, int number) const
    {
        const QString path =
            m_folder.filePath(QString::fromUtf8(name).arg(number, 5, 10, QChar(u'0')));
        std::ofstream(path.toStdString()).put('\0');
    }

    QTemporaryDir m_folder;
};

// A packet file without any audio beside it, so that each of the fourteen names is looked for.
void LookForAudioAmongManyFiles(benchmark::State& state)
{
    const SongFolder folder;
    const QString path = folder.Path();
    for (auto _ : state) {
        const Loaded loaded(path);
        benchmark::DoNotOptimize(loaded.track.ClipCount());
    }
}
BENCHMARK(LookForAudioAmongManyFiles)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace lantern
