// SPDX-License-Identifier: GPL-3.0-or-later
#include "WordRates.h"

#include <algorithm>
#include <cmath>

namespace lantern::test {
namespace {

// The cheapest way from one sequence to another: for each of the known, which of the read it
// became, or -1.
template <typename Known, typename Read, typename Cost>
struct Alignment {
    Alignment(const Known& known, const Read& read, Cost cost)
        : across(read.size() + 1), costs((known.size() + 1) * across), match(known.size(), -1)
    {
        for (std::size_t i = 0; i <= known.size(); ++i) {
            for (std::size_t j = 0; j <= read.size(); ++j) {
                double best = i == 0 && j == 0 ? 0 : 1e9;
                if (i > 0)
                    best = std::min(best, At(i - 1, j) + 1);
                if (j > 0)
                    best = std::min(best, At(i, j - 1) + 1);
                if (i > 0 && j > 0)
                    best = std::min(best, At(i - 1, j - 1) + cost(known[i - 1], read[j - 1]));
                At(i, j) = best;
            }
        }
        total = At(known.size(), read.size());
        std::size_t j = read.size();
        for (std::size_t i = known.size(); i > 0;) {
            if (j > 0 && At(i, j) == At(i - 1, j - 1) + cost(known[i - 1], read[j - 1])) {
                match[--i] = static_cast<int>(--j);
            } else if (At(i, j) == At(i - 1, j) + 1) {
                --i;
            } else {
                --j;
            }
        }
    }
    double& At(std::size_t i, std::size_t j) { return costs[i * across + j]; }

    std::size_t across;
    std::vector<double> costs;
    std::vector<int> match;
    double total = 0;
};

int Edits(const QString& known, const QString& read)
{
    const auto cost = [](char16_t a, char16_t b) { return a == b ? 0.0 : 1.0; };
    return static_cast<int>(Alignment(known.toStdU16String(), read.toStdU16String(), cost).total);
}

template <typename Words>
QString Joined(const Words& words)
{
    QString text;
    for (const auto& word : words)
        text += (text.isEmpty() ? QString() : QStringLiteral(" ")) + word.text;
    return text;
}

double MsOf(PacketIndex packet)
{
    return packet * 1000.0 / kPacketsPerSecond;
}

void Compare(const std::vector<KnownWord>& known, const SongLine& read, WordRates& rates)
{
    const auto cost = [](const KnownWord& a, const SongWord& b) {
        return std::min(1.9, 2.0 * Edits(a.text, b.text) / double(a.text.size()));
    };
    const auto match = Alignment(known, read.words, cost).match;
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (match[i] < 0)
            continue;
        const SongWord& word = read.words[static_cast<std::size_t>(match[i])];
        if (word.isInterpolated)
            ++rates.interpolated;
        else
            rates.offsMs.push_back(std::abs(MsOf(word.start) - known[i].startMs));
    }
}

} // namespace

WordRates RatesOf(const SungTrack& track, const std::vector<SongLine>& read)
{
    WordRates rates;
    std::vector<SongLine> sung;
    for (const SongLine& line : read) {
        if (line.isSung)
            sung.push_back(line);
        if (MsOf(line.shown) >= track.breakBeginMs && MsOf(line.shown) < track.breakEndMs)
            rates.inBreak += static_cast<int>(line.words.size());
    }
    const auto cost = [](const std::vector<KnownWord>& a, const SongLine& b) {
        const QString text = Joined(a);
        return 2.0 * Edits(text, Joined(b.words)) / double(text.size());
    };
    const Alignment lines(track.lines, sung, cost);
    std::vector<bool> isMatched(sung.size());
    for (std::size_t i = 0; i < track.lines.size(); ++i) {
        const QString text = Joined(track.lines[i]);
        ++rates.lines;
        rates.letters += static_cast<int>(text.size());
        const int match = lines.match[i];
        if (match < 0) {
            rates.wrong += static_cast<int>(text.size());
            continue;
        }
        const SongLine& line = sung[static_cast<std::size_t>(match)];
        isMatched[static_cast<std::size_t>(match)] = true;
        const int edits = Edits(text, Joined(line.words));
        rates.wrong += edits;
        rates.linesFound += edits * 2 < text.size() ? 1 : 0;
        Compare(track.lines[i], line, rates);
    }
    for (std::size_t i = 0; i < sung.size(); ++i) {
        if (isMatched[i])
            continue;
        ++rates.invented;
        rates.wrong += static_cast<int>(Joined(sung[i].words).size());
    }
    return rates;
}

} // namespace lantern::test
