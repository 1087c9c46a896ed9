// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Picture.h"

#include <array>
#include <string_view>

namespace lantern {

enum class ButtonFace {
    Open,
    Play,
    Pause,
    Stop,
    QuickPlay,
    CopyPicture,
    Options,
    Exit,
    FullScreen,
    RestoreScreen,
    About,
    Hide,
    ReturnToOptions,
    Back10Seconds,
    Back60Seconds,
    Forward10Seconds,
    Forward60Seconds,
    Size1,
    Size2,
    Size3,
    Size4,
    Size5,
    Larger,
    Smaller,
    WheelBalance,
    WheelKey,
    WheelSpeed,
    WheelVolume,
    WheelTrack,
    Mute,
    RememberDevice,
    CustomBalance,
    CustomKey,
    CustomSpeed,
    Choice,
    Plate,
};

enum class FaceState { Normal, Down, Over, Disabled };

inline constexpr std::array kFaceStates{FaceState::Normal, FaceState::Down, FaceState::Over,
                                        FaceState::Disabled};

// The part of a button that a state fills or outlines, in pixels of the layout. Low ones
// have no room for an outline.
struct ButtonPlate {
    int left;
    int top;
    int width;
    int height;
    int radius;
    bool outlined;
};

// A face is drawn once, straight edges on whole pixels, in the two colours of the normal state; its
// other states are that drawing in other colours on the plate. One whose meaning turns as it goes
// down has a second drawing.
struct ButtonDrawing {
    ButtonFace face;
    std::string_view name;
    std::string_view downName;
    int width;
    int height;
    ButtonPlate plate;
};

inline constexpr ButtonPlate kLargePlate{1, 1, 22, 22, 4, true};
inline constexpr ButtonPlate kSkipPlate{0, 0, 18, 10, 2, false};
// A row free above and below: these buttons stand so close that they overlap by one.
inline constexpr ButtonPlate kWheelPlate{0, 1, 24, 8, 2, false};
inline constexpr ButtonPlate kCustomPlate{0, 0, 18, 14, 3, true};

inline constexpr std::array kButtonDrawings{
    ButtonDrawing{ButtonFace::Open, "open", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Play, "play", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Pause, "pause", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Stop, "stop", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::QuickPlay, "quick-play", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::CopyPicture, "copy", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Options, "options", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Exit, "exit", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::FullScreen, "full-screen", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::RestoreScreen, "restore-screen", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::About, "about", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Hide, "hide", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::ReturnToOptions, "return", {}, 24, 24, kLargePlate},
    ButtonDrawing{ButtonFace::Back10Seconds, "back-10", {}, 18, 10, kSkipPlate},
    ButtonDrawing{ButtonFace::Back60Seconds, "back-60", {}, 18, 10, kSkipPlate},
    ButtonDrawing{ButtonFace::Forward10Seconds, "forward-10", {}, 18, 10, kSkipPlate},
    ButtonDrawing{ButtonFace::Forward60Seconds, "forward-60", {}, 18, 10, kSkipPlate},
    ButtonDrawing{ButtonFace::Size1, "size-1", {}, 12, 20, {0, 0, 12, 20, 3, true}},
    ButtonDrawing{ButtonFace::Size2, "size-2", {}, 13, 20, {0, 0, 13, 20, 3, true}},
    ButtonDrawing{ButtonFace::Size3, "size-3", {}, 14, 20, {0, 0, 14, 20, 3, true}},
    ButtonDrawing{ButtonFace::Size4, "size-4", {}, 17, 20, {0, 0, 17, 20, 3, true}},
    ButtonDrawing{ButtonFace::Size5, "size-5", {}, 16, 20, {0, 0, 16, 20, 3, true}},
    ButtonDrawing{ButtonFace::Larger, "larger", {}, 12, 12, {0, 0, 12, 12, 2, true}},
    ButtonDrawing{ButtonFace::Smaller, "smaller", {}, 12, 12, {0, 0, 12, 12, 2, true}},
    ButtonDrawing{ButtonFace::WheelBalance, "wheel-balance", {}, 24, 10, kWheelPlate},
    ButtonDrawing{ButtonFace::WheelKey, "wheel-key", {}, 24, 10, kWheelPlate},
    ButtonDrawing{ButtonFace::WheelSpeed, "wheel-speed", {}, 24, 10, kWheelPlate},
    ButtonDrawing{ButtonFace::WheelVolume, "wheel-volume", {}, 24, 10, kWheelPlate},
    ButtonDrawing{ButtonFace::WheelTrack, "wheel-track", {}, 24, 10, kWheelPlate},
    ButtonDrawing{ButtonFace::Mute, "mute", "mute-down", 18, 13, {0, 0, 18, 13, 3, true}},
    ButtonDrawing{
        ButtonFace::RememberDevice, "remember", "remember-down", 18, 14, {2, 1, 12, 12, 2, true}},
    ButtonDrawing{ButtonFace::CustomBalance, "custom-balance", {}, 18, 14, kCustomPlate},
    ButtonDrawing{ButtonFace::CustomKey, "custom-key", {}, 18, 14, kCustomPlate},
    ButtonDrawing{ButtonFace::CustomSpeed, "custom-speed", {}, 18, 14, kCustomPlate},
    ButtonDrawing{ButtonFace::Choice, "choice", "choice-down", 18, 14, {2, 1, 12, 12, 5, true}},
    ButtonDrawing{ButtonFace::Plate, "plate", {}, 126, 20, {0, 0, 126, 20, 4, true}},
};

// The picture of a button's face in a state, opaque on black. Made anew by each call.
PictureReference ButtonPicture(ButtonFace face, FaceState state);

} // namespace lantern
