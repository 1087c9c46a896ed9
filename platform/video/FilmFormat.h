// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace lantern {

enum class FilmKind : std::uint8_t {
    Mp4,      // H.264 and AAC
    WebM,     // VP9 and Opus
    Matroska, // FFV1 and FLAC: what went in comes out
};

inline constexpr int kSmallestFilm = 16;  // to a side, in pixels
inline constexpr int kLargestFilm = 4096; // likewise
inline constexpr int kMostPicturesPerSecond = 120;

struct FilmFormat {
    FilmKind kind = FilmKind::Mp4;
    int width = 0;
    int height = 0;
    int placesPerSecond = 0;   // of the grid on which pictures stand
    int picturesPerSecond = 0; // the most of them that change, up to the places
    int soundRate = 0;         // one that FilmSoundRate gave
    QString title;             // empty for none
    QString artist;
};

// By the extension of the name, in any letter case.
std::optional<FilmKind> FilmKindOf(const QString& path);

// The rate for a sound of the rate given: the same, if such a film can have it.
int FilmSoundRate(FilmKind kind, int rate);

// What keeps a film from having that size; empty if nothing does.
QString WhyNoFilm(FilmKind kind, int width, int height);

} // namespace lantern
