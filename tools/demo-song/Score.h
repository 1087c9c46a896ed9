// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <span>
#include <string_view>

// "Auld Lang Syne": words by Robert Burns, 1788, to a traditional tune. Both are in the public
// domain; the arrangement is ours. Times count in ticks of an eighth note.
namespace lantern::demo {

inline constexpr double kTickSeconds = 60.0 / 96.0 / 2.0; // 96 quarter notes a minute
inline constexpr int kTicksPerBar = 8;
inline constexpr int kIntroBars = 6;
inline constexpr int kSungBars = 16;
inline constexpr int kOutroBars = 3;
inline constexpr int kTotalBars = kIntroBars + kSungBars + kOutroBars;
inline constexpr double kSongSeconds = kTotalBars * kTicksPerBar * kTickSeconds;

struct Note {
    int key = 0;             // MIDI note number
    int ticks = 0;           // length
    bool newSyllable = true; // false: the syllable before goes on
};

enum class Chord { F, C, Bb, Gm, C7 };

// The melody as it is sung, its first note (an upbeat) kUpbeatTicks before the first sung bar.
inline constexpr int kUpbeatTicks = 2;
std::span<const Note> Melody();
// Two chords a bar, for kTotalBars bars.
Chord ChordAt(int tick);

// One line on the screen: its syllables, blanks included.
struct Line {
    int slot = 0; // 0 to 3, from the top; a line takes the place of the one before it there
    std::span<const std::string_view> syllables;
};
std::span<const Line> Lines();

inline constexpr int kFirstSungTick = kIntroBars * kTicksPerBar - kUpbeatTicks;

} // namespace lantern::demo
