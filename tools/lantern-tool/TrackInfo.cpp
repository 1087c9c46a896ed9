// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackInfo.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lantern::tool {
namespace {

QJsonObject ClipInfo(const AudioClip& clip)
{
    QJsonObject info;
    info[u"kind"] = clip.Kind == ClipKind::File ? QStringLiteral("FILE") : QStringLiteral("DATA");
    info[u"start_ms"] = clip.StartMs;
    info[u"length_ms"] = clip.LengthMs;
    if (!clip.Path.isEmpty())
        info[u"path"] = clip.Path;
    return info;
}

QJsonArray SkippedInfo(const std::vector<SkippedMember>& skipped)
{
    QJsonArray info;
    for (const SkippedMember& member : skipped)
        info.append(QJsonObject{{QStringLiteral("name"), member.name},
                                {QStringLiteral("reason"), member.reason}});
    return info;
}

} // namespace

QByteArray TrackInfo(const Track& track, const std::vector<SkippedMember>& skipped,
                     const QString& path)
{
    QJsonArray clips;
    for (const AudioClip& clip : track.ClipList)
        clips.append(ClipInfo(clip));
    QJsonObject info;
    if (!path.isEmpty())
        info[u"track"] = path;
    info[u"packets"] = track.PacketCount();
    info[u"length_ms"] = track.TotalLengthMs;
    info[u"clips"] = clips;
    info[u"skipped"] = SkippedInfo(skipped);
    return QJsonDocument(info).toJson(QJsonDocument::Indented);
}

} // namespace lantern::tool
