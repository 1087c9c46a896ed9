// SPDX-License-Identifier: GPL-3.0-or-later
#include "LetterCleaning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace lantern::test {
namespace {

// Letters as blocks side by side, a column apart: m is wide, r and n are narrow and less narrow.
LineMask Drawn(const std::string& shapes)
{
    constexpr int kHeight = 16;
    LineMask mask;
    std::vector<std::uint8_t> columns;
    for (const char shape : shapes) {
        const int width = shape == 'm' ? 14 : shape == 'r' ? 5 : shape == 'n' ? 8 : 9;
        columns.insert(columns.end(), static_cast<std::size_t>(width), 1);
        columns.push_back(0);
    }
    mask.width = static_cast<int>(columns.size());
    mask.height = kHeight;
    for (int y = 0; y < kHeight; ++y)
        mask.pixels.insert(mask.pixels.end(), columns.begin(), columns.end());
    return mask;
}

// One word over the whole line, whose letters share its width out.
PlacedWord Word(const std::string& text, const LineMask& mask)
{
    PlacedWord word;
    const int count = static_cast<int>(text.size());
    for (int i = 0; i < count; ++i) {
        word.letters.push_back({QString(QLatin1Char(text[static_cast<std::size_t>(i)])),
                                mask.width * i / count, mask.width * (i + 1) / count - 1});
    }
    word.letters.back().right = mask.width - 1;
    return word;
}

// What becomes of words that were read where such shapes stand.
std::vector<std::string> Cleaned(const std::vector<std::pair<std::string, std::string>>& words)
{
    std::vector<SungLine> lines;
    std::vector<ReadLine> read;
    for (const auto& [shapes, text] : words) {
        lines.emplace_back().mask = Drawn(shapes);
        read.push_back({Word(text, lines.back().mask)});
    }
    CleanLetters(lines, read);
    std::vector<std::string> texts;
    for (const ReadLine& line : read)
        texts.push_back(line.front().Text().toStdString());
    return texts;
}

using Texts = std::vector<std::string>;

TEST(LetterCleaningTest, ABarAndALoneSmallLAreI)
{
    EXPECT_EQ(Cleaned({{"o", "|"}, {"o", "l"}, {"oo", "al"}}), (Texts{"I", "I", "al"}));
}

TEST(LetterCleaningTest, TwoShapesThatWereReadAsAnMAreRAndN)
{
    EXPECT_EQ(Cleaned({{"rn", "m"}, {"m", "m"}}), (Texts{"rn", "m"}));
}

TEST(LetterCleaningTest, ASongInCapitalsHasNoSmallLetters)
{
    EXPECT_EQ(Cleaned({{"ooooooooooo", "THEWHOLEOFl"}, {"oo", "iS"}, {"ooooooooo", "ALLINCAPS"}}),
              (Texts{"THEWHOLEOFI", "IS", "ALLINCAPS"}));
}

} // namespace
} // namespace lantern::test
