// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmFormat.h"

namespace lantern {

// What FFmpeg calls the parts of a kind of film.
struct FilmCodecs {
    FilmKind kind = FilmKind::Mp4;
    const char* extension = nullptr;
    const char* container = nullptr;
    const char* picture = nullptr;
    const char* pictureOptions = nullptr; // of the encoder, name=value with a colon between
    const char* sound = nullptr;
    bool isExact = false;
};

const FilmCodecs& CodecsOf(FilmKind kind);

} // namespace lantern
