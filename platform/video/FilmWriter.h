// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmFormat.h"
#include "FilmPixels.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>

namespace lantern {

// Writes a film: pictures on a grid of so many a second, and stereo sound. A picture that doesn't
// differ from the one before takes no room, but one in each second, and the last, which lasts to
// the end.
//
// Life cycle: Open, then Paint, NextPicture and AddSound, the two of them about as far in time as
// each other (what one is ahead of the other is kept in memory), then Finish. Without it, what
// stands in the file is no film. One thread. The results are messages, empty on success; after
// one there is nothing to do but to end the writer.
class FilmWriter {
public:
    // The file is made, or emptied. Null on a failure, which is told in the error.
    static std::unique_ptr<FilmWriter> Open(const QString& path, const FilmFormat& format,
                                            QString& error);
    ~FilmWriter();
    FilmWriter(const FilmWriter&) = delete;
    FilmWriter& operator=(const FilmWriter&) = delete;

    // Whether the next picture may be another one: so many in a second don't come too soon.
    bool TakesPicture() const;
    // What has changed in the next picture. At first all is black.
    void Paint(const FilmPixels& pixels, const FilmRect& changed);
    // The next place of the grid, the first one at 0, shows what is painted.
    [[nodiscard]] QString NextPicture();
    // Interleaved, full scale is 1. The first frame sounds at 0.
    [[nodiscard]] QString AddSound(std::span<const float> stereo);
    [[nodiscard]] QString Finish();

private:
    struct Film;
    explicit FilmWriter(std::unique_ptr<Film> film);

    std::unique_ptr<Film> m_film;
};

} // namespace lantern
