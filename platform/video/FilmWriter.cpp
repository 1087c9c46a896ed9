// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmWriter.h"

#include "FilmPicture.h"
#include "FilmStream.h"
#include "PathText.h"

#include <utility>

namespace lantern {
namespace {

FilmPointer<AVFormatContext> MakeContainer(const char* kind, const QByteArray& url)
{
    AVFormatContext* context = nullptr;
    avformat_alloc_output_context2(&context, nullptr, kind, url.constData());
    return MadeForFilm(context);
}

// What is there depends on how the library was built.
QString MissingEncoder(const FilmCodecs& codecs)
{
    for (const char* name : {codecs.picture, codecs.sound})
        if (!avcodec_find_encoder_by_name(name))
            return QStringLiteral("FFmpeg has no encoder %1 here").arg(QString::fromLatin1(name));
    return {};
}

void SetTag(AVFormatContext& film, const char* name, const QString& value)
{
    if (!value.isEmpty())
        av_dict_set(&film.metadata, name, value.toUtf8().constData(), 0);
}

} // namespace

struct FilmWriter::Film {
    Film(const FilmFormat& wanted, const QByteArray& url)
        : format(wanted), container(MakeContainer(CodecsOf(wanted.kind).container, url)),
          painted(wanted.width, wanted.height, CodecsOf(wanted.kind).isExact), picture(*container),
          sound(*container)
    {
    }

    QString Begin()
    {
        QString error = picture.Open(format);
        if (error.isEmpty())
            error = sound.Open(format);
        if (!error.isEmpty())
            return error;
        SetTag(*container, "title", format.title);
        SetTag(*container, "artist", format.artist);
        // However long one stream waits for the other.
        container->max_interleave_delta = 0;
        // A sound whose encoder needs a lead-in begins before 0: no picture waits for it.
        if (format.kind != FilmKind::Mp4)
            container->avoid_negative_ts = AVFMT_AVOID_NEG_TS_DISABLED;
        const int opened = avio_open(&container->pb, container->url, AVIO_FLAG_WRITE);
        if (opened < 0)
            return FilmErrorText(opened);
        const bool isSeekable = (container->pb->seekable & AVIO_SEEKABLE_NORMAL) != 0;
        if (format.kind == FilmKind::Mp4 && !isSeekable)
            return QStringLiteral("it is a pipe, through which no .mp4 goes");
        AVDictionary* options = nullptr;
        // What a player needs first stands first in an .mp4. Other containers do so anyway.
        if (format.kind == FilmKind::Mp4)
            av_dict_set(&options, "movflags", "+faststart", 0);
        const int begun = avformat_write_header(container.get(), &options);
        av_dict_free(&options);
        return FilmErrorText(begun);
    }

    QString Show(std::int64_t place)
    {
        if (isChanged)
            lastChanged = place;
        isChanged = false;
        lastShown = place;
        return picture.Add(painted.Frame(), place);
    }

    FilmFormat format;
    FilmPointer<AVFormatContext> container;
    FilmPicture painted;
    PictureStream picture;
    SoundStream sound;
    std::int64_t places = 0;
    std::int64_t lastShown = -1;
    std::int64_t lastChanged = -1; // -1 for none
    bool isChanged = true;
};

FilmWriter::FilmWriter(std::unique_ptr<Film> film) : m_film(std::move(film))
{
}
FilmWriter::~FilmWriter() = default;

std::unique_ptr<FilmWriter> FilmWriter::Open(const QString& path, const FilmFormat& format,
                                             QString& error)
{
    // It would write to the terminal, and a library's warnings tell a user nothing.
    av_log_set_level(AV_LOG_QUIET);
    error = WhyNoFilm(format.kind, format.width, format.height);
    if (error.isEmpty())
        error = MissingEncoder(CodecsOf(format.kind));
    if (!error.isEmpty())
        return nullptr;
    // By the protocol, since a name may look like another one.
    auto film = std::make_unique<Film>(format, "file:" + NativeFromText(path));
    error = film->Begin();
    return error.isEmpty() ? std::unique_ptr<FilmWriter>(new FilmWriter(std::move(film))) : nullptr;
}

void FilmWriter::Paint(const FilmPixels& pixels, const FilmRect& changed)
{
    m_film->painted.Paint(pixels, changed);
    m_film->isChanged = true;
}

bool FilmWriter::TakesPicture() const
{
    const std::int64_t since = m_film->places - m_film->lastChanged;
    const FilmFormat& format = m_film->format;
    return m_film->lastChanged < 0 || since * format.picturesPerSecond >= format.placesPerSecond;
}

QString FilmWriter::NextPicture()
{
    const std::int64_t place = m_film->places++;
    const bool isDue = place - m_film->lastShown >= m_film->format.placesPerSecond;
    return m_film->isChanged || isDue ? m_film->Show(place) : QString();
}

QString FilmWriter::AddSound(std::span<const float> stereo)
{
    return m_film->sound.Add(stereo);
}

QString FilmWriter::Finish()
{
    const std::int64_t last = m_film->places - 1;
    QString error = m_film->lastShown < last ? m_film->Show(last) : QString();
    if (error.isEmpty())
        error = m_film->picture.Finish();
    if (error.isEmpty())
        error = m_film->sound.Finish();
    if (error.isEmpty())
        error = FilmErrorText(av_write_trailer(m_film->container.get()));
    // What the system could not store may be told only here.
    const QString closed = FilmErrorText(avio_closep(&m_film->container->pb));
    return error.isEmpty() ? closed : error;
}

} // namespace lantern
