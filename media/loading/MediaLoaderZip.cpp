// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoader.h"

#include "AudioEngine.h"
#include "MediaTypes.h"
#include "PathHelpers.h"
#include "TempoHold.h"

#include <utility>

namespace lantern {
namespace {

bool IsPacketFile(const QString& name)
{
    return FileExtension(name) == QStringLiteral("cdg");
}

} // namespace

void MediaLoader::AddZipFile(const QString& path)
{
    const std::unique_ptr<ZipHandler> handler = m_zip.makeHandler();
    handler->UnzipPreprocessingFile = [this](const QString& name, bool& exclude,
                                             ZipDestination& destination) {
        UnzipPreprocessingFile(name, exclude, destination);
    };
    handler->UnzippingMemoryFile = [this](const QString& name, std::vector<std::uint8_t> bytes) {
        UnzippingMemoryFile(name, std::move(bytes));
    };
    handler->MemberSkipped = [this](const QString& name, const QString& reason) {
        m_host.MemberSkipped(name, reason);
    };
    m_zipAudioTaken = false;
    m_zipCdgTaken = false;
    handler->ZipOpenArchive(path);
    handler->ZipSetFilter(QStringLiteral("*.cdg|*.") + JoinedAudioExtensions(u"|*."));
    handler->ZipSetFolder(m_zip.programFolder);
    std::int32_t result = 0; // what can't be read leaves the track empty, without a message
    handler->ZipRun(result);
}

// The first member of each kind takes the one place, whatever becomes of it.
void MediaLoader::UnzipPreprocessingFile(const QString& name, bool& exclude,
                                         ZipDestination& destination)
{
    destination = ZipDestination::Memory;
    bool& isTaken = IsPacketFile(name) ? m_zipCdgTaken : m_zipAudioTaken;
    exclude = std::exchange(isTaken, true);
    if (exclude)
        m_host.MemberSkipped(name, QStringLiteral("another one of its kind comes before it"));
}

void MediaLoader::UnzippingMemoryFile(const QString& name, std::vector<std::uint8_t> bytes)
{
    m_fileBuffer = std::move(bytes);
    if (m_fileBuffer.empty()) {
        m_host.MemberSkipped(name, QStringLiteral("empty"));
        return;
    }
    if (IsPacketFile(name)) {
        AppendPackets(FileBuffer());
        return;
    }
    AudioClip clip;
    clip.Kind = ClipKind::Data;
    clip.LengthMs = MeasureFileBuffer();
    if (clip.LengthMs <= 0) {
        m_host.MemberSkipped(name, QStringLiteral("no usable sound"));
        return;
    }
    clip.Data = SoundImage(std::move(m_fileBuffer));
    m_track.ClipList.Add(std::move(clip));
}

// The length in milliseconds; 0 or less if the engine can't use the bytes.
std::int32_t MediaLoader::MeasureFileBuffer()
{
    const TempoHold hold(m_engine, m_track.TempoHeld);
    if (m_engine.LoadMemory(FileBuffer()) != 0)
        return 0;
    const std::int32_t lengthMs = m_engine.GetLoadedDuration();
    m_engine.CloseSound();
    return lengthMs;
}

} // namespace lantern
