// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackLoad.h"

#include "MakeZipHandler.h"
#include "NativeFile.h"
#include "NoWindow.h"
#include "PathHelpers.h"
#include "SoundModule.h"

#include <QStringList>

#include <algorithm>
#include <cstring>
#include <memory>

namespace lantern::tool {
namespace {

// Keeps what it is told of archives.
class SkippedMembers final : public NoWindow {
public:
    explicit SkippedMembers(std::vector<SkippedMember>& skipped) : m_skipped(skipped) {}

private:
    void MemberSkipped(const QString& name, const QString& reason) override
    {
        m_skipped.push_back({name, reason});
    }

    std::vector<SkippedMember>& m_skipped;
};

// An archive may hold thousands of members; the first ones tell enough.
QString ReasonsOf(const std::vector<SkippedMember>& skipped)
{
    constexpr std::size_t kMostReasons = 5;
    QStringList reasons;
    for (std::size_t i = 0; i < std::min(skipped.size(), kMostReasons); ++i) {
        const SkippedMember& member = skipped[i];
        const QString name = member.name.isEmpty() ? QString() : member.name + QStringLiteral(": ");
        reasons += name + member.reason;
    }
    if (skipped.size() > kMostReasons)
        reasons += QStringLiteral("...");
    return reasons.isEmpty() ? QString()
                             : QStringLiteral(" (%1)").arg(reasons.join(QStringLiteral("; ")));
}

} // namespace

QString LoadTrack(const QString& path, Track& track, std::vector<SkippedMember>& skipped)
{
    QString error;
    const std::unique_ptr<AudioEngine> engine = LoadMeasuringEngine(error);
    if (!engine)
        return error;
    SkippedMembers window(skipped);
    // There is no folder of the program to unpack to, and nothing is unpacked to one.
    MediaLoader loader(track, *engine, window, {[] { return MakeZipHandler(); }, QString()});
    QString message = loader.AddMedia(path);
    if (!message.isEmpty() && !message.endsWith(path))
        message += QStringLiteral(": ") + path;
    if (!message.isEmpty())
        return message;
    if (track.PacketCount() == 0 && track.ClipCount() == 0)
        return QStringLiteral("Nothing to play: ") + path + ReasonsOf(skipped);
    return {};
}

QString LoadPackets(const QString& path, PacketIndex atMost, Track& track)
{
    if (FileExtension(path) != QStringLiteral("cdg")) {
        std::vector<SkippedMember> skipped;
        return LoadTrack(path, track, skipped);
    }
    if (FileCheck(path) != QStringLiteral("FILE"))
        return QStringLiteral("File not found: ") + path;
    constexpr std::size_t kPieceBytes = 1000 * kPacketSize;
    if (std::optional<NativeFile> file = NativeFile::OpenForReading(path)) {
        const std::int64_t count =
            std::min<std::int64_t>(file->Size() / std::int64_t{kPacketSize}, atMost);
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count) * kPacketSize);
        bytes.resize(ReadInPieces(*file, std::span(bytes), kPieceBytes));
        track.PacketStore.Resize(static_cast<PacketIndex>(bytes.size() / kPacketSize));
        for (PacketIndex packet = 1; packet <= track.PacketCount(); ++packet) {
            const auto offset = static_cast<std::size_t>(packet - 1) * kPacketSize;
            std::memcpy(&track.PacketStore[packet], bytes.data() + offset, kPacketSize);
        }
    }
    return track.PacketCount() > 0 ? QString() : QStringLiteral("Nothing to play: ") + path;
}

} // namespace lantern::tool
