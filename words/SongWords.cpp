// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongWords.h"

#include "LineFinder.h"
#include "ReadLine.h"
#include "SungLine.h"
#include "WordTimes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lantern {
namespace {

// A song of an hour has eight hundred lines; noise may have any number.
constexpr std::size_t kMostLines = 1000;
constexpr int kLargestHeight = 60;

// A bar that tells how long a break is, or a frame: too much of it is filled for letters.
bool IsDrawing(const LineMask& mask)
{
    const auto filled = std::ranges::count(mask.pixels, 1);
    return filled * 4 > std::ssize(mask.pixels) * 3;
}

// Whatever it was, no words.
bool IsGuess(const SongLine& line)
{
    double sum = 0;
    for (const SongWord& word : line.words)
        sum += word.confidence;
    constexpr double kGuess = 0.5;
    return sum < kGuess * static_cast<double>(line.words.size());
}

class LineKeeper final : public LineWatcher {
public:
    explicit LineKeeper(const WordColours& colours) : m_colours(colours) {}
    void LineEnded(const FoundLine& found) override
    {
        if (lines.size() >= kMostLines || found.height > kLargestHeight)
            return;
        SungLine line = MakeSungLine(found, m_colours);
        if (!IsDrawing(line.mask))
            lines.push_back(std::move(line));
    }

    std::vector<SungLine> lines;

private:
    const WordColours& m_colours;
};

} // namespace

std::vector<SongLine> ReadSongWords(const OneBasedArray<CdgPacket>& packets, LineReader& reader)
{
    const WordColours colours = FindWordColours(packets);
    LineKeeper keeper(colours);
    LineFinder(packets, colours, keeper).Run();

    std::vector<ReadLine> read = ReadLines(keeper.lines, reader);
    std::vector<SongLine> lines;
    for (std::size_t i = 0; i < read.size(); ++i) {
        SongLine line = TimedLine(keeper.lines[i], read[i]);
        if (!line.words.empty() && !(IsGuess(line) && !line.isSung))
            lines.push_back(std::move(line));
    }
    std::ranges::stable_sort(lines, {},
                             [](const SongLine& line) { return line.words.front().start; });
    return lines;
}

} // namespace lantern
