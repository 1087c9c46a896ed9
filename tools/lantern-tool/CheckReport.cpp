// SPDX-License-Identifier: GPL-3.0-or-later
#include "CheckReport.h"

#include "ErrorLine.h"
#include "PathText.h"
#include "TellingNumbers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace lantern::tool {
namespace {

struct VerdictName {
    QString word;
    QString key;
};

VerdictName NameOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Good:
        return {QStringLiteral("good"), QStringLiteral("good")};
    case Verdict::Faulty:
        return {QStringLiteral("faulty"), QStringLiteral("faulty")};
    case Verdict::Unreadable:
        break;
    }
    return {QStringLiteral("can't be read"), QStringLiteral("unreadable")};
}

QString NameOf(ParityState state)
{
    switch (state) {
    case ParityState::Absent:
        return QStringLiteral("absent");
    case ParityState::Right:
        return QStringLiteral("right");
    case ParityState::Damaged:
        return QStringLiteral("damaged");
    case ParityState::Foreign:
        break;
    }
    return QStringLiteral("foreign");
}

// The verdict in words.
QString WordsOf(const TrackFacts& facts, const std::vector<Finding>& findings)
{
    if (!facts.unreadable.isEmpty())
        return facts.unreadable;
    QStringList words;
    if (facts.clips > 0 && facts.census.lastDrawing > 0)
        words += QStringLiteral("plays");
    for (const Finding& finding : findings)
        words += finding.text;
    return words.join(QStringLiteral("; "));
}

QByteArray Line(const QString& text)
{
    return NativeFromText(OneLine(text)) + '\n';
}

QString ShareText(PacketIndex part, PacketIndex whole)
{
    return whole == 0 ? QStringLiteral("0%")
                      : QStringLiteral("%1%").arg(100.0 * part / whole, 0, 'f', 1);
}

QByteArray NumbersText(const TrackFacts& facts)
{
    const PacketCensus& census = facts.census;
    QByteArray text = Line(QStringLiteral("  picture  %1, %2, %3 with graphics")
                               .arg(TimeText(facts.pictureMs), Counted(census.packets, "packet"),
                                    ShareText(census.graphics, census.packets)));
    text += Line(QStringLiteral("  unknown  %1, %2")
                     .arg(Counted(census.unknownInstructions, "instruction"),
                          Counted(census.otherCommands, "other packet")));
    text += Line(QStringLiteral("  parity   P %1, Q %2")
                     .arg(NameOf(ParityStateOf(census.p)), NameOf(ParityStateOf(census.q))));
    text += Line(QStringLiteral("  sound    %1").arg(TimeText(facts.soundMs)));
    return text;
}

QJsonObject ParityInfo(const ParityCount& count)
{
    return {{QStringLiteral("state"), NameOf(ParityStateOf(count))},
            {QStringLiteral("right"), count.right},
            {QStringLiteral("wrong"), count.wrong},
            {QStringLiteral("absent"), count.absent}};
}

QJsonObject PictureInfo(const TrackFacts& facts)
{
    const PacketCensus& census = facts.census;
    QJsonArray undefined;
    for (const int entry : EntriesOf(census.UndefinedColours()))
        undefined.append(entry);
    return {{QStringLiteral("length_ms"), facts.pictureMs},
            {QStringLiteral("packets"), census.packets},
            {QStringLiteral("graphics"), census.graphics},
            {QStringLiteral("graphics_share"),
             census.packets == 0 ? 0.0 : static_cast<double>(census.graphics) / census.packets},
            {QStringLiteral("other_commands"), census.otherCommands},
            {QStringLiteral("unknown_instructions"), census.unknownInstructions},
            {QStringLiteral("words_from_ms"), MsOfPacket(census.firstDrawing)},
            {QStringLiteral("words_to_ms"), MsOfPacket(census.lastDrawing)},
            {QStringLiteral("undefined_colours"), undefined},
            {QStringLiteral("parity_p"), ParityInfo(census.p)},
            {QStringLiteral("parity_q"), ParityInfo(census.q)}};
}

QJsonObject SoundInfo(const TrackFacts& facts)
{
    QJsonObject info = {{QStringLiteral("length_ms"), facts.soundMs},
                        {QStringLiteral("clips"), facts.clips},
                        {QStringLiteral("examined"), facts.sound && facts.sound->isComplete}};
    if (facts.sound) {
        info[u"damaged_packets"] = static_cast<qint64>(facts.sound->damagedPackets);
        info[u"cut_off"] = facts.sound->isCutOff;
    }
    return info;
}

} // namespace

QByteArray CheckText(const QString& path, const TrackFacts& facts, bool withNumbers)
{
    const std::vector<Finding> findings = FindingsOf(facts);
    const Verdict verdict = VerdictOf(facts, findings);
    QByteArray text = Line(
        QStringLiteral("%1: %2: %3").arg(path, NameOf(verdict).word, WordsOf(facts, findings)));
    if (withNumbers && verdict != Verdict::Unreadable)
        text += NumbersText(facts);
    return text;
}

QByteArray CheckJson(const QString& path, const TrackFacts& facts)
{
    const std::vector<Finding> findings = FindingsOf(facts);
    QJsonArray list;
    for (const Finding& finding : findings) {
        list.append(QJsonObject{{QStringLiteral("code"), finding.code},
                                {QStringLiteral("fault"), finding.isFault},
                                {QStringLiteral("text"), finding.text}});
    }
    QJsonObject info = {{QStringLiteral("track"), path},
                        {QStringLiteral("verdict"), NameOf(VerdictOf(facts, findings)).key},
                        {QStringLiteral("words"), WordsOf(facts, findings)},
                        {QStringLiteral("findings"), list}};
    if (facts.unreadable.isEmpty()) {
        info[u"picture"] = PictureInfo(facts);
        info[u"sound"] = SoundInfo(facts);
    }
    return QJsonDocument(info).toJson(QJsonDocument::Compact);
}

QByteArray SummaryText(const CheckSummary& summary)
{
    QStringList parts;
    for (const Verdict verdict : {Verdict::Good, Verdict::Faulty, Verdict::Unreadable})
        parts += Grouped(summary.counts[static_cast<std::size_t>(verdict)]) + u' ' +
                 NameOf(verdict).word;
    return Line(Counted(summary.Tracks(), "track") + QStringLiteral(": ") +
                parts.join(QStringLiteral(", ")));
}

QByteArray SummaryJson(const CheckSummary& summary)
{
    QJsonObject info = {{QStringLiteral("tracks"), static_cast<qint64>(summary.Tracks())}};
    for (const Verdict verdict : {Verdict::Good, Verdict::Faulty, Verdict::Unreadable})
        info[NameOf(verdict).key] =
            static_cast<qint64>(summary.counts[static_cast<std::size_t>(verdict)]);
    return QJsonDocument(info).toJson(QJsonDocument::Compact);
}

} // namespace lantern::tool
