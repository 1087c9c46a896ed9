// SPDX-License-Identifier: GPL-3.0-or-later
#include "TickTrack.h"

#include "WavHeader.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lantern {
namespace {

constexpr std::uint8_t kFirstHighColour = 8;

// Four bits of each, as a packet holds them: RRRRGG GGBBBB.
struct PacketColour {
    std::uint8_t high;
    std::uint8_t low;
};
constexpr PacketColour kDark = {0b000000, 0b000000};
constexpr PacketColour kBright = {0b111111, 0b111111};
constexpr std::uint8_t kShown = 1; // which colour of that half the picture has

CdgPacket Preset(CdgInstruction instruction)
{
    CdgPacket packet = GraphicsPacket(instruction);
    packet.PacketData[0] = kFirstHighColour + kShown;
    return packet;
}

CdgPacket Colours(PacketColour shown)
{
    // Of the two halves of the colour table, the one whose change is shown at once.
    CdgPacket packet = GraphicsPacket(CdgInstruction::LoadColourTableHigh);
    packet.PacketData[2 * kShown] = shown.high;
    packet.PacketData[2 * kShown + 1] = shown.low;
    return packet;
}

// Sharp at its start, and soon over.
std::int16_t ClickSample(std::uint32_t frame)
{
    constexpr double kFrequency = 1500.0;
    constexpr double kLoudness = 0.5 * 32767;
    constexpr double kFadeSeconds = 0.006;
    const double seconds = static_cast<double>(frame) / kDiscSampleRate;
    const double wave = std::cos(2.0 * std::numbers::pi * kFrequency * seconds);
    return static_cast<std::int16_t>(
        std::lround(kLoudness * wave * std::exp(-seconds / kFadeSeconds)));
}

SoundImage Clicks(std::uint32_t msBetween)
{
    constexpr std::uint32_t kClickFrames = kDiscSampleRate / 20;
    const std::uint32_t framesBetween = kDiscSampleRate / 100 * (msBetween / 10);
    const std::uint32_t frames = framesBetween * (kTicksOfTrack + 1);
    const auto header = WavHeader(frames * kDiscFrameBytes);
    SoundImage image = SoundImage::OfZeros(header.size() + std::size_t{frames} * kDiscFrameBytes);
    std::ranges::copy(header, image.Bytes().begin());
    const auto audio = image.Bytes().subspan(header.size());
    for (std::uint32_t tick = 1; tick <= kTicksOfTrack; ++tick) {
        for (std::uint32_t i = 0; i < std::min(kClickFrames, framesBetween); ++i) {
            const auto sample = static_cast<std::uint16_t>(ClickSample(i));
            for (const std::size_t side : {0U, 2U}) {
                const std::size_t at =
                    (std::size_t{tick} * framesBetween + i) * kDiscFrameBytes + side;
                audio[at] = static_cast<std::uint8_t>(sample & 0xFF);
                audio[at + 1] = static_cast<std::uint8_t>(sample >> 8);
            }
        }
    }
    return image;
}

} // namespace

Track MakeTickTrack(int msBetween)
{
    const int tens = std::max((msBetween + 5) / 10, 1);
    const int packetsBetween = tens * kPacketsPerSecond / 100;
    const int packetsOfFlash = std::max(packetsBetween / 10, 1);
    Track track;
    track.TotalLengthMs = tens * 10 * (kTicksOfTrack + 1);
    track.PacketStore.Resize(packetsBetween * (kTicksOfTrack + 1));
    track.PacketStore[1] = Colours(kDark);
    track.PacketStore[2] = Preset(CdgInstruction::MemoryPreset);
    track.PacketStore[3] = Preset(CdgInstruction::BorderPreset);
    for (int tick = 1; tick <= kTicksOfTrack; ++tick) {
        track.PacketStore[tick * packetsBetween] = Colours(kBright);
        track.PacketStore[tick * packetsBetween + packetsOfFlash] = Colours(kDark);
    }
    AudioClip clip;
    clip.Kind = ClipKind::Data;
    clip.LengthMs = track.TotalLengthMs;
    clip.Data = Clicks(static_cast<std::uint32_t>(tens) * 10);
    track.ClipList.Add(clip);
    return track;
}

} // namespace lantern
