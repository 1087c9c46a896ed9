// SPDX-License-Identifier: GPL-3.0-or-later
#include "AudioDecisions.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace lantern {
namespace {

std::string Number(float number)
{
    return NumberText(number).toStdString();
}

TEST(NumberText, HasAtMostSevenSignificantDigitsAndNoTrailingZeros)
{
    EXPECT_EQ(Number(100), "100");
    EXPECT_EQ(Number(12.5F), "12.5");
    EXPECT_EQ(Number(-20), "-20");
    EXPECT_EQ(Number(0.1F), "0.1");
    EXPECT_EQ(Number(33.333333F), "33.33333");
    EXPECT_EQ(Number(1.0F / 3), "0.3333333");
    EXPECT_EQ(Number(99.999999F), "100");
    EXPECT_EQ(Number(9.9999999F), "10");
    EXPECT_EQ(Number(9.999999F), "9.999999");
    EXPECT_EQ(Number(1234567), "1234567");
    EXPECT_EQ(Number(-0.5F), "-0.5");
}

TEST(NumberText, NeverHasAnExponent)
{
    EXPECT_EQ(Number(0.00001F), "0.00001");
    EXPECT_EQ(Number(1e-10F), "0.0000000001");
    EXPECT_EQ(Number(1e10F), "10000000000");
}

TEST(NumberText, ZeroHasNoSignAndWhatIsNoNumberIsZero)
{
    EXPECT_EQ(Number(0), "0");
    EXPECT_EQ(Number(-0.0F), "0");
    EXPECT_EQ(Number(std::numeric_limits<float>::quiet_NaN()), "0");
    EXPECT_EQ(Number(std::numeric_limits<float>::infinity()), "0");
}

// Every whole and half number that the setters can meet reads back as itself.
TEST(NumberText, ReadsBackAsTheNumber)
{
    for (int halves = -200; halves <= 200; ++halves) {
        const float number = static_cast<float>(halves) / 2;
        EXPECT_EQ(NumberText(number).toFloat(), number);
        EXPECT_FALSE(NumberText(number).endsWith(QStringLiteral(".0")));
    }
}

struct Limits {
    AudioValue value;
    float minimum;
    float maximum;
    float neutral;
};
constexpr Limits kLimits[] = {{AudioValue::Balance, -50, 50, 0},
                              {AudioValue::KeyPitch, -10, 10, 0},
                              {AudioValue::Speed, -90, 90, 0},
                              {AudioValue::Volume, 0, 100, 100}};

TEST(ClampAudioValue, KeepsWithinTheLimitsOfEachValue)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const Limits& limits : kLimits) {
        EXPECT_EQ(ClampAudioValue(limits.value, limits.minimum), limits.minimum);
        EXPECT_EQ(ClampAudioValue(limits.value, limits.maximum), limits.maximum);
        EXPECT_EQ(ClampAudioValue(limits.value, limits.minimum - 1), limits.minimum);
        EXPECT_EQ(ClampAudioValue(limits.value, limits.maximum + 1), limits.maximum);
        EXPECT_EQ(ClampAudioValue(limits.value, limits.minimum + 0.5F), limits.minimum + 0.5F);
        EXPECT_EQ(ClampAudioValue(limits.value, -kInfinity), limits.minimum);
        EXPECT_EQ(ClampAudioValue(limits.value, kInfinity), limits.maximum);
    }
}

TEST(ClampAudioValue, WhatIsNoNumberBecomesNeutral)
{
    for (const Limits& limits : kLimits)
        EXPECT_EQ(ClampAudioValue(limits.value, std::nanf("")), limits.neutral);
}

TEST(AudioValueText, ShowsSignUnitAndTheWordForZero)
{
    const auto text = [](AudioValue value, float number) {
        return AudioValueText(value, number).toStdString();
    };
    EXPECT_EQ(text(AudioValue::Volume, 0), "MUTE");
    EXPECT_EQ(text(AudioValue::Volume, 100), "100%");
    EXPECT_EQ(text(AudioValue::Volume, 0.5F), "0.5%");
    EXPECT_EQ(text(AudioValue::Balance, 0), "DEFAULT");
    EXPECT_EQ(text(AudioValue::Balance, -0.0F), "DEFAULT");
    EXPECT_EQ(text(AudioValue::Balance, 50), "+50");
    EXPECT_EQ(text(AudioValue::Balance, 0.5F), "+0.5");
    EXPECT_EQ(text(AudioValue::Balance, -50), "-50");
    EXPECT_EQ(text(AudioValue::KeyPitch, 0), "DEFAULT");
    EXPECT_EQ(text(AudioValue::KeyPitch, 10), "+10");
    EXPECT_EQ(text(AudioValue::KeyPitch, 1), "+1");
    EXPECT_EQ(text(AudioValue::KeyPitch, -3), "-3");
    EXPECT_EQ(text(AudioValue::Speed, 0), "DEFAULT");
    EXPECT_EQ(text(AudioValue::Speed, 12.5F), "+12.5%");
    EXPECT_EQ(text(AudioValue::Speed, -20), "-20%");
}

TEST(AudioStatusText, NamesTheValue)
{
    EXPECT_EQ(AudioStatusText(AudioValue::Volume, 80), QStringLiteral("Volume: 80%"));
    EXPECT_EQ(AudioStatusText(AudioValue::Balance, 0), QStringLiteral("Balance: DEFAULT"));
    EXPECT_EQ(AudioStatusText(AudioValue::KeyPitch, -2), QStringLiteral("Key / Pitch: -2"));
    EXPECT_EQ(AudioStatusText(AudioValue::Speed, 20), QStringLiteral("Speed: +20%"));
}

TEST(WheelValue, EachModeHasItsNumber)
{
    EXPECT_EQ(WheelValue(WheelMode::Balance), AudioValue::Balance);
    EXPECT_EQ(WheelValue(WheelMode::KeyPitch), AudioValue::KeyPitch);
    EXPECT_EQ(WheelValue(WheelMode::TrackPosition), std::nullopt);
    EXPECT_EQ(WheelValue(WheelMode::Volume), AudioValue::Volume);
    EXPECT_EQ(WheelValue(WheelMode::Speed), AudioValue::Speed);
    for (const int other : {0, -1, 6, 32767, -32768})
        EXPECT_EQ(WheelValue(static_cast<WheelMode>(other)), std::nullopt);
    for (const Limits& limits : kLimits) {
        EXPECT_EQ(WheelValue(WheelModeOf(limits.value)), limits.value);
    }
}

// Every current value, with a custom value of each sign and none, both ways.
TEST(Toggled, AValueAroundZeroGoesToZeroAndIsKeptOrComesBack)
{
    const std::pair<AudioValue, double> customsIfZero[] = {
        {AudioValue::Balance, 50}, {AudioValue::KeyPitch, -2}, {AudioValue::Speed, 20}};
    for (const auto& [value, customIfZero] : customsIfZero) {
        for (int current = -90; current <= 90; ++current) {
            for (const double custom : {-50.0, 0.0, 12.5}) {
                const ToggleStep toggled = Toggled(value, current, custom, false);
                const ToggleStep forced = Toggled(value, current, custom, true);
                const double kept = current != 0 ? current : custom;
                EXPECT_EQ(forced, (ToggleStep{0, kept}));
                const double back = custom == 0 ? customIfZero : custom;
                EXPECT_EQ(toggled, (ToggleStep{current != 0 ? 0 : back, kept}));
            }
        }
    }
}

TEST(Toggled, TheVolumeGoesToSilenceAndIsKeptOrComesBack)
{
    for (int current = 1; current <= 100; ++current) {
        EXPECT_EQ(Toggled(AudioValue::Volume, current, 55, false),
                  (ToggleStep{0, static_cast<double>(current)}));
    }
    EXPECT_EQ(Toggled(AudioValue::Volume, 0, 55, false), (ToggleStep{55, 55}));
    EXPECT_EQ(Toggled(AudioValue::Volume, 0, 0, false), (ToggleStep{100, 0}));
}

TEST(Toggled, TheVolumesDefaultIsFullAndReplacesTheCustomValue)
{
    for (int current = 0; current <= 100; ++current) {
        for (const double custom : {0.0, 55.0})
            EXPECT_EQ(Toggled(AudioValue::Volume, current, custom, true), (ToggleStep{100, 100}));
    }
}

TEST(AfterWheel, EachValueHasItsStepAndItsRounding)
{
    struct Case {
        AudioValue value;
        float current;
        float down, same, up;
    };
    const Case cases[] = {
        {AudioValue::Balance, 2.5F, 0, 2, 4},
        {AudioValue::Balance, 3.5F, 2, 4, 6},
        {AudioValue::Balance, -2.5F, -4, -2, 0},
        {AudioValue::Balance, 10, 8, 10, 12},
        {AudioValue::KeyPitch, -2, -3, -2, -1},
        {AudioValue::KeyPitch, 10, 9, 10, 11},
        {AudioValue::Volume, 79.9F, 77, 79, 81},
        {AudioValue::Volume, 0.5F, -2, 0, 2},
        {AudioValue::Speed, 12.5F, 10.5F, 12.5F, 14.5F},
        {AudioValue::Speed, -90, -92, -90, -88},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(AfterWheel(each.value, each.current, -1), each.down);
        EXPECT_EQ(AfterWheel(each.value, each.current, 0), each.same);
        EXPECT_EQ(AfterWheel(each.value, each.current, 1), each.up);
    }
}

TEST(ChosenDevice, TheLastOfThatNameWinsAndLetterCaseDoesNotCount)
{
    const QStringList names = {QStringLiteral("Default"), QStringLiteral("HDMI"),
                               QStringLiteral("Kopfh\u00F6rer"), QStringLiteral("hdmi")};
    EXPECT_EQ(ChosenDevice(names, QStringLiteral("Hdmi")), 3);
    EXPECT_EQ(ChosenDevice(names, QStringLiteral("KOPFH\u00D6RER")), 2);
}

TEST(ChosenDevice, TheFirstIsTheFallback)
{
    const QStringList names = {QStringLiteral("Default"), QStringLiteral("HDMI")};
    EXPECT_EQ(ChosenDevice(names, QStringLiteral("Default")), 0);
    EXPECT_EQ(ChosenDevice(names, QStringLiteral("gone")), 0);
    EXPECT_EQ(ChosenDevice(names, QString()), 0);
    EXPECT_EQ(ChosenDevice({QStringLiteral("Default")}, QStringLiteral("HDMI")), 0);
    EXPECT_EQ(ChosenDevice({}, QStringLiteral("HDMI")), 0);
}

} // namespace
} // namespace lantern
