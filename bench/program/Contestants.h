// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Ears.h"
#include "Eyes.h"
#include "Hand.h"
#include "Player.h"
#include "PulseServer.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The two programs that are measured, on the same sink with the same sound.
namespace lantern::bench {

// Everything that a run of either needs.
struct Stage {
    explicit Stage(int width = 1600, int height = 1200);

    test::XServer screen;
    test::PulseServer sound;
    test::PlayerHome home;
    test::ScratchFolder folder;
    test::EnvironmentChanges desktop; // of the player's session; none
    // A busy karaoke track of four minutes; its sound starts at once.
    std::filesystem::path track;
    std::filesystem::path audio;
};

// Our player with a track, playing, with its window on the screen. The program may be another
// build of it, and the track another than the busy one.
std::unique_ptr<test::Player> StartPlayer(Stage& stage, const std::string& program = {},
                                          const std::filesystem::path& track = {});

// A track over the same sound that loads half of the colour table in every packet, under a picture
// of all sixteen colours: each of its packets changes the whole picture.
std::filesystem::path WriteColourLoads(const Stage& stage);

// The yardstick: a well-known player of sound, as plain as it gets.
std::unique_ptr<test::Process> StartYardstick(const Stage& stage,
                                              const std::vector<std::string>& options = {},
                                              bool withFile = true);

// The moment when the first sound after another moment was heard.
std::optional<test::Moment> FirstSound(const test::Ears& ears, test::Moment after);

} // namespace lantern::bench
