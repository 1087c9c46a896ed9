// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashTrack.h"

#include "PacketSheet.h"
#include "Process.h"
#include "SoundSheet.h"

#include <array>
#include <cmath>
#include <map>
#include <random>

namespace lantern::test {
namespace {

constexpr double kPacketsPerSecond = 300.0;
constexpr double kFirstFlashSeconds = 1.0;
constexpr double kToneSeconds = 0.06;
constexpr double kLowestTone = 600.0;
constexpr double kToneRatio = 1.18;
// Entry 0 stays black; the odd ones of these are the border's.
constexpr Packet::Colours kLowColours = {0xFF000000, 0xFFFF0000, 0xFF00FF00, 0xFF0000FF,
                                         0xFFFFFF00, 0xFFFF00FF, 0xFF00FFFF, 0xFFFFFFFF};
constexpr int kPictureEntry = 8;
constexpr int kFirstBorderEntry = 2;
constexpr int kMarkOfPicture = 17 * 9; // the blue of every colour that the picture gets

QRgb PictureColour(int flash)
{
    return qRgb(17 * (flash & 15), 17 * ((flash >> 4) & 15), kMarkOfPicture);
}

std::optional<int> FlashOfPictureColour(QRgb colour)
{
    if (qBlue(colour) != kMarkOfPicture || qRed(colour) % 17 != 0 || qGreen(colour) % 17 != 0)
        return std::nullopt;
    return qRed(colour) / 17 + 16 * (qGreen(colour) / 17);
}

Packet FlashPacket(int flash)
{
    if (flash % 2 != 0)
        return Packet::BorderPreset(flash % FlashTrack::kKinds);
    Packet::Colours colours = {};
    colours[kPictureEntry - 8] = PictureColour(flash);
    return Packet::LoadColoursHigh(colours);
}

} // namespace

FlashTrack::FlashTrack(double seconds) : m_seconds(seconds)
{
    std::mt19937 random(20);
    // Whole packets, so that sound and picture mean the very same moment.
    auto packet = static_cast<int>(kFirstFlashSeconds * kPacketsPerSecond);
    while (packet < (seconds - 1.0) * kPacketsPerSecond && m_times.size() < 250) {
        m_times.push_back(packet / kPacketsPerSecond);
        packet += static_cast<int>(kShortestGapSeconds * kPacketsPerSecond) +
                  static_cast<int>(random() % 60);
    }
}

std::filesystem::path FlashTrack::Write(const std::filesystem::path& folder) const
{
    // Encoding takes longer than many a case: a program does it once for each length.
    static std::map<double, ScratchFolder> written;
    const auto [place, isNew] = written.try_emplace(m_seconds);
    if (isNew)
        WriteNew(place->second.Path());
    for (const char* name : {"flashes.cdg", "flashes.mp3"})
        std::filesystem::copy_file(place->second / name, folder / name);
    return folder / "flashes.cdg";
}

void FlashTrack::WriteNew(const std::filesystem::path& folder) const
{
    PacketSheet packets(m_seconds);
    packets.Put(1, Packet::LoadColoursLow(kLowColours));
    packets.Put(2, Packet::MemoryPreset(kPictureEntry));
    packets.Put(3, Packet::BorderPreset(kFirstBorderEntry));
    packets.Put(4, FlashPacket(0));
    SoundSheet sound(m_seconds);
    for (std::size_t i = 0; i < m_times.size(); ++i) {
        const int flash = static_cast<int>(i) + 1;
        packets.Put(static_cast<int>(std::lround(m_times[i] * kPacketsPerSecond)),
                    FlashPacket(flash));
        sound.Add({.start = m_times[i], .length = kToneSeconds, .frequency = ToneOfFlash(flash)});
    }
    packets.Write(folder / "flashes.cdg");
    sound.WriteMp3(folder / "flashes.mp3");
}

QRgb FlashTrack::FirstPictureColour()
{
    return PictureColour(0);
}

QRgb FlashTrack::FirstBorderColour()
{
    return kLowColours[kFirstBorderEntry];
}

QRgb FlashTrack::ColourOfFlash(int flash)
{
    return flash % 2 != 0 ? kLowColours[static_cast<std::size_t>(flash % kKinds)]
                          : PictureColour(flash);
}

double FlashTrack::ToneOfFlash(int flash)
{
    return kLowestTone * std::pow(kToneRatio, flash % kKinds);
}

std::optional<double> FlashTrack::SecondsAtPictureColour(QRgb colour) const
{
    const std::optional<int> flash = FlashOfPictureColour(colour);
    if (!flash || *flash > static_cast<int>(m_times.size()))
        return std::nullopt;
    return *flash == 0 ? 0.0 : m_times[static_cast<std::size_t>(*flash) - 1];
}

std::optional<int> FlashTrack::KindOfPictureColour(QRgb colour)
{
    const std::optional<int> flash = FlashOfPictureColour(colour);
    if (!flash)
        return std::nullopt;
    return *flash % kKinds;
}

std::optional<int> FlashTrack::KindOfBorderColour(QRgb colour)
{
    for (int kind = 1; kind < kKinds; kind += 2) {
        if (kLowColours[static_cast<std::size_t>(kind)] == colour)
            return kind;
    }
    return std::nullopt;
}

std::optional<int> FlashTrack::KindOfTone(double frequency, int halfTones)
{
    const double unshifted = frequency / std::pow(2.0, halfTones / 12.0);
    const double steps = std::log(unshifted / kLowestTone) / std::log(kToneRatio);
    const double kind = std::round(steps);
    // A third of the way to the neighbour is doubt enough.
    if (kind < 0.0 || kind >= kKinds || std::abs(steps - kind) > 0.33)
        return std::nullopt;
    return static_cast<int>(kind);
}

} // namespace lantern::test
