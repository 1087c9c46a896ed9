// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include <memory>
#include <new>

// FFmpeg's objects with an owner.
namespace lantern {

struct AvDeleter {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(SwrContext* context) const { swr_free(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVIOContext* context) const
    {
        // The library may have replaced the buffer that it was given.
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
};

template <typename Object>
using AvPointer = std::unique_ptr<Object, AvDeleter>;

// What the library has made, unless there was no memory for it.
template <typename Object>
AvPointer<Object> Made(Object* object)
{
    if (!object)
        throw std::bad_alloc();
    return AvPointer<Object>(object);
}

} // namespace lantern
