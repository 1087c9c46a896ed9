// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioControl.h"
#include "ButtonArt.h"
#include "PlayerLook.h"
#include "Twips.h"

#include <QStringView>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

// What stands on the options window, and where: places and sizes in twips, from its corner.
namespace lantern {

inline constexpr TwipSize kOptionsSize = {6180, 3300};

// Two panels of the window's size, of which the front one is seen.
enum class OptionsPanel { Skinner, SkinAbout };

// The controls by their names, those of an array with an index. The four sliders are one array
// here, in the order of AudioValue: slider n has its name on lab(n), its value on lab(4 + n), and
// the switch to its custom value on cmd(5 + n).
enum class OptionsControl { lab, cmd, dev, Slider, SpecPic, labInfo, AboutPic, URL };

inline constexpr std::size_t kOptionsLabels = 8;
inline constexpr std::size_t kOptionsCommands = 9;
inline constexpr std::size_t kOptionsDevices = 2;
inline constexpr std::size_t kOptionsSliders = 4;

struct OptionsPlace {
    OptionsPanel panel;
    OptionsControl control;
    std::size_t index;
    TwipRect rect;
    QStringView caption = {}; // as designed
    QStringView toolTip = {}; // %1 stands for the program's title
};

inline constexpr QStringView kDeviceToolTip = u"Select the device for audio playback";
inline constexpr QStringView kRememberToolTip =
    u"Remember this Audio Device when you next use the Player";
inline constexpr QStringView kHideToolTip = u"Hide this window (ESC)";

// From the back to the front: the buttons of the About panel stand before the address.
inline constexpr auto kOptionsPlaces = [] {
    using enum OptionsPanel;
    using enum OptionsControl;
    return std::to_array<OptionsPlace>({
        {Skinner, lab, 0, {660, 615, 585, 210}, u"Balance"},
        {Skinner, lab, 1, {480, 915, 765, 210}, u"Key / Pitch"},
        {Skinner, lab, 2, {780, 1215, 465, 210}, u"Speed"},
        {Skinner, lab, 3, {705, 1515, 540, 210}, u"Volume", kDeviceToolTip},
        {Skinner, cmd, 5, {1380, 630, 270, 210}, {}, u"Custom Balance"},
        {Skinner, cmd, 6, {1380, 930, 270, 210}, {}, u"Custom Key/Pitch"},
        {Skinner, cmd, 7, {1380, 1230, 270, 210}, {}, u"Custom Speed/Quick Play (Q)"},
        {Skinner, cmd, 8, {1380, 1530, 270, 195}, {}, u"Mute/Restore Audio (M)"},
        {Skinner, Slider, 0, {1770, 645, 3000, 180}},
        {Skinner, Slider, 1, {1770, 945, 3000, 180}},
        {Skinner, Slider, 2, {1770, 1245, 3000, 180}},
        {Skinner, Slider, 3, {1770, 1545, 3000, 180}},
        {Skinner, lab, 4, {4965, 615, 900, 210}, u"DEFAULT"},
        {Skinner, lab, 5, {4965, 915, 900, 210}, u"-1"},
        {Skinner, lab, 6, {4965, 1215, 900, 210}, u"+10%"},
        {Skinner, lab, 7, {4965, 1515, 900, 210}, u"-40%"},
        {Skinner, dev, 0, {240, 1920, 1095, 210}, u"Audio ", kDeviceToolTip},
        {Skinner, dev, 1, {1350, 1920, 4665, 210}, u"Audio Device", kDeviceToolTip},
        {Skinner, cmd, 4, {1350, 2190, 2235, 240}, u"Remember Audio Device", kRememberToolTip},
        {Skinner, SpecPic, 0, {1185, 2505, 4125, 540}},
        {Skinner, cmd, 1, {120, 2820, 360, 360}, {}, u"About %1 (A)"},
        {Skinner, cmd, 0, {5700, 2820, 360, 360}, {}, kHideToolTip},
        {SkinAbout, labInfo, 0, {435, 495, 3750, 1935}},
        {SkinAbout, AboutPic, 0, {4350, 495, 1440, 1920}},
        {SkinAbout, URL, 0, {150, 2820, 5880, 225}},
        {SkinAbout, cmd, 3, {120, 2820, 360, 360}, {}, u"Return to Options"},
        {SkinAbout, cmd, 2, {5700, 2820, 360, 360}, {}, kHideToolTip},
    });
}();

// The words for what is to be seen of the window.
inline constexpr QStringView kOptionsForm = u"OPTIONS";
inline constexpr QStringView kAboutForm = u"ABOUT";
inline constexpr QStringView kNoForm = u"NONE";

// What a button does to the sound.
using OptionsAction = void (*)(AudioControl& audio, bool isDown);

inline constexpr OptionsAction kKeepDevice = [](AudioControl& audio, bool isDown) {
    audio.ToggleDeviceSave(isDown);
};
inline constexpr OptionsAction kToggleBalance = [](AudioControl& audio, bool) {
    audio.ToggleBalance(false);
};
inline constexpr OptionsAction kTogglePitch = [](AudioControl& audio, bool) {
    audio.TogglePitch(false);
};
inline constexpr OptionsAction kToggleSpeed = [](AudioControl& audio, bool) {
    audio.ToggleSpeed(false);
};
inline constexpr OptionsAction kToggleVolume = [](AudioControl& audio, bool) {
    audio.ToggleVolume(false);
};

// The buttons as designed. A click on one of cmd shows a form, or acts on the sound; those of dev
// have no face, and open the menu of devices.
struct OptionsButton {
    OptionsControl control;
    std::size_t index;
    std::optional<ButtonFace> face;
    bool isCheckBox;
    std::int16_t mousePointer;
    QStringView form = {};
    OptionsAction act = nullptr;
};

inline constexpr std::array kOptionsButtons = {
    OptionsButton{OptionsControl::cmd, 0, ButtonFace::Hide, false, 1, kNoForm},
    OptionsButton{OptionsControl::cmd, 1, ButtonFace::About, false, 1, kAboutForm},
    OptionsButton{OptionsControl::cmd, 2, ButtonFace::Hide, false, 1, kNoForm},
    OptionsButton{OptionsControl::cmd, 3, ButtonFace::ReturnToOptions, false, 1, kOptionsForm},
    OptionsButton{OptionsControl::cmd, 4, ButtonFace::RememberDevice, true, 0, {}, kKeepDevice},
    OptionsButton{OptionsControl::cmd, 5, ButtonFace::CustomBalance, true, 1, {}, kToggleBalance},
    OptionsButton{OptionsControl::cmd, 6, ButtonFace::CustomKey, true, 1, {}, kTogglePitch},
    OptionsButton{OptionsControl::cmd, 7, ButtonFace::CustomSpeed, true, 0, {}, kToggleSpeed},
    OptionsButton{OptionsControl::cmd, 8, ButtonFace::Mute, true, 0, {}, kToggleVolume},
    OptionsButton{OptionsControl::dev, 0, std::nullopt, true, 0},
    OptionsButton{OptionsControl::dev, 1, std::nullopt, true, 0},
};

struct OptionsSlider {
    std::int32_t min;
    std::int32_t max;
    std::int32_t value;
    ColourValue sliderBack;
    bool centerLine;
    WheelMode wheelMode; // what the wheel changes once the slider was moved
    void (*set)(AudioControl& audio, std::int32_t value);
};

inline constexpr ColourValue kOptionsCentreLine = 0x808080;
inline constexpr ColourValue kOptionsSecondBars = 3303039;

// A slider that stands in its middle has no empty side.
inline constexpr std::array<OptionsSlider, kOptionsSliders> kOptionsSliderTable = {{
    {-50, 50, 0, kAccentColour, true, WheelMode::Balance,
     [](AudioControl& audio, std::int32_t value) {
         audio.SetBalance(static_cast<float>(value), true);
     }},
    {-10, 10, 0, kAccentColour, true, WheelMode::KeyPitch,
     [](AudioControl& audio, std::int32_t value) { audio.SetPitch(value, true); }},
    {-90, 90, 0, kAccentColour, true, WheelMode::Speed,
     [](AudioControl& audio, std::int32_t value) {
         audio.SetSpeed(static_cast<float>(value), true);
     }},
    {0, 100, 100, kDarkGrey, false, WheelMode::Volume,
     [](AudioControl& audio, std::int32_t value) {
         audio.SetVolume(static_cast<float>(value), true);
     }},
}};

} // namespace lantern
