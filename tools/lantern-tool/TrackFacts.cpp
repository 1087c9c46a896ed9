// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackFacts.h"

#include "ArchiveFacts.h"
#include "DiscSector.h"
#include "MediaTypes.h"
#include "NameSearch.h"
#include "NativeFile.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "SoundModule.h"

#include <algorithm>
#include <array>

namespace lantern::tool {
namespace {

constexpr std::array<QStringView, 1> kPacketKind = {u"cdg"};

QString StemOf(const QString& path)
{
    return StripExtension(path.sliced(path.lastIndexOf(u'/') + 1));
}

std::int64_t SizeOf(const QString& path)
{
    const auto file = NativeFile::OpenForReading(path);
    return file ? file->Size() : 0;
}

// The bytes of packets: the track's own may be followed by empty ones, up to the sound's end.
void TakePackets(const Track& track, std::int64_t bytes, TrackFacts& facts)
{
    constexpr auto kBytes = std::int64_t{kPacketSize};
    const auto count =
        static_cast<std::size_t>(std::min<std::int64_t>(bytes / kBytes, track.PacketCount()));
    facts.endsWithinPacket = bytes % kBytes != 0;
    facts.hasPicture = count > 0;
    if (count > 0)
        facts.census = CountPackets(std::span(&track.PacketStore[1], count));
    facts.pictureMs = static_cast<std::int32_t>(count * 10 / 3);
}

// A .cdg file and the audio beside it, whichever of them was named.
void LookAtPair(const QString& path, const Track& track, TrackFacts& facts)
{
    const QString name = ResolveName(path);
    const bool isAudio = IsAudioExtension(name);
    const QString packets = isAudio ? FindFile(StripExtension(name), kPacketKind) : name;
    const QString audio = isAudio ? name : FindFile(StripExtension(name), AudioExtensions);
    if (!packets.isEmpty())
        TakePackets(track, SizeOf(packets), facts);
    if (!audio.isEmpty() && facts.clips == 0)
        facts.unusableSound = audio.sliced(audio.lastIndexOf(u'/') + 1);
    if (!audio.isEmpty() && !packets.isEmpty())
        facts.names = PairOf(StemOf(packets), StemOf(audio));
}

void LookAtArchive(const QString& path, const Track& track, TrackFacts& facts)
{
    const ArchiveFacts archive = FindArchiveFacts(path);
    facts.isArchive = true;
    facts.rareMethods = archive.rareMethods;
    facts.hasMoreSongs = archive.hasMoreSongs;
    TakePackets(track, track.PacketCount() > 0 ? archive.packetBytes : 0, facts);
    if (facts.clips == 0)
        facts.unusableSound = archive.audio;
    if (!archive.packets.isEmpty() && !archive.audio.isEmpty())
        facts.names = PairOf(StripExtension(archive.packets), StripExtension(archive.audio));
}

void LookAtSectors(std::int64_t size, TrackFacts& facts)
{
    facts.isDisc = true;
    facts.endsWithinPacket = size % std::int64_t{DiscSector::kBytes} != 0;
    facts.lacksSubcode =
        facts.endsWithinPacket && size % std::int64_t{DiscSector::kAudioBytes} == 0;
}

SoundHealth HealthOf(const AudioClip& clip)
{
    return clip.Kind == ClipKind::File ? ExamineSound(clip.Path, {})
                                       : ExamineSound({}, clip.Data.Bytes());
}

} // namespace

NamePair PairOf(const QString& packets, const QString& audio)
{
    if (packets == audio)
        return NamePair::Same;
    if (LowerCase(packets) == LowerCase(audio))
        return NamePair::LetterCase;
    return FoldedName(packets) == FoldedName(audio) ? NamePair::Spelling : NamePair::Different;
}

TrackFacts FindFacts(const QString& path, bool examineSound)
{
    TrackFacts facts;
    Track track;
    facts.unreadable = LoadTrack(path, track, facts.skipped);
    if (!facts.unreadable.isEmpty())
        return facts;
    for (const AudioClip& clip : track.ClipList) {
        if (clip.IsFiller)
            continue;
        ++facts.clips;
        facts.soundMs += clip.LengthMs;
    }
    const QString extension = FileExtension(path);
    const bool isDisc = extension == QStringLiteral("bin");
    if (extension == QStringLiteral("zip"))
        LookAtArchive(path, track, facts);
    else if (!isDisc)
        LookAtPair(path, track, facts);
    else
        TakePackets(track, std::int64_t{track.PacketCount()} * std::int64_t{kPacketSize}, facts);
    // The sound of a disc is samples and nothing else.
    if (isDisc)
        LookAtSectors(SizeOf(path), facts);
    else if (examineSound && facts.clips > 0)
        facts.sound = HealthOf(track.ClipList[1]);
    return facts;
}

} // namespace lantern::tool
