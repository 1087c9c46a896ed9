// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonArt.h"
#include "ButtonDress.h"
#include "CommandId.h"
#include "SystemColours.h"
#include "Twips.h"

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

inline constexpr ColourValue kButtonText = SystemReference(SystemColour::ButtonText);
inline constexpr ColourValue kCaptionRed = DirectColour(255, 0, 0);

inline constexpr ButtonStyle kPush{false, 0, kButtonText, kButtonText};
inline constexpr ButtonStyle kPushArrow{false, 1, kButtonText, kButtonText};
inline constexpr ButtonStyle kCheck{true, 0, kButtonText, kButtonText};
inline constexpr ButtonStyle kCheckArrow{true, 1, kButtonText, kButtonText};
inline constexpr ButtonStyle kMuteCheck{true, 0, kWhite, kButtonText};
inline constexpr ButtonStyle kWheelCheck{true, 0, kWhite, kCaptionRed};

// A click runs its command.
struct ToolbarButton {
    CommandId command;
    BarFrame parent;
    TwipRect rect;
    ButtonFace face;
    ButtonStyle style;
};

// From the back to the front. The two columns of skip buttons overlap, and so do the wheel buttons
// by a row.
inline constexpr std::array kToolbarButtons = {
    ToolbarButton{CommandId::Open, BarFrame::TBar, {480, 60, 360, 360}, ButtonFace::Open, kPush},
    ToolbarButton{CommandId::Play, BarFrame::TBar, {840, 60, 360, 360}, ButtonFace::Play, kPush},
    ToolbarButton{CommandId::Pause, BarFrame::TBar, {0, 0, 360, 360}, ButtonFace::Pause, kPush},
    ToolbarButton{CommandId::Stop, BarFrame::TBar, {1200, 60, 360, 360}, ButtonFace::Stop, kPush},
    ToolbarButton{
        CommandId::QuickPlay, BarFrame::TBar, {1560, 60, 360, 360}, ButtonFace::QuickPlay, kCheck},
    ToolbarButton{CommandId::Back10Seconds,
                  BarFrame::TBar,
                  {1965, 90, 270, 150},
                  ButtonFace::Back10Seconds,
                  kPush},
    ToolbarButton{CommandId::Back60Seconds,
                  BarFrame::TBar,
                  {1965, 240, 270, 150},
                  ButtonFace::Back60Seconds,
                  kPush},
    ToolbarButton{CommandId::Forward10Seconds,
                  BarFrame::TBar,
                  {2040, 90, 270, 150},
                  ButtonFace::Forward10Seconds,
                  kPush},
    ToolbarButton{CommandId::Forward60Seconds,
                  BarFrame::TBar,
                  {2040, 240, 270, 150},
                  ButtonFace::Forward60Seconds,
                  kPush},
    ToolbarButton{CommandId::CopyPicture,
                  BarFrame::TBar,
                  {2355, 60, 360, 360},
                  ButtonFace::CopyPicture,
                  kPushArrow},
    ToolbarButton{
        CommandId::Options, BarFrame::TBar, {2715, 60, 360, 360}, ButtonFace::Options, kCheckArrow},
    ToolbarButton{CommandId::WheelBalance,
                  BarFrame::TBar,
                  {15, 15, 360, 150},
                  ButtonFace::WheelBalance,
                  kWheelCheck},
    ToolbarButton{CommandId::WheelKey,
                  BarFrame::TBar,
                  {15, 150, 360, 150},
                  ButtonFace::WheelKey,
                  kWheelCheck},
    ToolbarButton{CommandId::WheelSpeed,
                  BarFrame::TBar,
                  {15, 285, 360, 150},
                  ButtonFace::WheelSpeed,
                  kWheelCheck},
    ToolbarButton{CommandId::WheelVolume,
                  BarFrame::TBar,
                  {15, 420, 360, 150},
                  ButtonFace::WheelVolume,
                  kWheelCheck},
    ToolbarButton{CommandId::WheelTrack,
                  BarFrame::TBar,
                  {15, 555, 360, 150},
                  ButtonFace::WheelTrack,
                  kWheelCheck},
    ToolbarButton{
        CommandId::Exit, BarFrame::TBar2, {2685, 0, 360, 360}, ButtonFace::Exit, kPushArrow},
    ToolbarButton{
        CommandId::Mute, BarFrame::TBar2, {1185, 390, 270, 195}, ButtonFace::Mute, kMuteCheck},
    ToolbarButton{
        CommandId::Larger, BarFrame::TBar2, {1440, 0, 180, 180}, ButtonFace::Larger, kPushArrow},
    ToolbarButton{CommandId::Smaller,
                  BarFrame::TBar2,
                  {1440, 180, 180, 180},
                  ButtonFace::Smaller,
                  kPushArrow},
    ToolbarButton{
        CommandId::Size1, BarFrame::TBarZoom, {0, 45, 180, 300}, ButtonFace::Size1, kPushArrow},
    ToolbarButton{
        CommandId::Size2, BarFrame::TBarZoom, {180, 45, 195, 300}, ButtonFace::Size2, kPushArrow},
    ToolbarButton{
        CommandId::Size3, BarFrame::TBarZoom, {375, 45, 210, 300}, ButtonFace::Size3, kPushArrow},
    ToolbarButton{
        CommandId::Size4, BarFrame::TBarZoom, {585, 45, 255, 300}, ButtonFace::Size4, kPushArrow},
    ToolbarButton{
        CommandId::Size5, BarFrame::TBarZoom, {840, 45, 240, 300}, ButtonFace::Size5, kPushArrow},
    ToolbarButton{CommandId::FullScreen,
                  BarFrame::TBarZoom,
                  {1080, 0, 360, 360},
                  ButtonFace::FullScreen,
                  kPushArrow},
    ToolbarButton{CommandId::RestoreScreen,
                  BarFrame::TBarZoom,
                  {0, 0, 360, 360},
                  ButtonFace::RestoreScreen,
                  kPushArrow},
};

// Two buttons in one place, of which one is visible at a time.
struct SharedPlace {
    CommandId moved;
    CommandId onto;
};
inline constexpr std::array kSharedPlaces = {
    SharedPlace{CommandId::Pause, CommandId::Play},
    SharedPlace{CommandId::RestoreScreen, CommandId::FullScreen}};

// Two buttons in one row that overlap: each shows itself and takes the mouse on its own side of the
// middle.
struct SkipPair {
    CommandId back;
    CommandId forward;
};
inline constexpr std::array kSkipPairs = {
    SkipPair{CommandId::Back10Seconds, CommandId::Forward10Seconds},
    SkipPair{CommandId::Back60Seconds, CommandId::Forward60Seconds}};

// The buttons that ask for the keyboard when the mouse lets go of them: those that a user presses
// again and again between keys.
inline constexpr std::array kFocusingButtons = {
    CommandId::Forward10Seconds, CommandId::Forward60Seconds, CommandId::Back10Seconds,
    CommandId::Back60Seconds,    CommandId::WheelBalance,     CommandId::WheelKey,
    CommandId::WheelTrack,       CommandId::WheelVolume,      CommandId::WheelSpeed};

constexpr const ToolbarButton& ToolbarButtonOf(CommandId command)
{
    const auto* const found = std::ranges::find(kToolbarButtons, command, &ToolbarButton::command);
    if (found == kToolbarButtons.end())
        std::abort(); // a command that no button has is a bug of ours
    return *found;
}

// From the left of the bar.
constexpr std::int32_t MiddleOf(const SkipPair& pair)
{
    const TwipRect& forward = ToolbarButtonOf(pair.forward).rect;
    return (ToolbarButtonOf(pair.back).rect.left + forward.left + forward.width) / 2;
}

} // namespace lantern
