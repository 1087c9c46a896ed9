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

Packet::Colours RandomColours(std::mt19937& random)
{
    Packet::Colours colours = {};
    for (QRgb& colour : colours)
        colour = 0xFF000000U | static_cast<QRgb>(random() & 0xFFFFFFU);
    return colours;
}

PacketSheet BusyPackets()
{
    PacketSheet packets(kSeconds);
    std::mt19937 random(1);
    for (int number = 1; number <= static_cast<int>(kSeconds * 300); ++number) {
        if (number % kPacketsPerColourLoad == 1) {
            packets.Put(number, Packet::LoadColoursLow(RandomColours(random)));
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

PacketSheet ColourPackets()
{
    constexpr int kTiles = 50 * 18;
    PacketSheet packets(kSeconds);
    std::mt19937 random(1);
    for (int number = 1; number <= kTiles; ++number) {
        std::array<std::uint8_t, 12> rows = {};
        for (std::uint8_t& row : rows)
            row = static_cast<std::uint8_t>(random() % 64);
        packets.Put(number, Packet::Tile((number - 1) % 50, (number - 1) / 50, number % 8,
                                         8 + number % 8, rows));
    }
    for (int number = kTiles + 1; number <= static_cast<int>(kSeconds * 300); ++number) {
        const Packet::Colours colours = RandomColours(random);
        packets.Put(number, number % 2 == 0 ? Packet::LoadColoursLow(colours)
                                            : Packet::LoadColoursHigh(colours));
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

std::unique_ptr<Player> StartPlayer(Stage& stage, const std::string& program,
                                    const std::filesystem::path& track)
{
    const std::string opened = track.empty() ? stage.track.string() : track.string();
    auto player = std::make_unique<Player>(
        stage.screen, stage.sound.Environment(), stage.home,
        PlayerStart{.arguments = {opened}, .environment = stage.desktop, .program = program});
    if (!player->AwaitWindow())
        throw std::runtime_error("the player did not start: " + player->Log());
    return player;
}

std::filesystem::path WriteColourLoads(const Stage& stage)
{
    const std::filesystem::path track = stage.folder / "colours.cdg";
    ColourPackets().Write(track);
    std::filesystem::copy_file(stage.audio, stage.folder / "colours.mp3");
    return track;
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
