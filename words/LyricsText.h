// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongWords.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace lantern {

enum class LyricsFormat : std::uint8_t {
    Txt,  // the lines
    Lrc,  // with times, those of the words too where they are known
    Srt,  // as subtitles
    Json, // all that is known, of what isn't sung as well
};

// The words as a file, in UTF-8. Where something of a track is sung, the first three have nothing
// else. In their head they say that they were recognised and may err.
QByteArray LyricsText(const std::vector<SongLine>& lines, LyricsFormat format);

} // namespace lantern
