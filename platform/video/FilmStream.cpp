// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmStream.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <thread>

namespace lantern {

QString FilmErrorText(int code)
{
    if (code >= 0)
        return {};
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text = {};
    av_strerror(code, text.data(), text.size());
    return QString::fromLocal8Bit(text.data());
}

AVCodecContext& FilmStream::Prepare(const char* encoder)
{
    m_encoder = MadeForFilm(avcodec_alloc_context3(avcodec_find_encoder_by_name(encoder)));
    m_stream = avformat_new_stream(&m_film, nullptr);
    if (!m_stream)
        throw std::bad_alloc();
    // More would hold so many more pictures.
    constexpr unsigned kMostThreads = 4;
    m_encoder->thread_count =
        static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads));
    if ((m_film.oformat->flags & AVFMT_GLOBALHEADER) != 0)
        m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    return *m_encoder;
}

QString FilmStream::Open(const char* options)
{
    AVDictionary* chosen = nullptr;
    int result = av_dict_parse_string(&chosen, options, "=", ":", 0);
    if (result >= 0)
        result = avcodec_open2(m_encoder.get(), nullptr, &chosen);
    // What the encoder doesn't know is left, and then the film would not be what we promise.
    if (result >= 0 && av_dict_count(chosen) > 0)
        result = AVERROR_OPTION_NOT_FOUND;
    av_dict_free(&chosen);
    if (result >= 0)
        result = avcodec_parameters_from_context(m_stream->codecpar, m_encoder.get());
    m_stream->time_base = m_encoder->time_base;
    if (result >= 0)
        return {};
    return QStringLiteral("%1: %2").arg(QString::fromLatin1(m_encoder->codec->name),
                                        FilmErrorText(result));
}

QString FilmStream::Encode(const AVFrame* frame)
{
    int result = avcodec_send_frame(m_encoder.get(), frame);
    while (result >= 0) {
        result = avcodec_receive_packet(m_encoder.get(), m_packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return {};
        if (result < 0)
            break;
        // Where an encoder doesn't tell how long a picture lasts: the last one lasts for a place.
        if (m_packet->duration == 0)
            m_packet->duration = 1;
        m_packet->pts += m_later;
        m_packet->dts += m_later;
        av_packet_rescale_ts(m_packet.get(), m_encoder->time_base, m_stream->time_base);
        m_packet->stream_index = m_stream->index;
        result = av_interleaved_write_frame(&m_film, m_packet.get());
    }
    return FilmErrorText(result);
}

} // namespace lantern
