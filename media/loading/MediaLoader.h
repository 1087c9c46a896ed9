// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DiscSector.h"
#include "Track.h"
#include "ZipHandler.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

class AudioEngine;

// What the loader asks of the window that shows the track.
class MediaHost {
public:
    virtual ~MediaHost() = default;

    virtual void SetTicker(int seconds, bool running) = 0; // -1 seconds: no time is shown
    virtual void SetSliderValues(std::int32_t minimum, std::int32_t maximum,
                                 std::int32_t value) = 0;
    virtual void HideMessage() = 0;
    virtual void ForgetPicture() = 0; // clears the screen; nothing of the old picture is kept
    virtual void Play(std::int32_t positionMs) = 0;
    virtual void RememberLastPlayed(const QString& path) = 0;
    // A member of an archive is not used, or with an empty name nothing of it. A window tells its
    // user nothing of that.
    virtual void MemberSkipped(const QString& /*name*/, const QString& /*reason*/) {}
};

// How archives are unpacked.
struct ZipAccess {
    ZipHandlerFactory makeHandler;
    QString programFolder; // handlers want a folder, though all that they unpack goes to memory
};

// What bounds the memory of a track, whatever its files say.
struct MediaLimits {
    std::int64_t fileBytes = kLongestDiscBytes;              // a larger file counts as unreadable
    std::int32_t packets = 24 * 60 * 60 * kPacketsPerSecond; // those of a day
    // Twice as long as any disc (99 minutes and 59 seconds), and about as long as the header of a
    // sound image can tell. It costs no memory.
    std::int32_t silenceMs = 200 * 60 * 1000;
};

// Turns a path into the loaded track: sorts it by extension, fills the packets and the clips from
// the files, and makes the two equally long in time. A load runs from start to end within one
// call. What is wrong inside a file ends in a shorter or an empty track, never in a message.
class MediaLoader {
public:
    // Track, engine and host are borrowed and outlive the loader.
    MediaLoader(Track& track, AudioEngine& engine, MediaHost& host, ZipAccess zip,
                MediaLimits limits = {});

    // Clears the old track, loads what the text names (PathInText) and plays it. The result is the
    // message of AddMedia, which no window shows: the screen simply stays cleared.
    QString OpenMedia(const QString& path);
    void ClearMedia();

    // Adds what the path names to the track. The result is a message, empty on success.
    QString AddMedia(const QString& path);

    void AddCDGFile(const QString& path, bool lookForAudio);
    void AddAudioFile(const QString& path, bool lookForCdg);
    void AddBINFile(const QString& path);
    void AddZipFile(const QString& path);
    void AddSilence(std::int32_t lengthMs);

    // Reads a whole file into FileBuffer and gives the number of bytes that came. An empty or
    // unreadable file gives 0 and leaves FileBuffer as it was.
    std::size_t ReadBinaryFile(const QString& path);
    std::span<const std::uint8_t> FileBuffer() const { return m_fileBuffer; }

private:
    void AddByExtension(const QString& path);
    void LayOutTimeline();
    void BalanceLengths();
    // Adds that many empty packets, or as many as the limit allows, and gives them.
    std::span<CdgPacket> ExtendPackets(std::size_t added);
    void AppendPackets(std::span<const std::uint8_t> bytes);
    void UnzipPreprocessingFile(const QString& name, bool& exclude, ZipDestination& destination);
    void UnzippingMemoryFile(const QString& name, std::vector<std::uint8_t> bytes);
    std::int32_t MeasureFileBuffer();
    void EraseFileBuffer();
    // Makes the clip's data: a sound image of that many zero bytes. Gives its header's size.
    std::size_t WriteWavHeader(std::int32_t clip, std::int32_t audioBytes);

    Track& m_track;
    AudioEngine& m_engine;
    MediaHost& m_host;
    ZipAccess m_zip;
    MediaLimits m_limits;
    std::vector<std::uint8_t> m_fileBuffer; // the file or archive member last read
    bool m_zipAudioTaken = false;           // of the archive being unpacked
    bool m_zipCdgTaken = false;
};

} // namespace lantern
