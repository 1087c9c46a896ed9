// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReadLine.h"

#include "LetterCleaning.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

namespace lantern {
namespace {

// Below this a line is looked at in other ways, too.
constexpr double kSure = 0.8;
// What is no song has any number of doubtful lines.
constexpr int kMostSecondLooks = 200;

ReadLine Placed(const std::vector<ReadWord>& words, const LineMask& mask)
{
    ReadLine line;
    for (const ReadWord& word : words) {
        PlacedWord placed;
        placed.confidence = word.confidence;
        for (const ReadLetter& letter : word.letters) {
            const int left = std::clamp(MaskColumn(letter.left), 0, mask.width - 1);
            const int right = std::clamp(MaskColumn(letter.right), left, mask.width - 1);
            placed.letters.push_back({letter.text, left, right});
        }
        line.push_back(std::move(placed));
    }
    return line;
}

std::size_t HashOf(const LineMask& mask)
{
    const auto* const pixels = reinterpret_cast<const char*>(mask.pixels.data());
    return std::hash<std::string_view>()({pixels, mask.pixels.size()});
}

double LeastConfidence(const ReadLine& line)
{
    double least = line.empty() ? 0 : 1;
    for (const PlacedWord& word : line)
        least = std::min(least, word.confidence);
    return least;
}

double MeanConfidence(const ReadLine& line)
{
    double sum = 0;
    for (const PlacedWord& word : line)
        sum += word.confidence;
    return line.empty() ? 0 : sum / static_cast<double>(line.size());
}

// The looks that are left are counted down.
ReadLine ReadOne(const SungLine& line, LineReader& reader, int& secondLooks)
{
    ReadLine best = Placed(reader.Read(PictureOf(line.mask, LetterEdges::Crisp)), line.mask);
    if (LeastConfidence(best) >= kSure || secondLooks == 0)
        return best;
    --secondLooks;
    const auto compete = [&](const LineMask& mask, LetterEdges edges) {
        ReadLine other = Placed(reader.Read(PictureOf(mask, edges)), mask);
        if (MeanConfidence(other) > MeanConfidence(best))
            best = std::move(other);
    };
    compete(line.mask, LetterEdges::Soft);
    for (const LineMask& single : line.singles)
        compete(single, LetterEdges::Crisp);
    return best;
}

} // namespace

QString PlacedWord::Text() const
{
    QString text;
    for (const PlacedLetter& letter : letters)
        text += letter.text;
    return text;
}

std::vector<ReadLine> ReadLines(const std::vector<SungLine>& lines, LineReader& reader)
{
    std::vector<ReadLine> read;
    // A chorus comes again pixel by pixel.
    std::multimap<std::size_t, std::size_t> known;
    int secondLooks = kMostSecondLooks;
    for (const SungLine& line : lines) {
        const std::size_t hash = HashOf(line.mask);
        const auto [begin, end] = known.equal_range(hash);
        const auto same = std::find_if(begin, end, [&](const auto& entry) {
            const LineMask& mask = lines[entry.second].mask;
            return mask.width == line.mask.width && mask.pixels == line.mask.pixels;
        });
        if (line.mask.width == 0)
            read.emplace_back();
        else if (same != end)
            read.push_back(ReadLine(read[same->second]));
        else
            read.push_back(ReadOne(line, reader, secondLooks));
        known.emplace(hash, read.size() - 1);
    }
    CleanLetters(lines, read);
    return read;
}

} // namespace lantern
