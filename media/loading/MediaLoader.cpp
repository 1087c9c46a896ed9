// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoader.h"

#include "AudioEngine.h"
#include "MediaTypes.h"
#include "NameSearch.h"
#include "NativeFile.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "Rounding.h"
#include "WavHeader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace lantern {
namespace {

constexpr std::array<QStringView, 1> kPacketExtensions = {u"cdg"};
constexpr std::size_t kReadPieceBytes = 1000 * kPacketSize;
static_assert(std::int64_t{MediaLimits().silenceMs} * kDiscBytesPerSecond / 1000 <=
              std::numeric_limits<std::int32_t>::max());

std::int32_t SumOfLengths(std::int32_t totalMs, std::int32_t lengthMs)
{
    const std::int64_t sum = std::int64_t{totalMs} + lengthMs;
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(sum, std::numeric_limits<std::int32_t>::max()));
}

// The path with the letter case and the accents that it has on the disk.
QString RealName(const QString& path)
{
    const QString name = ResolveName(path);
    return name.isEmpty() ? path : name;
}

} // namespace

MediaLoader::MediaLoader(Track& track, AudioEngine& engine, MediaHost& host, ZipAccess zip,
                         MediaLimits limits)
    : m_track(track), m_engine(engine), m_host(host), m_zip(std::move(zip)), m_limits(limits)
{
}

QString MediaLoader::OpenMedia(const QString& path)
{
    m_track.MediaLoading = true;
    m_host.SetTicker(-1, false);
    const QString wanted = PathInText(path);
    ClearMedia();
    m_track.CurrentMedia = wanted;
    const QString message = AddMedia(wanted);
    m_engine.NameSound(message.isEmpty() ? TrackTitle(wanted) : QString());
    if (message.isEmpty()) {
        m_host.RememberLastPlayed(wanted);
        m_host.SetSliderValues(0, m_track.TotalLengthMs - 1, 0);
        m_host.Play(0);
    } else {
        m_track.CurrentMedia.clear();
    }
    m_host.SetTicker(0, true);
    m_track.MediaLoading = false;
    return message;
}

void MediaLoader::ClearMedia()
{
    m_host.SetSliderValues(0, 0, 0);
    // Before the clips go: the engine may be playing out of their memory.
    m_engine.CloseSound();
    m_track.PacketStore.Erase();
    m_track.ClipList.Erase();
    m_track.TotalLengthMs = 0;
    m_track.CurrentClip = 0;
    m_host.HideMessage();
    m_host.ForgetPicture();
}

QString MediaLoader::AddMedia(const QString& path)
{
    if (path.isEmpty())
        return {};
    // In the letters of the disk from here on: the folder is read for them but once.
    const QString name = ResolveName(path);
    if (FileCheck(name) != QStringLiteral("FILE"))
        return QStringLiteral("File not found: ") + path;
    if (!IsMediaExtension(name) && !IsAudioExtension(name))
        return QStringLiteral("Invalid file format");

    QString message;
    try {
        AddByExtension(name);
        // Before the balance, which may need as much memory once more.
        EraseFileBuffer();
        LayOutTimeline();
        BalanceLengths();
    } catch (const std::bad_alloc&) {
        m_track.PacketStore.Erase();
        m_track.ClipList.Erase();
        m_track.TotalLengthMs = 0;
        EraseFileBuffer();
        message = QStringLiteral("Out of memory");
    }
    return message;
}

void MediaLoader::AddByExtension(const QString& path)
{
    const QString extension = FileExtension(path);
    if (extension == QStringLiteral("cdg"))
        AddCDGFile(path, true);
    else if (extension == QStringLiteral("bin"))
        AddBINFile(path);
    else if (extension == QStringLiteral("zip"))
        AddZipFile(path);
    else
        AddAudioFile(path, true);
}

void MediaLoader::LayOutTimeline()
{
    m_track.TotalLengthMs = 0;
    for (std::int32_t i = 1; i <= m_track.ClipCount(); ++i) {
        AudioClip& clip = m_track.ClipList[i];
        clip.StartMs = m_track.TotalLengthMs;
        m_track.TotalLengthMs = SumOfLengths(m_track.TotalLengthMs, clip.LengthMs);
    }
}

void MediaLoader::BalanceLengths()
{
    const std::int32_t count = m_track.PacketCount();
    const std::int32_t expected = RoundToEven(m_track.TotalLengthMs / 10.0 * 3.0);
    if (expected < count) {
        AddSilence(RoundToEven((count - expected) / 3.0 * 10.0));
        AudioClip& silence = m_track.ClipList[m_track.ClipCount()];
        silence.StartMs = m_track.TotalLengthMs;
        m_track.TotalLengthMs = SumOfLengths(m_track.TotalLengthMs, silence.LengthMs);
    } else if (expected > count) {
        // Beyond the limit the picture stays as it is; the audio plays on.
        m_track.PacketStore.Resize(std::max(count, std::min(expected, m_limits.packets)));
    }
}

void MediaLoader::AddCDGFile(const QString& path, bool lookForAudio)
{
    const std::size_t size = ReadBinaryFile(path);
    AppendPackets(FileBuffer().first(size));
    if (!lookForAudio)
        return;
    const QString audio = FindFile(StripExtension(path), AudioExtensions);
    if (!audio.isEmpty())
        AddAudioFile(audio, false);
}

void MediaLoader::AddAudioFile(const QString& path, bool lookForCdg)
{
    const QString name = RealName(path);
    const std::int32_t lengthMs = m_engine.GetFileDuration(name);
    if (lengthMs > 0) {
        AudioClip clip;
        clip.Kind = ClipKind::File;
        clip.Path = name;
        clip.LengthMs = lengthMs;
        m_track.ClipList.Add(std::move(clip));
    }
    if (lookForCdg)
        AddCDGFile(FindFile(StripExtension(path), kPacketExtensions), false);
}

void MediaLoader::AddSilence(std::int32_t lengthMs)
{
    AudioClip clip;
    clip.Kind = ClipKind::Data;
    clip.IsFiller = true;
    clip.LengthMs = std::clamp(lengthMs, 0, m_limits.silenceMs);
    const std::int32_t audioBytes = RoundToEven(clip.LengthMs / 1000.0 * kDiscBytesPerSecond);
    m_track.ClipList.Add(std::move(clip));
    WriteWavHeader(m_track.ClipCount(), audioBytes);
}

std::size_t MediaLoader::WriteWavHeader(std::int32_t clip, std::int32_t audioBytes)
{
    const auto header = WavHeader(static_cast<std::uint32_t>(audioBytes));
    SoundImage& data = m_track.ClipList[clip].Data;
    data = SoundImage::OfZeros(header.size() + static_cast<std::size_t>(audioBytes));
    std::ranges::copy(header, data.Bytes().begin());
    return header.size();
}

std::span<CdgPacket> MediaLoader::ExtendPackets(std::size_t added)
{
    const PacketIndex oldCount = m_track.PacketCount();
    const std::size_t room = static_cast<std::size_t>(std::max(0, m_limits.packets - oldCount));
    const std::size_t count = std::min(added, room);
    if (count == 0)
        return {};
    m_track.PacketStore.Resize(oldCount + static_cast<PacketIndex>(count));
    return {m_track.PacketStore.Data() + oldCount, count};
}

void MediaLoader::AppendPackets(std::span<const std::uint8_t> bytes)
{
    const std::span<CdgPacket> packets = ExtendPackets(bytes.size() / kPacketSize);
    if (!packets.empty())
        std::memcpy(packets.data(), bytes.data(), packets.size_bytes());
}

// Gives the memory back, too; an assignment of {} would keep it.
void MediaLoader::EraseFileBuffer()
{
    std::vector<std::uint8_t>().swap(m_fileBuffer);
}

std::size_t MediaLoader::ReadBinaryFile(const QString& path)
{
    std::optional<NativeFile> file = NativeFile::OpenForReading(path);
    if (!file || file->Size() <= 0 || file->Size() > m_limits.fileBytes)
        return 0;
    m_fileBuffer.resize(static_cast<std::size_t>(file->Size()));
    return ReadInPieces(*file, m_fileBuffer, kReadPieceBytes);
}

} // namespace lantern
