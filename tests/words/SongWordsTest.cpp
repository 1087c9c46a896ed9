// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongWords.h"

#include "SungTrack.h"
#include "TesseractReader.h"
#include "WordRates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>

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
