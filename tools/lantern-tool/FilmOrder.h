// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmFormat.h"
#include "FilmPixels.h"
#include "Track.h"

#include <QSize>
#include <QString>

#include <cstdint>
#include <functional>

namespace lantern::tool {

// A film as it is wanted of a track.
struct FilmOrder {
    FilmKind kind = FilmKind::Mp4;
    QSize size;
    int picturesPerSecond = 0;
    int keySemitones = 0;
    int speedPercent = 0; // faster
    std::int32_t fromMs = 0;
    std::int32_t toMs = 0; // above fromMs, and not behind the track's end
    QString title;
    QString artist;
};

// What the maker of a film is given by those who ask for one.
struct FilmClient {
    using Paint = std::function<void(const FilmPixels&, const FilmRect&)>;

    // Paints what looks different in the picture after a packet since the one that came before. The
    // packets never fall.
    std::function<void(PacketIndex, const Paint&)> showPicture;
    std::function<void(double)> tellDone; // from 0 to 1
};

// Why a film was not made, by messages that are empty on success: of its file, of the track's
// sound.
struct FilmTrouble {
    QString file;
    QString sound;

    bool IsNone() const { return file.isEmpty() && sound.isEmpty(); }
};

} // namespace lantern::tool
