// SPDX-License-Identifier: GPL-3.0-or-later
#include "WordTimes.h"

#include <algorithm>
#include <cstddef>

namespace lantern {
namespace {

// The earliest of its first columns that tell a time; 0 if none does.
PacketIndex StartOf(const SungLine& line, const PlacedWord& word)
{
    constexpr int kFirstColumns = 3;
    PacketIndex start = 0;
    int seen = 0;
    for (int x = word.Left(); x <= word.Right() && seen < kFirstColumns; ++x) {
        const PacketIndex time = line.columnTimes[static_cast<std::size_t>(x)];
        if (time == 0)
            continue;
        start = start == 0 ? time : std::min(start, time);
        ++seen;
    }
    return start;
}

PacketIndex EndOf(const SungLine& line, const PlacedWord& word)
{
    PacketIndex end = 0;
    for (int x = word.Left(); x <= word.Right(); ++x)
        end = std::max(end, line.columnTimes[static_cast<std::size_t>(x)]);
    return end;
}

// Nobody sings twenty words a second: then the line was lit in one go, tile by tile.
bool IsLitAtOnce(const SongLine& line)
{
    constexpr PacketIndex kLeastForWord = 15;
    PacketIndex first = 0;
    PacketIndex last = 0;
    for (const SongWord& word : line.words) {
        if (word.start == 0)
            continue;
        first = first == 0 ? word.start : std::min(first, word.start);
        last = std::max(last, word.start);
    }
    const auto pauses = static_cast<PacketIndex>(line.words.size()) - 1;
    return pauses > 0 && last - first < kLeastForWord * pauses;
}

// Shares a stretch of time out among words by how long they are.
void ShareOut(std::vector<SongWord>& words, std::size_t begin, std::size_t end, PacketIndex from,
              PacketIndex to)
{
    qsizetype all = 0;
    for (std::size_t i = begin; i < end; ++i)
        all += words[i].text.size() + 1;
    qsizetype before = 0;
    for (std::size_t i = begin; i < end; ++i) {
        const auto at = [&](qsizetype letters) {
            return from + static_cast<PacketIndex>((to - from) * letters / all);
        };
        words[i].start = at(before);
        before += words[i].text.size() + 1;
        words[i].end = at(before);
        words[i].isInterpolated = true;
    }
}

// At a usual pace, but no longer than the line is there.
PacketIndex UsualEnd(const SongLine& line, PacketIndex from)
{
    constexpr PacketIndex kForLetter = 24;
    qsizetype letters = 0;
    for (const SongWord& word : line.words)
        letters += word.text.size() + 1;
    return std::min(from + static_cast<PacketIndex>(letters) * kForLetter,
                    std::max(line.gone, from + 1));
}

PacketIndex EarliestOf(const SongLine& line)
{
    PacketIndex first = line.gone;
    for (const SongWord& word : line.words) {
        if (word.start != 0)
            first = std::min(first, word.start);
    }
    return first;
}

// Words without a time lie between those that have one.
void FillGaps(SongLine& line)
{
    std::vector<SongWord>& words = line.words;
    for (std::size_t begin = 0; begin < words.size();) {
        if (words[begin].start != 0) {
            ++begin;
            continue;
        }
        std::size_t end = begin;
        while (end < words.size() && words[end].start == 0)
            ++end;
        const PacketIndex usual = static_cast<PacketIndex>(end - begin) * 90;
        PacketIndex from = begin > 0 ? words[begin - 1].end : 0;
        const PacketIndex to = end < words.size() ? words[end].start : from + usual;
        if (begin == 0)
            from = std::max(to - usual, std::min(line.shown, to));
        ShareOut(words, begin, end, from, std::max(from, to));
        begin = end;
    }
}

} // namespace

SongLine TimedLine(const SungLine& line, const ReadLine& words)
{
    SongLine timed;
    timed.shown = line.shown;
    timed.gone = line.gone;
    for (const PlacedWord& word : words) {
        timed.words.push_back(
            {word.Text(), StartOf(line, word), EndOf(line, word), word.confidence});
        timed.isSung = timed.isSung || timed.words.back().start != 0;
    }
    if (timed.words.empty())
        return timed;
    if (!timed.isSung) {
        ShareOut(timed.words, 0, timed.words.size(), timed.shown, UsualEnd(timed, timed.shown));
    } else if (line.litAt != 0 || IsLitAtOnce(timed)) {
        const PacketIndex from = line.litAt != 0 ? line.litAt : EarliestOf(timed);
        ShareOut(timed.words, 0, timed.words.size(), from, UsualEnd(timed, from));
        timed.words.front().isInterpolated = false;
    } else {
        FillGaps(timed);
    }
    return timed;
}

} // namespace lantern
