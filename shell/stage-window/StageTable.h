// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "StageSettings.h"
#include "Twips.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <cstdint>

// What stands on the stage window, and where: places and sizes in twips. The groups stand below
// each other, each as high as it is; what is in a group is placed from the group's corner, and is
// walked through in the order of these tables. A new group, or a new control of a kind that is
// here, is a row.
namespace lantern {

inline constexpr std::int32_t kStageWidth = 6180;
inline constexpr std::int32_t kStageTop = 480;    // of the first group
inline constexpr std::int32_t kStageMargin = 240; // beside the groups
inline constexpr std::int32_t kStageBottom = 480; // below the last one: the button that hides
inline constexpr std::int32_t kStageCorner = 120; // of that button, from the window's corner
inline constexpr std::int32_t kStageButton = 360; // its size

enum class StageGroup : std::uint8_t { SoundDelay, VoiceGuide, Songs, Picture, Singer };

struct StageGroupRow {
    StageGroup group;
    QStringView caption;
    std::int32_t height; // with the space below
};
inline constexpr std::array kStageGroups = {
    StageGroupRow{StageGroup::SoundDelay, u"Sound delay", 1170},
    StageGroupRow{StageGroup::VoiceGuide, u"Voice guide", 840},
    StageGroupRow{StageGroup::Songs, u"Songs", 1140},
    StageGroupRow{StageGroup::Picture, u"Picture", 720},
    StageGroupRow{StageGroup::Singer, u"Singer's screen", 840},
};

constexpr std::int32_t StageGroupTop(StageGroup group)
{
    std::int32_t top = kStageTop;
    for (const StageGroupRow& row : kStageGroups) {
        if (row.group == group)
            break;
        top += row.height;
    }
    return top;
}

constexpr TwipSize StageSize()
{
    std::int32_t height = kStageTop + kStageBottom;
    for (const StageGroupRow& row : kStageGroups)
        height += row.height;
    return {kStageWidth, height};
}

// The delay of the device in use: its slider with the value beside it, the device's name, and the
// switch of the test.
inline constexpr TwipRect kDelaySlider = {120, 375, 4350, 180};
inline constexpr TwipRect kDelayValue = {4650, 360, 1005, 210};
inline constexpr TwipRect kDelayDevice = {120, 705, 3450, 240};
inline constexpr TwipRect kDelayTest = {3705, 735, 1950, 240};
inline constexpr QStringView kDelayName = u"Sound delay";
inline constexpr QStringView kDelayToolTip =
    u"To the right, the picture waits for a sound that comes late";
inline constexpr QStringView kDelayTestCaption = u"Click and flash";
inline constexpr QStringView kDelayTestToolTip =
    u"Bring the click and the flash together with the arrow keys (ESC ends it)";
// By the arrow keys, and by those of a page.
inline constexpr std::int32_t kDelayStepMs = 5;
inline constexpr std::int32_t kDelayPageMs = 50;

// The screen that shows the picture alone: its name, which opens a menu, and what is to be said of
// it.
inline constexpr TwipRect kSingerButton = {120, 345, 1890, 300};
inline constexpr TwipRect kSingerStatus = {2160, 315, 3495, 300};
inline constexpr QStringView kSingerName = u"Singer's screen";
inline constexpr QStringView kSingerToolTip =
    u"Choose the screen that shows the picture alone (by the arrow keys, too)";

// One of several, of which exactly one holds.
struct StageChoice {
    StageGroup group;
    TwipRect rect;
    QStringView caption;
    QStringView toolTip;
    VoiceGuide guide;
};
inline constexpr std::array kStageChoices = {
    StageChoice{StageGroup::VoiceGuide,
                {120, 330, 1500, 240},
                u"As recorded",
                u"Each ear hears its own channel",
                VoiceGuide::Both},
    StageChoice{StageGroup::VoiceGuide,
                {1800, 330, 1725, 240},
                u"Left to both ears",
                u"Both ears hear the left channel",
                VoiceGuide::Left},
    StageChoice{StageGroup::VoiceGuide,
                {3705, 330, 1800, 240},
                u"Right to both ears",
                u"Both ears hear the right channel",
                VoiceGuide::Right},
};

// On or off, by a choice of that kind. A group has its switches before its choices and
// its buttons.
struct StageSwitch {
    StageGroup group;
    TwipRect rect;
    QStringView caption;
    QStringView toolTip;
    bool StageSettings::*field;
};
inline constexpr std::array kStageSwitches = {
    StageSwitch{StageGroup::Songs,
                {120, 330, 2550, 240},
                u"Remember key and speed",
                u"Each song opens with its own key and speed, as they were left",
                &StageSettings::remembersTunes},
    StageSwitch{StageGroup::Songs,
                {2955, 330, 2550, 240},
                u"Even loudness",
                u"All songs are equally loud",
                &StageSettings::evensLoudness},
    StageSwitch{StageGroup::Picture,
                {120, 330, 1725, 240},
                u"Smooth letters",
                u"Letters look like type instead of blocks where the picture is large",
                &StageSettings::smoothLetters},
};

// What is done at a press.
enum class StageDeed : std::uint8_t { ForgetSong, ForgetAllSongs };

struct StageButton {
    StageGroup group;
    TwipRect rect;
    QStringView caption;
    QStringView toolTip;
    StageDeed deed;
};
inline constexpr std::array kStageButtons = {
    StageButton{StageGroup::Songs,
                {120, 690, 1890, 300},
                u"Forget this song",
                u"The open song goes back to its own key and speed",
                StageDeed::ForgetSong},
    StageButton{StageGroup::Songs,
                {2955, 690, 1890, 300},
                u"Forget all songs",
                u"Nothing is known of any song any more",
                StageDeed::ForgetAllSongs},
};

// The tables go through the groups in their order.
static_assert(std::ranges::is_sorted(kStageGroups, {}, &StageGroupRow::group));
static_assert(std::ranges::is_sorted(kStageSwitches, {}, &StageSwitch::group));
static_assert(std::ranges::is_sorted(kStageButtons, {}, &StageButton::group));
static_assert(std::ranges::is_sorted(kStageChoices, {}, &StageChoice::group));

inline constexpr QStringView kHideStageToolTip = u"Hide this window (ESC)";

} // namespace lantern
