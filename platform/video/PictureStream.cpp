// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmStream.h"

#include <cerrno>
#include <cstddef>
#include <limits>
#include <utility>

namespace lantern {
namespace {

// A player that seeks goes on from a key picture, and decodes all that follow it up to its place.
constexpr int kSecondsBetweenKeys = 4;

} // namespace

QString PictureStream::Open(const FilmFormat& format)
{
    const FilmCodecs& codecs = CodecsOf(format.kind);
    AVCodecContext& encoder = Prepare(codecs.picture);
    encoder.width = format.width;
    encoder.height = format.height;
    encoder.sample_aspect_ratio = {1, 1};
    encoder.time_base = {1, format.placesPerSecond};
    encoder.framerate = {format.picturesPerSecond, 1};
    m_isExact = codecs.isExact;
    if (m_isExact) {
        encoder.pix_fmt = AV_PIX_FMT_0RGB32;
        encoder.gop_size = 1;
    } else {
        encoder.pix_fmt = AV_PIX_FMT_YUV420P;
        encoder.color_range = AVCOL_RANGE_MPEG;
        encoder.colorspace = AVCOL_SPC_BT709;
        encoder.color_primaries = AVCOL_PRI_BT709;
        encoder.color_trc = AVCOL_TRC_BT709;
        encoder.chroma_sample_location = AVCHROMA_LOC_LEFT;
        encoder.gop_size = std::numeric_limits<int>::max(); // they are asked for
    }
    m_mostBetweenKeys = std::int64_t{kSecondsBetweenKeys} * format.placesPerSecond;
    return FilmStream::Open(codecs.pictureOptions);
}

QString PictureStream::Add(AVFrame& frame, std::int64_t place)
{
    const bool isFirst = std::exchange(m_isFirst, false);
    const bool isKey = isFirst || place - m_lastKey >= m_mostBetweenKeys;
    if (isKey)
        m_lastKey = place;
    frame.pict_type = isKey ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    frame.pts = place;
    return isFirst && m_isExact ? EncodeFirst(frame) : Encode(&frame);
}

// Of the first picture, FFV1 asks for room for the worst packet that there could be, and keeps it:
// gigabytes, of which nearly all is never touched. Who decodes sounds holds what the library may
// allocate down, for the whole process, and may do so again at any moment.
QString PictureStream::EncodeFirst(const AVFrame& frame)
{
    constexpr int kMostTries = 10;
    constexpr std::size_t kLargestOtherwise = std::size_t{256} << 20;
    QString error;
    for (int i = 0; i < kMostTries; ++i) {
        av_max_alloc(std::numeric_limits<int>::max());
        error = Encode(&frame);
        if (error != FilmErrorText(AVERROR(ENOMEM)))
            break;
    }
    av_max_alloc(kLargestOtherwise);
    return error;
}

} // namespace lantern
