// SPDX-License-Identifier: GPL-3.0-or-later
#include "Contestants.h"

#include "PacketSheet.h"
#include "SoundSheet.h"

#include <cmath>
#include <random>
#include <stdexcept>

namespace lantern::bench {
namespace {

using namespace lantern::test;

constexpr double kSeconds = 240.0;
constexpr int kPacketsPerTile = 5; // sixty tiles a second: fast lyrics
constexpr int kPacketsPerColourLoad = 600;
constexpr float kAudible = 0.01F;

PacketSheet BusyPackets()
{
    PacketSheet packets(kSeconds);
    std::mt19937 random(1);
    for (int number = 1; number <= static_cast<int>(kSeconds * 300); ++number) {
        if (number % kPacketsPerColourLoad == 1) {
            Packet::Colours colours = {};
            for (QRgb& colour : colours)
                colour = 0xFF000000U | static_cast<QRgb>(random() & 0xFFFFFFU);
            packets.Put(number, Packet::LoadColoursLow(colours));
        } else if (number % kPacketsPerTile == 0) {
            std::array<std::uint8_t, 12> rows = {};
            for (std::uint8_t& row : rows)
                row = static_cast<std::uint8_t>(random() % 64);
            packets.Put(number, Packet::Tile(static_cast<int>(random() % 50),
                                             static_cast<int>(random() % 18), 0,
                                             static_cast<int>(1 + random() % 7), rows));
        }
    }
    return packets;
}

// A chord, so that the encoder and the stretcher have something to do.
SoundSheet Chord()
{
    SoundSheet sheet(kSeconds);
    for (const double frequency : {220.0, 277.2, 329.6, 1760.0, 5000.0})
        sheet.Add({.start = 0.0,
                   .length = kSeconds,
                   .frequency = frequency,
                   .left = 0.15,
                   .right = 0.15});
    return sheet;
}

} // namespace

Stage::Stage(int width, int height)
    : screen(width, height), track(folder / "busy.cdg"), audio(folder / "busy.mp3")
{
    BusyPackets().Write(track);
    Chord().WriteMp3(audio);
}

std::unique_ptr<Player> StartPlayer(Stage& stage, const std::string& program)
{
    auto player = std::make_unique<Player>(
        stage.screen, stage.sound.Environment(), stage.home,
        PlayerStart{.arguments = {stage.track.string()}, .program = program});
    if (!player->AwaitWindow())
        throw std::runtime_error("the player did not start: " + player->Log());
    return player;
}

std::unique_ptr<Process> StartYardstick(const Stage& stage, const std::vector<std::string>& options,
                                        bool withFile)
{
    std::vector<std::string> arguments = {"mpv", "--no-config", "--no-video", "--ao=pulse",
                                          "--no-terminal"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    if (withFile)
        arguments.push_back(stage.audio.string());
    EnvironmentChanges environment = stage.sound.Environment();
    for (const auto& change : stage.home.Environment())
        environment.push_back(change);
    return std::make_unique<Process>(
        Process::Command{.arguments = arguments, .environment = environment});
}

std::optional<Moment> FirstSound(const Ears& ears, Moment after)
{
    const Recording heard = ears.Heard();
    for (std::int64_t frame = heard.FrameAt(after); frame < heard.FrameCount(); ++frame) {
        if (std::abs(heard.stereo[static_cast<std::size_t>(2 * frame)]) > kAudible)
            return heard.HeardAt(static_cast<double>(frame));
    }
    return std::nullopt;
}

} // namespace lantern::bench
