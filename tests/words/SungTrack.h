// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <QString>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// Tracks whose words are known, drawn and wiped as discs are.
namespace lantern::test {

enum class Wipe : std::uint8_t {
    Exclusive, // the changed pixels alone, by exclusive or
    Recolour,  // whole tiles anew
    Palette,   // each word has a colour of its own, which changes
    Vanish,    // what is sung goes
    LineAtOnce,
};

enum class Paging : std::uint8_t {
    Pages,
    LineByLine, // a sung line is overwritten while the next one is sung
    Scroll,
};

struct SungStyle {
    std::string name;
    QString family;
    int pixelSize = 24;
    int lines = 4; // on a page
    bool bold = true;
    bool italic = false;
    bool capitals = false;
    bool outlined = false;
    bool shadowed = false;
    bool doubled = false;
    bool textured = false;
    bool antialiased = false;
    bool duet = false;
    bool faded = false; // each page goes and comes through the dark
    int damagedOneIn = 0;
    Wipe wipe = Wipe::Exclusive;
    Paging paging = Paging::Pages;
    std::string language = "eng";
};

struct KnownWord {
    QString text;
    double startMs = 0;
};

struct SungTrack {
    OneBasedArray<CdgPacket> packets;
    std::vector<std::vector<KnownWord>> lines;
    double breakBeginMs = 0; // the instrumental break
    double breakEndMs = 0;
};

// Twenty styles, in more than eight typefaces.
std::span<const SungStyle> SungStyles();

// With so many lines of words; which ones and how fast is up to the seed.
SungTrack MakeSungTrack(const SungStyle& style, int lineCount, std::uint32_t seed);

} // namespace lantern::test
