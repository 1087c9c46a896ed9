// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackVerdict.h"
#include "CheckReport.h"
#include "TellingNumbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lantern::tool {

void PrintTo(NamePair pair, std::ostream* out)
{
    *out << static_cast<int>(pair);
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A song of four minutes, with words until ten seconds before its end.
TrackFacts GoodFacts()
{
    TrackFacts facts;
    facts.hasPicture = true;
    facts.census.packets = 240 * 300;
    facts.census.graphics = 30000;
    facts.census.firstDrawing = 3000;
    facts.census.lastDrawing = 230 * 300;
    facts.census.definedColours = 0xFFFF;
    facts.pictureMs = 240'000;
    facts.clips = 1;
    facts.soundMs = 240'000;
    facts.sound = SoundHealth{.isSound = true, .isComplete = true, .lengthMs = 240'000};
    return facts;
}

// The texts, those of faults with a "!" before them.
std::vector<std::string> Texts(const TrackFacts& facts)
{
    std::vector<std::string> texts;
    for (const Finding& finding : FindingsOf(facts))
        texts.push_back((finding.isFault ? "!" : "") + finding.text.toStdString());
    return texts;
}

Verdict Judged(const TrackFacts& facts)
{
    return VerdictOf(facts, FindingsOf(facts));
}

TEST(TrackVerdict, OfAGoodTrackThereIsNothingToTell)
{
    EXPECT_THAT(Texts(GoodFacts()), IsEmpty());
    EXPECT_EQ(Judged(GoodFacts()), Verdict::Good);
}

TEST(TrackVerdict, SoundThatEndsBeforeTheWordsIsAFault)
{
    TrackFacts facts = GoodFacts();
    facts.soundMs = 229'000;
    EXPECT_THAT(Texts(facts), IsEmpty());
    facts.soundMs = 228'999;
    EXPECT_THAT(Texts(facts), ElementsAre("!sound ends 1 s before the words"));
    facts.soundMs = 130'000;
    EXPECT_THAT(Texts(facts), ElementsAre("!sound ends 1 min 40 s before the words"));
    EXPECT_EQ(Judged(facts), Verdict::Faulty);
}

TEST(TrackVerdict, SoundThatGoesOnIsToldAndAFaultIfThePictureStopsWhileItIsDrawn)
{
    TrackFacts facts = GoodFacts();
    facts.soundMs = 250'000;
    EXPECT_THAT(Texts(facts), IsEmpty());
    facts.soundMs = 250'001;
    EXPECT_THAT(Texts(facts), ElementsAre("sound goes on for 10 s after the picture"));
    EXPECT_EQ(Judged(facts), Verdict::Good);
    facts.soundMs = 400'000;
    EXPECT_THAT(Texts(facts), ElementsAre("sound goes on for 2 min 40 s after the picture"));
    facts.census.lastDrawing = facts.census.packets;
    EXPECT_THAT(Texts(facts),
                ElementsAre("!picture ends 2 min 40 s before the sound, while it is drawn"));
    // An end that is only played is no fault of a long song.
    facts.soundMs = 319'000;
    EXPECT_THAT(Texts(facts), ElementsAre("sound goes on for 1 min 19 s after the picture"));
}

TEST(TrackVerdict, AMissingPieceIsNamed)
{
    TrackFacts facts = GoodFacts();
    facts.clips = 0;
    facts.soundMs = 0;
    facts.sound.reset();
    EXPECT_THAT(Texts(facts), ElementsAre("!no sound: no audio of that name is beside it"));
    facts.isArchive = true;
    EXPECT_THAT(Texts(facts), ElementsAre("!no sound: the archive holds no audio"));
    facts.unusableSound = QStringLiteral("a.mp3");
    EXPECT_THAT(Texts(facts), ElementsAre("!no sound: a.mp3 can't be played"));
    facts.skipped = {{QStringLiteral("a.mp3"), QStringLiteral("no usable sound")}};
    EXPECT_THAT(Texts(facts), ElementsAre("!no sound: a.mp3 can't be played (no usable sound)"));

    facts = GoodFacts();
    facts.hasPicture = false;
    facts.census = {};
    EXPECT_THAT(Texts(facts), ElementsAre("!no words: no .cdg of that name is beside it"));
    facts.isArchive = true;
    facts.skipped = {{QStringLiteral("x.CDG"), QStringLiteral("empty")}};
    EXPECT_THAT(
        Texts(facts),
        ElementsAre("!no words: the archive holds no .cdg that can be read (x.CDG: empty)"));

    facts = GoodFacts();
    facts.census.lastDrawing = 0;
    EXPECT_THAT(Texts(facts), ElementsAre("!no words: nothing is drawn in 72,000 packets"));
}

TEST(TrackVerdict, DamageOfTheSoundIsAFault)
{
    TrackFacts facts = GoodFacts();
    facts.sound->isCutOff = true;
    EXPECT_THAT(Texts(facts), ElementsAre("!sound is cut off: its end is missing"));
    facts.sound->claimedMs = 300'000;
    facts.sound->damagedPackets = 1;
    facts.sound->firstDamageMs = 62'000;
    EXPECT_THAT(Texts(facts), ElementsAre("!sound is cut off: 4:00 of 5:00 are there",
                                          "!sound is damaged in 1 place, first at 1:02"));
    facts = GoodFacts();
    facts.sound->isComplete = false;
    EXPECT_THAT(Texts(facts), ElementsAre("sound was not examined to its end"));
}

TEST(TrackVerdict, ParityTellsOfDamageWhereThereIsOne)
{
    using Count = ParityCount;
    EXPECT_EQ(ParityStateOf(Count{}), ParityState::Absent);
    EXPECT_EQ(ParityStateOf(Count{.right = 0, .wrong = 0, .absent = 9}), ParityState::Absent);
    EXPECT_EQ(ParityStateOf(Count{.right = 9, .wrong = 0, .absent = 0}), ParityState::Right);
    EXPECT_EQ(ParityStateOf(Count{.right = 9, .wrong = 1, .absent = 0}), ParityState::Damaged);
    EXPECT_EQ(ParityStateOf(Count{.right = 9, .wrong = 0, .absent = 9}), ParityState::Damaged);
    EXPECT_EQ(ParityStateOf(Count{.right = 1, .wrong = 9, .absent = 0}), ParityState::Foreign);

    TrackFacts facts = GoodFacts();
    facts.census.p = {.right = 9000, .wrong = 1200, .absent = 4};
    EXPECT_THAT(Texts(facts), ElementsAre("!1,204 packets damaged, by their parity"));
    facts.census.p = {.right = 1, .wrong = 9000, .absent = 4};
    EXPECT_THAT(Texts(facts), ElementsAre("its parity is not the disc standard's"));
}

TEST(TrackVerdict, WhatIsOddInThePacketsIsTold)
{
    TrackFacts facts = GoodFacts();
    facts.census.otherCommands = 1;
    facts.census.unknownInstructions = 300;
    facts.census.drawnColours = 0x8001;
    facts.census.definedColours = 0x00F0;
    EXPECT_THAT(Texts(facts), ElementsAre("300 instructions of graphics that no player knows",
                                          "1 packet of other kinds than graphics",
                                          "draws in colours that are never defined (0, 15)"));
    EXPECT_EQ(Judged(facts), Verdict::Good);
    facts.census.unknownInstructions = 301;
    facts.endsWithinPacket = true;
    EXPECT_EQ(Judged(facts), Verdict::Faulty);
    EXPECT_EQ(Texts(facts)[0], "!picture is cut off within a packet");
    EXPECT_EQ(Texts(facts)[1], "!301 instructions of graphics that no player knows");
}

TEST(TrackVerdict, WhatOthersCannotReadIsAFault)
{
    TrackFacts facts = GoodFacts();
    facts.names = NamePair::LetterCase;
    EXPECT_THAT(Texts(facts),
                ElementsAre("!names differ in letter case: pairs here, not on others"));
    facts.names = NamePair::Spelling;
    EXPECT_THAT(Texts(facts), ElementsAre("!names differ in how their accents are written: pairs "
                                          "here, not on others"));
    facts.names = NamePair::Different;
    facts.rareMethods = {QStringLiteral("Deflate64"), QStringLiteral("XZ")};
    facts.hasMoreSongs = true;
    EXPECT_THAT(Texts(facts),
                ElementsAre("!names in the archive differ: pairs here, not on others",
                            "!archive uses Deflate64 and XZ, which many players can't read",
                            "archive holds several songs, of which the first plays"));
}

TEST(TrackVerdict, NamesPairAsTheirLettersTell)
{
    const QString composed = QString::fromUtf8("Caf\xC3\xA9");
    const QString decomposed = QString::fromUtf8("Cafe\xCC\x81");
    EXPECT_EQ(PairOf(composed, composed), NamePair::Same);
    EXPECT_EQ(PairOf(composed, QString::fromUtf8("CAF\xC3\x89")), NamePair::LetterCase);
    EXPECT_EQ(PairOf(composed, decomposed), NamePair::Spelling);
    EXPECT_EQ(PairOf(composed, QStringLiteral("Cafe")), NamePair::Different);
}

TEST(TrackVerdict, WhatCannotBeReadHasNoFindings)
{
    TrackFacts facts;
    facts.unreadable = QStringLiteral("Nothing to play: a\nb.cdg");
    EXPECT_EQ(Judged(facts), Verdict::Unreadable);
    EXPECT_EQ(CheckText(QStringLiteral("a\nb.cdg"), facts, true).toStdString(),
              "a?b.cdg: can't be read: Nothing to play: a?b.cdg\n");
}

TEST(TrackVerdict, ASummaryCountsEach)
{
    CheckSummary summary;
    summary.counts = {1180, 20, 4};
    EXPECT_EQ(SummaryText(summary).toStdString(),
              "1,204 tracks: 1,180 good, 20 faulty, 4 can't be read\n");
    EXPECT_EQ(SummaryJson(summary).toStdString(),
              R"({"faulty":20,"good":1180,"tracks":1204,"unreadable":4})");
}

TEST(TellingNumbersTest, NumbersReadWell)
{
    EXPECT_EQ(Grouped(0).toStdString(), "0");
    EXPECT_EQ(Grouped(999).toStdString(), "999");
    EXPECT_EQ(Grouped(1'000'000).toStdString(), "1,000,000");
    EXPECT_EQ(Counted(1, "track").toStdString(), "1 track");
    EXPECT_EQ(TimeText(7'999).toStdString(), "0:07");
    EXPECT_EQ(TimeText(3'750'000).toStdString(), "62:30");
    EXPECT_EQ(SpanText(59'499).toStdString(), "59 s");
    EXPECT_EQ(SpanText(59'500).toStdString(), "1 min 0 s");
    EXPECT_EQ(MsOfPacket(25920000), 86400000);
    EXPECT_THAT(EntriesOf(0x8005), ElementsAre(0, 2, 15));
}

} // namespace
} // namespace lantern::tool
