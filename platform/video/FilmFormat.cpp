// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmFormat.h"

#include "FilmCodecs.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lantern {
namespace {

// H.264: drawn pictures that stand for long, and no frame that leans on a later one, so that the
// first one shows at 0. VP9: as quickly as it goes. FFV1: runs of one colour are quickly told.
constexpr std::array kKinds = {
    FilmCodecs{FilmKind::Mp4, "mp4", "mp4", "libx264",
               "preset=veryfast:tune=animation:crf=18:forced-idr=1:x264-params="
               "bframes=0\\:rc-lookahead=10\\:keyint=infinite\\:scenecut=0",
               "aac", false},
    FilmCodecs{FilmKind::WebM, "webm", "webm", "libvpx-vp9",
               "deadline=realtime:cpu-used=8:row-mt=1:crf=24:lag-in-frames=0:auto-alt-ref=0:"
               "tune-content=screen",
               "libopus", false},
    FilmCodecs{FilmKind::Matroska, "mkv", "matroska", "ffv1",
               "level=3:coder=0:context=0:slices=4:slicecrc=1", "flac", true},
};

constexpr std::array kAacRates = {96000, 88200, 64000, 48000, 44100, 32000,
                                  24000, 22050, 16000, 12000, 11025, 8000};
constexpr int kOpusRate = 48000;

} // namespace

const FilmCodecs& CodecsOf(FilmKind kind)
{
    return kKinds[static_cast<std::size_t>(kind)];
}
static_assert(kKinds[0].kind == FilmKind::Mp4 && kKinds[1].kind == FilmKind::WebM &&
              kKinds[2].kind == FilmKind::Matroska);

std::optional<FilmKind> FilmKindOf(const QString& path)
{
    const QString extension = path.mid(path.lastIndexOf(u'.') + 1).toLower();
    for (const FilmCodecs& codecs : kKinds)
        if (path.contains(u'.') && extension == QLatin1StringView(codecs.extension))
            return codecs.kind;
    return std::nullopt;
}

int FilmSoundRate(FilmKind kind, int rate)
{
    if (kind == FilmKind::WebM)
        return kOpusRate;
    if (kind == FilmKind::Matroska || std::ranges::find(kAacRates, rate) != kAacRates.end())
        return rate;
    return rate % kAacRates[4] == 0 ? kAacRates[4] : kOpusRate;
}

QString WhyNoFilm(FilmKind kind, int width, int height)
{
    const auto fits = [](int side) { return side >= kSmallestFilm && side <= kLargestFilm; };
    if (!fits(width) || !fits(height)) {
        return QStringLiteral("a film has %1 to %2 pixels to a side")
            .arg(kSmallestFilm)
            .arg(kLargestFilm);
    }
    // Each of its colours is that of two pixels by two, and few players take it otherwise.
    const FilmCodecs& codecs = CodecsOf(kind);
    if (!codecs.isExact && (width % 2 != 0 || height % 2 != 0)) {
        return QStringLiteral("the sides of a .%1 film have an even number of pixels")
            .arg(QString::fromLatin1(codecs.extension));
    }
    return {};
}

} // namespace lantern
