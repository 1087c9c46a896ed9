// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongWords.h"

#include "SungTrack.h"
#include "TesseractReader.h"
#include "WordRates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

namespace lantern::test {
namespace {

WordRates RatesOfStyle(const SungStyle& style, int lineCount, std::uint32_t seed)
{
    const SungTrack track = MakeSungTrack(style, lineCount, seed);
    const ReaderOffer offer = LoadTesseractReader(QString::fromStdString(style.language));
    EXPECT_TRUE(offer.reader) << offer.error.toStdString();
    return offer.reader ? RatesOf(track, ReadSongWords(track.packets, *offer.reader)) : WordRates();
}

const SungStyle& StyleNamed(const std::string& name)
{
    return *std::ranges::find(SungStyles(), name, &SungStyle::name);
}

double At(std::vector<double> values, double part)
{
    std::ranges::sort(values);
    return values.empty() ? 1e9
                          : values[static_cast<std::size_t>(part * double(values.size() - 1))];
}

double WrongIn100(const WordRates& rates)
{
    return 100.0 * rates.wrong / rates.letters;
}

TEST(SongWordsTest, ReadsWhatIsWipedByExclusiveOr)
{
    const WordRates rates = RatesOfStyle(StyleNamed("outlined"), 6, 11);
    EXPECT_EQ(rates.linesFound, 6);
    EXPECT_LE(WrongIn100(rates), 4);
    EXPECT_LE(At(rates.offsMs, 0.5), 10);
    EXPECT_LE(At(rates.offsMs, 0.95), 60);
    EXPECT_EQ(rates.inBreak, 0);
}

TEST(SongWordsTest, ReadsWordsThatVanishAsTheyAreSung)
{
    const WordRates rates = RatesOfStyle(StyleNamed("vanishing"), 6, 12);
    EXPECT_EQ(rates.linesFound, 6);
    EXPECT_LE(WrongIn100(rates), 4);
    EXPECT_LE(At(rates.offsMs, 0.5), 10);
    EXPECT_LE(At(rates.offsMs, 0.95), 60);
}

TEST(SongWordsTest, ReadsLinesThatScrollAway)
{
    const WordRates rates = RatesOfStyle(StyleNamed("scrolling"), 8, 13);
    EXPECT_EQ(rates.linesFound, 8);
    EXPECT_LE(WrongIn100(rates), 4);
    EXPECT_LE(At(rates.offsMs, 0.95), 60);
}

// A page follows another at once, so that a letter stands where one in another colour was.
TEST(SongWordsTest, ForgetsThatALetterWasSungWhereAnotherCameInItsPlace)
{
    const WordRates rates = RatesOfStyle(StyleNamed("duet"), 12, 112);
    EXPECT_EQ(rates.linesFound, 12);
    EXPECT_LE(At(rates.offsMs, 1), 60);
}

// By far the most pixels that change are those of the fades.
TEST(SongWordsTest, ReadsPagesThatFadeInAndOut)
{
    const WordRates rates = RatesOfStyle(StyleNamed("two-lines"), 6, 15);
    EXPECT_EQ(rates.linesFound, 6);
    EXPECT_LE(WrongIn100(rates), 4);
    EXPECT_LE(At(rates.offsMs, 0.95), 60);
}

// The next page comes while the colours of the last one's words change back.
TEST(SongWordsTest, InventsNoLineOfWhatIsLeftOfAnother)
{
    const WordRates rates = RatesOfStyle(StyleNamed("palette"), 12, 215);
    EXPECT_EQ(rates.linesFound, 12);
    EXPECT_EQ(rates.invented, 0);
}

TEST(SongWordsTest, TellsWhichTimesOfALineLitAtOnceAreGuesses)
{
    const WordRates rates = RatesOfStyle(StyleNamed("at-once"), 6, 14);
    EXPECT_EQ(rates.linesFound, 6);
    // The first word of each line starts as the line is lit.
    EXPECT_EQ(rates.offsMs.size(), 6U);
    EXPECT_GT(rates.interpolated, 10);
    EXPECT_LE(At(rates.offsMs, 1), 60);
}

TEST(SongWordsTest, FindsNothingInATrackWithoutLetters)
{
    OneBasedArray<CdgPacket> packets;
    const ReaderOffer offer = LoadTesseractReader(QStringLiteral("eng"));
    ASSERT_TRUE(offer.reader);
    EXPECT_TRUE(ReadSongWords(packets, *offer.reader).empty());
    packets.Resize(9000);
    EXPECT_TRUE(ReadSongWords(packets, *offer.reader).empty());
}

// Sees words everywhere, also beyond the edges of what it is shown.
class WildReader final : public LineReader {
public:
    std::vector<ReadWord> Read(const GreyPicture& line) override
    {
        EXPECT_EQ(line.pixels.size(),
                  static_cast<std::size_t>(line.width) * static_cast<std::size_t>(line.height));
        ++lines;
        return {{{{QStringLiteral("m"), -50, 3}, {QStringLiteral("|"), 3, 9}}, 0.9},
                {{{QStringLiteral("rn"), 20, 10}}, 0.6},
                {{{QStringLiteral("m"), line.width - 1, line.width + 500}}, 0.9}};
    }

    int lines = 0;
};

// Packets of any bits, those of scrolls, presets and colours among them.
TEST(SongWordsTest, TakesAnyPacketsAndAnyReader)
{
    WildReader reader;
    for (const unsigned seed : {1U, 2U, 3U, 4U}) {
        std::mt19937 random(seed);
        // Tiles alone leave more to read than all kinds together.
        constexpr std::array<std::uint8_t, 10> kInstructions = {6, 38, 6, 38, 20, 24, 30, 31, 1, 2};
        OneBasedArray<CdgPacket> packets;
        for (int i = 0; i < 6000; ++i) {
            CdgPacket packet;
            packet.Command = i % 40 == 0 ? 0 : kGraphicsCommand;
            packet.Instruction = kInstructions[random() % (i % 10 == 0 ? 10 : 2)];
            for (std::uint8_t& byte : packet.PacketData)
                byte =
                    static_cast<std::uint8_t>(i % 3 == 0 ? random() : random() & random() & 0x1F);
            // Pauses, in which lines stand.
            packets.Add(i % 1000 < 600 ? packet : CdgPacket());
        }
        for (const SongLine& line : ReadSongWords(packets, reader)) {
            ASSERT_FALSE(line.words.empty());
            for (const SongWord& word : line.words) {
                EXPECT_FALSE(word.text.isEmpty());
                EXPECT_GE(word.start, 0);
                EXPECT_GE(word.end, 0);
                EXPECT_LE(word.start, packets.Count() + 100);
            }
        }
    }
    EXPECT_GT(reader.lines, 10);
}

// What all styles together have to be read with.
TEST(SongWordsLongTest, ReadsTwentyStylesOfTracks)
{
    std::vector<double> wrong;
    std::vector<double> offsMs;
    std::uint32_t seed = 100;
    for (const SungStyle& style : SungStyles()) {
        SCOPED_TRACE(style.name);
        const WordRates rates = RatesOfStyle(style, 12, ++seed);
        EXPECT_EQ(rates.linesFound, rates.lines);
        EXPECT_EQ(rates.invented, 0);
        EXPECT_EQ(rates.inBreak, 0);
        EXPECT_LE(WrongIn100(rates), 4);
        wrong.push_back(WrongIn100(rates));
        offsMs.insert(offsMs.end(), rates.offsMs.begin(), rates.offsMs.end());
    }
    EXPECT_EQ(wrong.size(), 20U);
    EXPECT_LE(std::accumulate(wrong.begin(), wrong.end(), 0.0) / double(wrong.size()), 1);
    EXPECT_LE(At(offsMs, 0.5), 10);
    EXPECT_LE(At(offsMs, 0.95), 60);
}

} // namespace
} // namespace lantern::test
