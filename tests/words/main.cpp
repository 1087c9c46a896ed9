// SPDX-License-Identifier: GPL-3.0-or-later
// word-rates LINES SEED [STYLE [FILE]]: makes the tracks of known words and prints how well they
// are read; of one style the lines that were read wrong, too, and its track as a .cdg file.
#include "SungTrack.h"
#include "TesseractReader.h"
#include "WordRates.h"

#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>

namespace lantern::test {
namespace {

template <typename Words>
std::string TextOf(const Words& words)
{
    QStringList texts;
    for (const auto& word : words)
        texts += word.text;
    return texts.join(u' ').toStdString();
}

void PrintDifferences(const SungTrack& track, const std::vector<SongLine>& read)
{
    std::vector<std::string> known;
    std::vector<std::string> found;
    for (const auto& line : track.lines)
        known.push_back(TextOf(line));
    for (const SongLine& line : read)
        found.push_back(TextOf(line.words));
    for (const std::string& line : found) {
        if (std::ranges::find(known, line) == known.end())
            std::printf("  read:  %s\n", line.c_str());
    }
    for (const std::string& line : known) {
        if (std::ranges::find(found, line) == found.end())
            std::printf("  known: %s\n", line.c_str());
    }
}

void PrintRates(const SungStyle& style, const SungTrack& track, WordRates rates, double seconds)
{
    std::ranges::sort(rates.offsMs);
    const auto off = [&](double part) {
        const double last = double(rates.offsMs.size()) - 1;
        return rates.offsMs.empty() ? -1 : rates.offsMs[static_cast<std::size_t>(part * last)];
    };
    std::printf("%-14s %5.1f s  %4.2f s cpu  letters %3d/%4d %5.2f%%  lines %d/%d  break %d  "
                "words %zu +%d  %3.0f %3.0f %3.0f ms\n",
                style.name.c_str(), track.packets.Count() / double{kPacketsPerSecond}, seconds,
                rates.wrong, rates.letters, 100.0 * rates.wrong / rates.letters, rates.linesFound,
                rates.lines, rates.inBreak, rates.offsMs.size(), rates.interpolated, off(0.5),
                off(0.95), off(1));
    std::fflush(stdout);
}

void Write(const SungTrack& track, const char* path)
{
    FILE* const file = std::fopen(path, "wb");
    for (const CdgPacket& packet : track.packets) {
        if (file)
            std::fwrite(&packet, sizeof packet, 1, file);
    }
    if (!file || std::fclose(file) != 0)
        std::fprintf(stderr, "word-rates: cannot write %s\n", path);
}

} // namespace
} // namespace lantern::test

int main(int argc, char** argv)
{
    using namespace lantern;
    using namespace lantern::test;
    const int lineCount = argc > 1 ? std::atoi(argv[1]) : 12;
    const auto seed = static_cast<std::uint32_t>(argc > 2 ? std::atoi(argv[2]) : 1);
    const std::string only = argc > 3 ? argv[3] : "";
    std::uint32_t number = 0;
    for (const SungStyle& style : SungStyles()) {
        ++number;
        if (!only.empty() && style.name != only)
            continue;
        const SungTrack track = MakeSungTrack(style, lineCount, seed * 100 + number);
        const ReaderOffer offer = LoadTesseractReader(QString::fromStdString(style.language));
        if (!offer.reader) {
            std::fprintf(stderr, "word-rates: %s\n", offer.error.toUtf8().constData());
            return 1;
        }
        const std::clock_t begin = std::clock();
        const std::vector<SongLine> read = ReadSongWords(track.packets, *offer.reader);
        const double seconds = double(std::clock() - begin) / CLOCKS_PER_SEC;
        PrintRates(style, track, RatesOf(track, read), seconds);
        if (!only.empty())
            PrintDifferences(track, read);
        if (argc > 4)
            Write(track, argv[4]);
    }
}
