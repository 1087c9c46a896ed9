// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonArt.h"
#include "PlayerLook.h"
#include "SystemColours.h"
#include "Zoom.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

// What stands on the toolbar, and where: places and sizes in twips, from the corner of the parent.
namespace lantern {

// The bar, the group at its right end, and the sizes within that group.
enum class BarFrame { TBar, TBar2, TBarZoom };

inline constexpr TwipRect kTBar = {1950, 3015, 8205, 720};
inline constexpr TwipRect kTBar2 = {5085, 60, 3105, 615};
inline constexpr TwipRect kTBarZoom = {0, 0, 1440, 510};
inline constexpr TwipRect kSliderRect = {480, 465, 2070, 180};
inline constexpr TwipRect kVolumeRect = {1500, 405, 1500, 180};
inline constexpr TwipRect kTickerRect = {1650, 0, 1035, 360};

// What a button has besides its place and its face. The colours are those of a caption.
struct ButtonStyle {
    bool isCheckBox;
    std::int16_t mousePointer;
    ColourValue foreColor;
    ColourValue overColor;
};

inline constexpr ColourValue kButtonText = SystemReference(SystemColour::ButtonText);
inline constexpr ColourValue kCaptionRed = DirectColour(255, 0, 0);

inline constexpr ButtonStyle kPush{false, 0, kButtonText, kButtonText};
inline constexpr ButtonStyle kPushArrow{false, 1, kButtonText, kButtonText};
inline constexpr ButtonStyle kCheck{true, 0, kButtonText, kButtonText};
inline constexpr ButtonStyle kCheckArrow{true, 1, kButtonText, kButtonText};
inline constexpr ButtonStyle kMuteCheck{true, 0, kWhite, kButtonText};
inline constexpr ButtonStyle kWheelCheck{true, 0, kWhite, kCaptionRed};

// The index is the number of the command that a click runs.
struct ToolbarButton {
    std::int16_t index;
    BarFrame parent;
    TwipRect rect;
    ButtonFace face;
    ButtonStyle style;
};

// From the back to the front. The two columns of skip buttons overlap, the later one in front, and
// so do the wheel buttons by a row.
inline constexpr std::array kToolbarButtons = {
    ToolbarButton{0, BarFrame::TBar, {480, 60, 360, 360}, ButtonFace::Open, kPush},
    ToolbarButton{1, BarFrame::TBar, {840, 60, 360, 360}, ButtonFace::Play, kPush},
    ToolbarButton{2, BarFrame::TBar, {0, 0, 360, 360}, ButtonFace::Pause, kPush},
    ToolbarButton{3, BarFrame::TBar, {1200, 60, 360, 360}, ButtonFace::Stop, kPush},
    ToolbarButton{6, BarFrame::TBar, {1560, 60, 360, 360}, ButtonFace::QuickPlay, kCheck},
    ToolbarButton{24, BarFrame::TBar, {1965, 90, 270, 150}, ButtonFace::Back10Seconds, kPush},
    ToolbarButton{25, BarFrame::TBar, {1965, 240, 270, 150}, ButtonFace::Back60Seconds, kPush},
    ToolbarButton{4, BarFrame::TBar, {2040, 90, 270, 150}, ButtonFace::Forward10Seconds, kPush},
    ToolbarButton{5, BarFrame::TBar, {2040, 240, 270, 150}, ButtonFace::Forward60Seconds, kPush},
    ToolbarButton{12, BarFrame::TBar, {2355, 60, 360, 360}, ButtonFace::CopyPicture, kPushArrow},
    ToolbarButton{14, BarFrame::TBar, {2715, 60, 360, 360}, ButtonFace::Options, kCheckArrow},
    ToolbarButton{31, BarFrame::TBar, {15, 15, 360, 150}, ButtonFace::WheelBalance, kWheelCheck},
    ToolbarButton{32, BarFrame::TBar, {15, 150, 360, 150}, ButtonFace::WheelKey, kWheelCheck},
    ToolbarButton{35, BarFrame::TBar, {15, 285, 360, 150}, ButtonFace::WheelSpeed, kWheelCheck},
    ToolbarButton{34, BarFrame::TBar, {15, 420, 360, 150}, ButtonFace::WheelVolume, kWheelCheck},
    ToolbarButton{33, BarFrame::TBar, {15, 555, 360, 150}, ButtonFace::WheelTrack, kWheelCheck},
    ToolbarButton{16, BarFrame::TBar2, {2685, 0, 360, 360}, ButtonFace::Exit, kPushArrow},
    ToolbarButton{26, BarFrame::TBar2, {1185, 390, 270, 195}, ButtonFace::Mute, kMuteCheck},
    ToolbarButton{41, BarFrame::TBar2, {1440, 0, 180, 180}, ButtonFace::Larger, kPushArrow},
    ToolbarButton{42, BarFrame::TBar2, {1440, 180, 180, 180}, ButtonFace::Smaller, kPushArrow},
    ToolbarButton{7, BarFrame::TBarZoom, {0, 45, 180, 300}, ButtonFace::Size1, kPushArrow},
    ToolbarButton{8, BarFrame::TBarZoom, {180, 45, 195, 300}, ButtonFace::Size2, kPushArrow},
    ToolbarButton{9, BarFrame::TBarZoom, {375, 45, 210, 300}, ButtonFace::Size3, kPushArrow},
    ToolbarButton{21, BarFrame::TBarZoom, {585, 45, 255, 300}, ButtonFace::Size4, kPushArrow},
    ToolbarButton{22, BarFrame::TBarZoom, {840, 45, 240, 300}, ButtonFace::Size5, kPushArrow},
    ToolbarButton{10, BarFrame::TBarZoom, {1080, 0, 360, 360}, ButtonFace::FullScreen, kPushArrow},
    ToolbarButton{20, BarFrame::TBarZoom, {0, 0, 360, 360}, ButtonFace::RestoreScreen, kPushArrow},
};

// Two buttons in one place, of which one is visible at a time.
struct SharedPlace {
    std::int16_t moved;
    std::int16_t onto;
};
inline constexpr std::array kSharedPlaces = {SharedPlace{2, 1}, SharedPlace{20, 10}};

// The buttons that ask for the keyboard when the mouse lets go of them: those that a user presses
// again and again between keys.
inline constexpr std::array<std::int16_t, 9> kFocusingButtons = {4, 5, 24, 25, 31, 32, 33, 34, 35};

// The wheel's mode 1 is button 31.
inline constexpr std::int16_t kWheelButtonBase = 30;

constexpr const ToolbarButton& ToolbarButtonOf(std::int16_t index)
{
    const auto* const found = std::ranges::find(kToolbarButtons, index, &ToolbarButton::index);
    if (found == kToolbarButtons.end())
        std::abort(); // a number that no button has is a bug of ours
    return *found;
}

} // namespace lantern
