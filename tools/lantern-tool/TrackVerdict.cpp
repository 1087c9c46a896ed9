// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackVerdict.h"

#include "TellingNumbers.h"

#include <QStringList>

#include <algorithm>

namespace lantern::tool {
namespace {

constexpr std::int32_t kHeardMs = 1000;      // earlier than that nobody misses the sound
constexpr std::int32_t kLongAfterMs = 10000; // an end of a song that is played, not sung
constexpr std::int32_t kMissingMs = 60000;   // more than such an end
// Of the graphics, in hundredths: more unknown ones than a program's own would be.
constexpr int kManyUnknown = 1;

class Findings {
public:
    void Fault(const char* code, const QString& text) { Add(code, text, true); }
    void Note(const char* code, const QString& text) { Add(code, text, false); }

    std::vector<Finding> list;

private:
    void Add(const char* code, const QString& text, bool isFault)
    {
        list.push_back({QString::fromLatin1(code), text, isFault});
    }
};

// Why a member of that ending is no part of the track, as far as the archive tells.
QString ReasonOf(const TrackFacts& facts, bool (*isMeant)(const QString&))
{
    const auto found = std::ranges::find_if(
        facts.skipped, [&](const SkippedMember& member) { return isMeant(member.name); });
    return found == facts.skipped.end()
               ? QString()
               : QStringLiteral(" (%1: %2)").arg(found->name, found->reason);
}

void JudgeSound(const TrackFacts& facts, Findings& findings)
{
    if (facts.clips == 0 && !facts.unusableSound.isEmpty()) {
        const QString name = facts.unusableSound;
        const auto found = std::ranges::find(facts.skipped, name, &SkippedMember::name);
        findings.Fault("sound-unusable",
                       QStringLiteral("no sound: %1 can't be played%2")
                           .arg(name, found == facts.skipped.end()
                                          ? QString()
                                          : QStringLiteral(" (%1)").arg(found->reason)));
    } else if (facts.clips == 0) {
        findings.Fault("sound-missing",
                       facts.isArchive
                           ? QStringLiteral("no sound: the archive holds no audio")
                           : QStringLiteral("no sound: no audio of that name is beside it"));
    }
    if (!facts.sound)
        return;
    const SoundHealth& sound = *facts.sound;
    if (sound.isCutOff && sound.claimedMs > sound.lengthMs) {
        findings.Fault("sound-cut-off",
                       QStringLiteral("sound is cut off: %1 of %2 are there")
                           .arg(TimeText(sound.lengthMs), TimeText(sound.claimedMs)));
    } else if (sound.isCutOff) {
        findings.Fault("sound-cut-off", QStringLiteral("sound is cut off: its end is missing"));
    }
    if (sound.damagedPackets > 0) {
        findings.Fault("sound-damaged", QStringLiteral("sound is damaged in %1, first at %2")
                                            .arg(Counted(sound.damagedPackets, "place"),
                                                 TimeText(sound.firstDamageMs)));
    }
    if (!sound.isComplete)
        findings.Note("sound-not-examined", QStringLiteral("sound was not examined to its end"));
}

void JudgePicture(const TrackFacts& facts, Findings& findings)
{
    const PacketCensus& census = facts.census;
    if (!facts.hasPicture) {
        const QString why = ReasonOf(facts, [](const QString& name) {
            return name.endsWith(QStringLiteral(".cdg"), Qt::CaseInsensitive);
        });
        findings.Fault("picture-missing",
                       (facts.isArchive
                            ? QStringLiteral("no words: the archive holds no .cdg that can be read")
                            : QStringLiteral("no words: no .cdg of that name is beside it")) +
                           why);
        return;
    }
    if (census.lastDrawing == 0) {
        findings.Fault("picture-empty", QStringLiteral("no words: nothing is drawn in %1")
                                            .arg(Counted(census.packets, "packet")));
    }
    if (facts.lacksSubcode) {
        findings.Fault(
            "disc-without-subcode",
            QStringLiteral("its sectors hold no subcode: no words, and noise for sound"));
    } else if (facts.endsWithinPacket) {
        findings.Fault("picture-cut-off",
                       facts.isDisc ? QStringLiteral("disc image is cut off within a sector")
                                    : QStringLiteral("picture is cut off within a packet"));
    }
    if (ParityStateOf(census.p) == ParityState::Damaged) {
        findings.Fault("packets-damaged",
                       QStringLiteral("%1 damaged, by their parity")
                           .arg(Counted(census.p.wrong + census.p.absent, "packet")));
    } else if (ParityStateOf(census.p) == ParityState::Foreign) {
        findings.Note("parity-foreign", QStringLiteral("its parity is not the disc standard's"));
    }
    if (census.unknownInstructions > 0) {
        const QString text = QStringLiteral("%1 of graphics that no player knows")
                                 .arg(Counted(census.unknownInstructions, "instruction"));
        if (std::int64_t{census.unknownInstructions} * 100 >
            std::int64_t{census.graphics} * kManyUnknown)
            findings.Fault("unknown-instructions", text);
        else
            findings.Note("unknown-instructions", text);
    }
    if (census.otherCommands > 0) {
        findings.Note("other-commands", QStringLiteral("%1 of other kinds than graphics")
                                            .arg(Counted(census.otherCommands, "packet")));
    }
    if (const std::vector<int> colours = EntriesOf(census.UndefinedColours()); !colours.empty()) {
        QStringList numbers;
        for (const int colour : colours)
            numbers += QString::number(colour);
        findings.Note("colours-undefined",
                      QStringLiteral("draws in colours that are never defined (%1)")
                          .arg(numbers.join(QStringLiteral(", "))));
    }
}

void JudgeLengths(const TrackFacts& facts, Findings& findings)
{
    if (facts.clips == 0 || facts.census.lastDrawing == 0)
        return;
    const std::int32_t wordsMs = MsOfPacket(facts.census.lastDrawing);
    const std::int32_t missing = wordsMs - facts.soundMs;
    const std::int32_t after = facts.soundMs - facts.pictureMs;
    if (missing > kHeardMs) {
        findings.Fault("sound-ends-early",
                       QStringLiteral("sound ends %1 before the words").arg(SpanText(missing)));
    } else if (after > kMissingMs && after > facts.pictureMs / 3 &&
               facts.pictureMs - wordsMs < kHeardMs) {
        findings.Fault("picture-ends-early",
                       QStringLiteral("picture ends %1 before the sound, while it is drawn")
                           .arg(SpanText(after)));
    } else if (after > kLongAfterMs) {
        findings.Note(
            "sound-longer",
            QStringLiteral("sound goes on for %1 after the picture").arg(SpanText(after)));
    }
}

void JudgeNames(const TrackFacts& facts, Findings& findings)
{
    const QString elsewhere = QStringLiteral(": pairs here, not on others");
    if (facts.names == NamePair::LetterCase)
        findings.Fault("names-differ", QStringLiteral("names differ in letter case") + elsewhere);
    else if (facts.names == NamePair::Spelling)
        findings.Fault("names-differ",
                       QStringLiteral("names differ in how their accents are written") + elsewhere);
    else if (facts.names == NamePair::Different)
        findings.Fault("names-differ", QStringLiteral("names in the archive differ") + elsewhere);
    if (!facts.rareMethods.isEmpty()) {
        findings.Fault("archive-method",
                       QStringLiteral("archive uses %1, which many players can't read")
                           .arg(facts.rareMethods.join(QStringLiteral(" and "))));
    }
    if (facts.hasMoreSongs)
        findings.Note("archive-songs", QStringLiteral("archive holds several songs, of which the "
                                                      "first plays"));
}

} // namespace

ParityState ParityStateOf(const ParityCount& count)
{
    if (count.right == 0 && count.wrong == 0)
        return ParityState::Absent;
    const PacketIndex others = count.wrong + count.absent;
    if (others == 0)
        return ParityState::Right;
    return count.right >= others ? ParityState::Damaged : ParityState::Foreign;
}

std::vector<Finding> FindingsOf(const TrackFacts& facts)
{
    Findings findings;
    if (!facts.unreadable.isEmpty())
        return {};
    JudgeSound(facts, findings);
    JudgePicture(facts, findings);
    JudgeLengths(facts, findings);
    JudgeNames(facts, findings);
    return findings.list;
}

Verdict VerdictOf(const TrackFacts& facts, const std::vector<Finding>& findings)
{
    if (!facts.unreadable.isEmpty())
        return Verdict::Unreadable;
    return std::ranges::any_of(findings, &Finding::isFault) ? Verdict::Faulty : Verdict::Good;
}

} // namespace lantern::tool
