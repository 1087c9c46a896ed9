// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Contestants.h"
#include "Measurement.h"

namespace lantern::bench {

// Percent of one core that a process uses from now on.
double ProcessorPercent(const test::Process& process, const Effort& effort);

// The player playing after some keys.
double PlayerPercent(Stage& stage, const std::vector<std::pair<std::string, int>>& keys,
                     const Effort& effort, const std::string& program = {},
                     const std::filesystem::path& track = {});

// No window has this colour, so that the first painted frame is seen.
void PaintTheEmptyScreen(const Stage& stage);

// Milliseconds from exec to the first pixel that is not the empty screen's.
double PlayerStartToPicture(Stage& stage, const std::string& program = {});

} // namespace lantern::bench
