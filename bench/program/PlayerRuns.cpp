// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerRuns.h"

#include <stdexcept>

namespace lantern::bench {

using namespace lantern::test;

double ProcessorPercent(const Process& process, const Effort& effort)
{
    std::this_thread::sleep_for(effort.warmUp);
    const double before = process.ProcessorSeconds();
    const Moment start = Clock::now();
    std::this_thread::sleep_for(effort.window);
    const double seconds = Milliseconds(Clock::now() - start) / 1e3;
    return 100.0 * (process.ProcessorSeconds() - before) / seconds;
}

double PlayerPercent(Stage& stage, const std::vector<std::pair<std::string, int>>& keys,
                     const Effort& effort, const std::string& program,
                     const std::filesystem::path& track)
{
    const std::unique_ptr<Player> player = StartPlayer(stage, program, track);
    Hand hand(stage.screen);
    for (const auto& [key, times] : keys) {
        for (int i = 0; i < times; ++i)
            hand.Key(key);
    }
    const double percent = ProcessorPercent(player->Program(), effort);
    player->Program().End();
    std::filesystem::remove(stage.home.SettingsFile());
    return percent;
}

void PaintTheEmptyScreen(const Stage& stage)
{
    OutputOf({.arguments = {"xsetroot", "-solid", "#ff00ff"},
              .environment = stage.screen.Environment()});
}

double PlayerStartToPicture(Stage& stage, const std::string& program)
{
    Eyes eyes(stage.screen);
    eyes.Watch({{stage.screen.Width() / 2, stage.screen.Height() / 2}});
    std::this_thread::sleep_for(300ms);
    const std::unique_ptr<Player> player = StartPlayer(stage, program);
    std::this_thread::sleep_for(500ms);
    const std::vector<Eyes::Change> changes = eyes.StopWatching();
    if (changes.size() < 2)
        throw std::runtime_error("nothing was painted");
    return Milliseconds(changes[1].firstSeen - player->Program().StartedAt());
}

} // namespace lantern::bench
