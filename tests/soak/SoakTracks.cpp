// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoakTracks.h"

#include "PacketSheet.h"
#include "Process.h"
#include "SoundSheet.h"

namespace lantern::test {
namespace {

// Components are multiples of 17. The others are this border's, a toolbar's or a window's.
constexpr int kStep = 17;
constexpr int kSteps = 16;
constexpr QRgb kBorder = 0xFF000011;

QRgb ColourOf(int track, int second)
{
    return qRgb(kStep * (track + 1), kStep * (second / kSteps), kStep * (second % kSteps));
}

void WritePackets(int track, const std::filesystem::path& path)
{
    PacketSheet packets(SoakTracks::kSeconds);
    for (int second = 0; second < SoakTracks::kSeconds; ++second) {
        packets.Put(300 * second + 1,
                    Packet::LoadColoursLow({0xFF000000, ColourOf(track, second), kBorder}));
    }
    packets.Put(2, Packet::MemoryPreset(1));
    packets.Put(3, Packet::BorderPreset(2));
    packets.Write(path);
}

SoundSheet Sound(int track)
{
    SoundSheet sheet(SoakTracks::kSeconds);
    for (const double ratio : {1.0, 1.25, 1.5}) {
        sheet.Add({.start = 0.0,
                   .length = SoakTracks::kSeconds,
                   .frequency = ratio * (220.0 + 55.0 * track),
                   .left = 0.2,
                   .right = 0.2});
    }
    return sheet;
}

enum Form { Wav, Mp3, Zip, SoundAlone, Forms };

} // namespace

SoakTracks::SoakTracks(std::filesystem::path folder) : m_folder(std::move(folder))
{
    for (int track = 0; track < Forms; ++track) {
        const std::string stem = "Song " + std::to_string(track);
        const char* const sound = track == Wav ? ".wav" : track == Zip ? ".zip" : ".mp3";
        const char* const opened = track == SoundAlone || track == Zip ? sound : ".cdg";
        m_paths.push_back(m_folder / (stem + opened));
        m_sounds.push_back(m_folder / (stem + sound));
        Write(track);
    }
}

void SoakTracks::Write(int track) const
{
    const std::filesystem::path& sound = SoundOf(track);
    const std::filesystem::path packets = std::filesystem::path(sound).replace_extension(".cdg");
    WritePackets(track, packets);
    if (track == Wav) {
        Sound(track).WriteWav(sound);
    } else if (track == Zip) {
        const auto mp3 = std::filesystem::path(sound).replace_extension(".mp3");
        Sound(track).WriteMp3(mp3);
        std::filesystem::remove(sound);
        OutputOf({.arguments = {"7z", "a", "-tzip", "-mm=Deflate64", sound, packets, mp3}});
        std::filesystem::remove(mp3);
        std::filesystem::remove(packets);
    } else {
        Sound(track).WriteMp3(sound);
    }
}

std::optional<SoakTracks::Shown> SoakTracks::Decode(QRgb colour)
{
    const int track = qRed(colour) / kStep - 1;
    const int second = qGreen(colour) / kStep * kSteps + qBlue(colour) / kStep;
    if (track < 0 || track >= Forms || second >= kSeconds || ColourOf(track, second) != colour)
        return std::nullopt;
    return Shown{track, second};
}

} // namespace lantern::test
