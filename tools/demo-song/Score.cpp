// SPDX-License-Identifier: GPL-3.0-or-later
#include "Score.h"

namespace lantern::demo {
namespace {

constexpr int kC4 = 60, kD4 = 62, kF4 = 65, kG4 = 67, kA4 = 69, kC5 = 72, kD5 = 74;
constexpr bool kSlur = false;

constexpr auto kMelody = std::to_array<Note>({
    {kC4, 2},        {kF4, 3}, {kF4, 1},        {kF4, 2}, {kA4, 2},        {kG4, 3},
    {kF4, 1},        {kG4, 2}, {kA4, 2},        {kF4, 3}, {kF4, 1},        {kA4, 2},
    {kC5, 2},        {kD5, 6}, {kD5, 2},        {kC5, 3}, {kA4, 1},        {kA4, 2},
    {kF4, 2},        {kG4, 3}, {kF4, 1},        {kG4, 2}, {kA4, 2},        {kF4, 3},
    {kD4, 1},        {kD4, 2}, {kC4, 2},        {kF4, 6}, {kD5, 2},        {kC5, 3},
    {kA4, 1, kSlur}, {kA4, 2}, {kF4, 2, kSlur}, {kG4, 3}, {kF4, 1},        {kG4, 2},
    {kD5, 2},        {kC5, 3}, {kA4, 1, kSlur}, {kA4, 2}, {kC5, 2, kSlur}, {kD5, 6},
    {kD5, 2},        {kC5, 3}, {kA4, 1},        {kA4, 2}, {kF4, 2},        {kG4, 3},
    {kF4, 1},        {kG4, 2}, {kA4, 2},        {kF4, 3}, {kD4, 1, kSlur}, {kD4, 2},
    {kC4, 2, kSlur}, {kF4, 8},
});

constexpr auto kChorus = std::to_array<Chord>({
    Chord::F,
    Chord::F,
    Chord::C,
    Chord::C7,
    Chord::F,
    Chord::F,
    Chord::Bb,
    Chord::Bb,
    Chord::F,
    Chord::F,
    Chord::C,
    Chord::C7,
    Chord::Bb,
    Chord::C7,
    Chord::F,
    Chord::F,
});

constexpr auto kLine00 =
    std::to_array<std::string_view>({"Should ", "auld ", "ac", "quaint", "ance"});
constexpr auto kLine01 = std::to_array<std::string_view>({"be ", "for", "got,"});
constexpr auto kLine02 = std::to_array<std::string_view>({"and ", "nev", "er"});
constexpr auto kLine03 = std::to_array<std::string_view>({"brought ", "to ", "mind?"});
constexpr auto kLine12 = std::to_array<std::string_view>({"and ", "days ", "of "});
constexpr auto kLine13 = std::to_array<std::string_view>({"auld ", "lang ", "syne?"});
constexpr auto kLine20 = std::to_array<std::string_view>({"For ", "auld ", "lang ", "syne,"});
constexpr auto kLine21 = std::to_array<std::string_view>({"my ", "dear,"});
constexpr auto kLine22 = std::to_array<std::string_view>({"for ", "auld "});
constexpr auto kLine23 = std::to_array<std::string_view>({"lang ", "syne,"});
constexpr auto kLine30 = std::to_array<std::string_view>({"We\u2019ll ", "take ", "a ", "cup"});
constexpr auto kLine31 = std::to_array<std::string_view>({"of ", "kind", "ness ", "yet,"});
constexpr auto kLine32 = std::to_array<std::string_view>({"for ", "auld "});
constexpr auto kLine33 = std::to_array<std::string_view>({"lang ", "syne."});

constexpr auto kLines = std::to_array<Line>({
    {0, kLine00},
    {1, kLine01},
    {2, kLine02},
    {3, kLine03},
    {0, kLine00},
    {1, kLine01},
    {2, kLine12},
    {3, kLine13},
    {0, kLine20},
    {1, kLine21},
    {2, kLine22},
    {3, kLine23},
    {0, kLine30},
    {1, kLine31},
    {2, kLine32},
    {3, kLine33},
});

} // namespace

std::span<const Note> Melody()
{
    return kMelody;
}

Chord ChordAt(int tick)
{
    const int half = tick * 2 / kTicksPerBar;
    constexpr int kVampHalves = 2 * (kIntroBars - 4); // the intro opens on the home chord
    if (half < kVampHalves)
        return Chord::F;
    constexpr int kTuneEndHalves = 2 * (kIntroBars + kSungBars);
    if (half >= kTuneEndHalves)
        return half < kTuneEndHalves + 2 ? Chord::Bb : Chord::F;
    return kChorus[static_cast<std::size_t>(half - kVampHalves + 8) % kChorus.size()];
}

std::span<const Line> Lines()
{
    return kLines;
}

} // namespace lantern::demo
