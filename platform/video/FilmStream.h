// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmCodecs.h"
#include "FilmPointers.h"

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// One of a film's streams: what is encoded goes to the film's file. The results are messages,
// empty on success.
class FilmStream {
public:
    // The film outlives the stream.
    explicit FilmStream(AVFormatContext& film)
        : m_film(film), m_packet(MadeForFilm(av_packet_alloc()))
    {
    }

protected:
    AVCodecContext& Prepare(const char* encoder); // which is there
    [[nodiscard]] QString Open(const char* options);
    AVCodecContext& Encoder() { return *m_encoder; }
    [[nodiscard]] QString Encode(const AVFrame* frame); // null at the end
    // By how much later the file has the stream's times, in frames.
    void SetLater(int frames) { m_later = frames; }

private:
    AVFormatContext& m_film;
    FilmPointer<AVPacket> m_packet;
    FilmPointer<AVCodecContext> m_encoder;
    AVStream* m_stream = nullptr;
    int m_later = 0;
};

class PictureStream final : public FilmStream {
public:
    using FilmStream::FilmStream;

    [[nodiscard]] QString Open(const FilmFormat& format);
    // At a place of the grid, the places rising.
    [[nodiscard]] QString Add(AVFrame& frame, std::int64_t place);
    [[nodiscard]] QString Finish() { return Encode(nullptr); }

private:
    [[nodiscard]] QString EncodeFirst(const AVFrame& frame);

    std::int64_t m_mostBetweenKeys = 0;
    std::int64_t m_lastKey = 0;
    bool m_isFirst = true;
    bool m_isExact = false;
};

class SoundStream final : public FilmStream {
public:
    using FilmStream::FilmStream;

    [[nodiscard]] QString Open(const FilmFormat& format);
    [[nodiscard]] QString Add(std::span<const float> stereo);
    [[nodiscard]] QString Finish();

private:
    [[nodiscard]] QString EncodeFrames(std::size_t frames);
    void Fill(AVFrame& frame);

    std::vector<float> m_stereo; // not encoded yet, from m_taken on
    std::size_t m_taken = 0;
    std::int64_t m_encodedFrames = 0;
};

} // namespace lantern
