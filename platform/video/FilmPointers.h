// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <QString>

#include <memory>
#include <new>

// FFmpeg's objects that a film is written with, with an owner, and its errors.
namespace lantern {

struct FilmDeleter {
    // What was not finished is closed as it is.
    void operator()(AVFormatContext* context) const
    {
        avio_closep(&context->pb);
        avformat_free_context(context);
    }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

template <typename Object>
using FilmPointer = std::unique_ptr<Object, FilmDeleter>;

// What the library has made, unless there was no memory for it.
template <typename Object>
FilmPointer<Object> MadeForFilm(Object* object)
{
    if (!object)
        throw std::bad_alloc();
    return FilmPointer<Object>(object);
}

// A code of the library in words, the system's own where it has them; empty for 0 and above.
QString FilmErrorText(int code);

} // namespace lantern
