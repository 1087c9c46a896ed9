// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Journey.h"
#include "ScreenWindow.h"

#include <string>
#include <vector>

namespace lantern::test {

// A display of two monitors side by side, of which the right one, the singer's, can be pulled out
// and put back.
class SingerJourney : public Journey {
protected:
    static constexpr QSize kOwnSize = {1200, 800};
    static constexpr QRect kSingerArea = {1200, 0, 800, 600};
    static constexpr Point kSingerMiddle = {1600, 300};
    static constexpr Point kSingerBorder = {1600, 5}; // above the picture of 800 by 533
    static constexpr const char* kSingerTitle = "Lyric Lantern CDG Player Singer's Screen";
    static constexpr QRgb kNothing = 0xFF000000;

    SingerJourney() : Journey({kOwnSize.width() + kSingerArea.width(), kOwnSize.height()})
    {
        SetMonitors({"--setmonitor", "own", "1200/300x800/200+0+0", "screen"});
        Plug();
    }
    ~SingerJourney() override
    {
        Unplug();
        SetMonitors({"--delmonitor", "own"});
    }

    void Plug() { SetMonitors({"--setmonitor", "stage", "800/200x600/150+1200+0", "none"}); }
    void Unplug() { SetMonitors({"--delmonitor", "stage"}); }
    void SetMonitors(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "xrandr");
        EXPECT_EQ(Process({.arguments = arguments, .environment = screen.Environment()})
                      .WaitForExit(kPatience),
                  0);
    }

    void ChosenBefore()
    {
        std::filesystem::create_directories(home.SettingsFile().parent_path());
        WriteFile(StageFile(), "singerscreen\tstage|||\r\n");
    }
    std::filesystem::path StageFile() const
    {
        return home.SettingsFile().parent_path() / "data_stage.ini";
    }
    void OpenTone() { OpenTrack(WriteToneTrack("tone", 120.0)); }

    const ScreenWindow main{screen, kMainTitle};
    const ScreenWindow singer{screen, kSingerTitle};
    const ScreenWindow stage{screen, "Lyric Lantern CDG Player Stage"};
};

} // namespace lantern::test
