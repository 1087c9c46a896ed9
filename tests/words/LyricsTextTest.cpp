// SPDX-License-Identifier: GPL-3.0-or-later
#include "LyricsText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

// A title, a line whose words have times, and one of which only the first has.
std::vector<SongLine> SomeLines()
{
    const auto word = [](const char16_t* text, PacketIndex start, PacketIndex end, bool isGuess) {
        return SongWord{QString::fromUtf16(text), start, end, 0.876, isGuess};
    };
    return {
        {{word(u"Title", 30, 300, true)}, 30, 900, false},
        {{word(u"Über", 1200, 1290, false), word(u"uns", 1300, 1400, false)}, 1000, 2000, true},
        {{word(u"all", 3000, 3050, false), word(u"night", 3050, 3100, true)}, 2100, 4000, true}};
}

TEST(LyricsTextTest, GivesTheSungLinesAsText)
{
    EXPECT_EQ(LyricsText(SomeLines(), LyricsFormat::Txt).toStdString(),
              "# Recognised from the picture by Lyric Lantern: letters and times may be wrong.\n\n"
              "\u00DCber uns\n\nall night\n");
}

TEST(LyricsTextTest, GivesWordsTheirTimesInAnLrcFileUnlessTheyAreGuesses)
{
    EXPECT_EQ(LyricsText(SomeLines(), LyricsFormat::Lrc).toStdString(),
              "[re:Recognised from the picture by Lyric Lantern: letters and times may be wrong.]\n"
              "[00:04.00]<00:04.00>\u00DCber <00:04.33>uns\n"
              "[00:10.00]<00:10.00>all night\n");
}

// Words that are wiped from right to left, say. Players of such files go forward only.
TEST(LyricsTextTest, LeavesOutTimesInAnLrcFileThatGoBack)
{
    std::vector<SongLine> lines = SomeLines();
    lines[1].words.push_back({QStringLiteral("zwei"), 1210, 1250, 0.9, false});
    lines[1].words.push_back({QStringLiteral("drei"), 1500, 1600, 0.9, false});
    EXPECT_TRUE(
        LyricsText(lines, LyricsFormat::Lrc)
            .contains("\n[00:04.00]<00:04.00>\u00DCber <00:04.33>uns zwei <00:05.00>drei\n"));
}

TEST(LyricsTextTest, GivesSubtitlesThatDoNotOverlap)
{
    EXPECT_EQ(LyricsText(SomeLines(), LyricsFormat::Srt).toStdString(),
              "1\n00:00:00,000 --> 00:00:02,000\n"
              "Recognised from the picture by Lyric Lantern: letters and times may be wrong.\n\n"
              "2\n00:00:04,000 --> 00:00:05,667\n\u00DCber uns\n\n"
              "3\n00:00:10,000 --> 00:00:11,333\nall night\n\n");
}

TEST(LyricsTextTest, TellsAllThatIsKnownInJson)
{
    const QJsonObject root =
        QJsonDocument::fromJson(LyricsText(SomeLines(), LyricsFormat::Json)).object();
    EXPECT_FALSE(root[u"notice"].toString().isEmpty());
    const QJsonArray lines = root[u"lines"].toArray();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_FALSE(lines[0].toObject()[u"sung"].toBool(true));
    const QJsonObject last = lines[2].toObject();
    EXPECT_TRUE(last[u"sung"].toBool());
    EXPECT_EQ(last[u"start_ms"].toInt(), 10000);
    EXPECT_EQ(last[u"shown_ms"].toInt(), 7000);
    const QJsonObject night = last[u"words"].toArray()[1].toObject();
    EXPECT_EQ(night[u"text"].toString(), QStringLiteral("night"));
    EXPECT_EQ(night[u"start_ms"].toInt(), 10167);
    EXPECT_EQ(night[u"end_ms"].toInt(), 10333);
    EXPECT_EQ(night[u"confidence"].toDouble(), 0.88);
    EXPECT_TRUE(night[u"interpolated"].toBool());
}

TEST(LyricsTextTest, GivesAllLinesWhereNoneIsKnownToBeSung)
{
    std::vector<SongLine> lines = SomeLines();
    lines.resize(1);
    EXPECT_TRUE(LyricsText(lines, LyricsFormat::Txt).endsWith("\n\nTitle\n"));
}

} // namespace
} // namespace lantern::test
