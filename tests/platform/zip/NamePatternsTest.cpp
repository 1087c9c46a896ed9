// SPDX-License-Identifier: GPL-3.0-or-later
#include "NamePatterns.h"

#include "PathText.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

bool Matches(const char* name, const char* patterns)
{
    return MatchesPatterns(TextFromNative(name), TextFromNative(patterns));
}

TEST(NamePatterns, AStarStandsForAnyTextAndTheRestForItself)
{
    EXPECT_TRUE(Matches("song.cdg", "*.cdg"));
    EXPECT_TRUE(Matches(".cdg", "*.cdg"));
    EXPECT_TRUE(Matches("a.cdg.cdg", "*.cdg"));
    EXPECT_TRUE(Matches("abcbd", "a*b*d*"));
    EXPECT_TRUE(Matches("aab", "*ab"));
    EXPECT_TRUE(Matches("anything", "*"));
    EXPECT_TRUE(Matches("", "*"));
    EXPECT_FALSE(Matches("songcdg", "*.cdg"));
    EXPECT_FALSE(Matches("song.cdgx", "*.cdg"));
    EXPECT_FALSE(Matches("song.cd", "*.cdg"));
    EXPECT_FALSE(Matches("abd", "a*b*c"));
    EXPECT_FALSE(Matches("aba", "*ab*ba"));
    EXPECT_FALSE(Matches("", "a"));
}

TEST(NamePatterns, EachOfTheListIsTried)
{
    EXPECT_TRUE(Matches("a.mp3", "*.cdg|*.mp3"));
    EXPECT_TRUE(Matches("a.cdg", "*.cdg|*.mp3"));
    EXPECT_FALSE(Matches("a.mp3x", "*.cdg|*.mp3|*.wav"));
    EXPECT_FALSE(Matches("a.cdg|b.mp4", "*.cdg|*.mp3"));
    EXPECT_FALSE(Matches("a", ""));
}

TEST(NamePatterns, LetterCaseAndFoldersDoNotCount)
{
    EXPECT_TRUE(Matches("DISC/Song.CDG", "*.cdg"));
    EXPECT_TRUE(Matches("disc/song.cdg", "*.CDG"));
    EXPECT_TRUE(Matches("a/b\\c.d/e.cdg", "*.cdg"));
}

TEST(NamePatterns, NamesOfAnyBytesMatch)
{
    EXPECT_TRUE(Matches("\xFF\xE9.cdg", "*.cdg"));
    EXPECT_TRUE(Matches("\xF0\x9F\x8E\xA4\xFF.CDG", "*.cdg"));
    EXPECT_FALSE(Matches("a.cdg\xFF", "*.cdg"));
    EXPECT_TRUE(Matches("a\xFF"
                        "b",
                        "*\xFF*"));
}

TEST(NamePatterns, ManyStarsTakeNoTime)
{
    const QString name = QString(20'000, u'a');
    EXPECT_FALSE(MatchesPatterns(name, QStringLiteral("*a").repeated(50) + u'b'));
}

} // namespace
} // namespace lantern
