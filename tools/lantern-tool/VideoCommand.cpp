// SPDX-License-Identifier: GPL-3.0-or-later
#include "VideoCommand.h"

#include "FilmModule.h"
#include "FilmPictures.h"
#include "MediaTypes.h"
#include "OptionValues.h"
#include "OutputFile.h"
#include "OutputName.h"
#include "SongName.h"
#include "TrackLoad.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace lantern::tool {
namespace {

constexpr std::int32_t kToTheEnd = std::numeric_limits<std::int32_t>::max();

class VideoCommand final : public TrackCommand {
public:
    VideoCommand(FilmOrder order, PictureLook look, const QString& out, bool force)
        : m_order(std::move(order)), m_look(look), m_out(out), m_force(force)
    {
    }

    TrackResult DoTrack(const WantedTrack& wanted, const TellProgress& tell) override
    {
        const OutputName name(m_out, wanted, QStringLiteral(".mp4"));
        const QString path = name.Path();
        Track track;
        std::vector<SkippedMember> skipped;
        OutputFile file;
        QString error = ClaimOutput(path, wanted);
        if (error.isEmpty())
            error = LoadTrack(wanted.path, track, skipped);
        if (error.isEmpty() && m_order.fromMs >= track.TotalLengthMs)
            error = QStringLiteral("--from is behind the end of ") + wanted.path;
        if (error.isEmpty())
            error = name.MakeFolder();
        if (error.isEmpty())
            error = file.Open(path, m_force ? IfExists::Replace : IfExists::Keep);
        if (error.isEmpty())
            error = Make(track, wanted.path, path, file, tell);
        if (error.isEmpty())
            error = file.Put();
        return TrackResult::Of(error);
    }

private:
    QString Make(const Track& track, const QString& trackPath, const QString& path,
                 const OutputFile& file, const TellProgress& tell) const
    {
        const SongName song = SongNameFrom(TrackTitle(trackPath));
        FilmOrder order = m_order;
        order.toMs = std::min(order.toMs, track.TotalLengthMs);
        order.title = song.title;
        order.artist = song.artist;
        // Whatever the file is called now.
        const QString inProcess = QStringLiteral("/proc/self/fd/%1").arg(file.Descriptor());
        FilmPictures pictures(track.PacketStore, order.size, m_look);
        const auto show = [&](PacketIndex packet, const FilmClient::Paint& paint) {
            pictures.ShowAt(packet, paint);
        };
        const FilmTrouble trouble = MakeFilm(track, order, inProcess, {show, tell});
        if (!trouble.file.isEmpty())
            return QStringLiteral("Cannot write %1: %2").arg(path, trouble.file);
        return trouble.sound;
    }

    FilmOrder m_order;
    PictureLook m_look;
    QString m_out;
    bool m_force;
};

// Reads the values of options until one is bad.
class Values {
public:
    explicit Values(const QCommandLineParser& parser) : m_parser(parser) {}

    template <typename Value, typename Read>
    void Take(const QCommandLineOption& option, Value& value, Read read)
    {
        if (!m_error.isEmpty() || !m_parser.isSet(option))
            return;
        const QString text = m_parser.value(option);
        const auto taken = read(text);
        if (taken)
            value = *taken;
        else
            m_error = BadValue(option, text);
    }
    const QString& Error() const { return m_error; }

private:
    const QCommandLineParser& m_parser;
    QString m_error;
};

auto Within(int least, int most)
{
    return [least, most](const QString& text) { return NumberFrom(text, least, most); };
}

} // namespace

ParsedCommand ParseVideo(const QCommandLineParser& parser, const SharedOptions& shared)
{
    constexpr QSize kUsualSize(1920, 1080);
    constexpr int kUsualPace = 30;
    constexpr int kMostSemitones = 10;
    constexpr int kMostSpeedPercent = 90;
    const auto failure = [](const QString& error) { return ParsedCommand::Failure(error); };
    FilmOrder order;
    order.size = kUsualSize;
    order.picturesPerSecond = kUsualPace;
    order.toMs = kToTheEnd;
    Values values(parser);
    values.Take(option::kSize, order.size, SizeFrom);
    values.Take(option::kFps, order.picturesPerSecond, Within(1, kMostPicturesPerSecond));
    values.Take(option::kKey, order.keySemitones, Within(-kMostSemitones, kMostSemitones));
    values.Take(option::kSpeed, order.speedPercent, Within(-kMostSpeedPercent, kMostSpeedPercent));
    values.Take(option::kFrom, order.fromMs, MsFromSeconds);
    values.Take(option::kTo, order.toMs, MsFromSeconds);
    if (!values.Error().isEmpty())
        return failure(values.Error());
    if (order.toMs <= order.fromMs)
        return failure(QStringLiteral("--to is not behind --from"));

    const QString out = parser.value(option::kOut);
    if (out.isEmpty())
        return failure(QStringLiteral("video needs --out FILE"));
    const std::optional<FilmKind> kind = FilmKindOf(out);
    const bool isInFolder = shared.several && !out.contains(QStringLiteral("%t"));
    if (!kind && !isInFolder)
        return failure(QStringLiteral("--out is no .mp4, .webm or .mkv"));
    // In a folder they are what plays everywhere.
    order.kind = isInFolder ? FilmKind::Mp4 : *kind;
    const QString why = WhyNoFilm(order.kind, order.size.width(), order.size.height());
    if (!why.isEmpty())
        return failure(BadValue(option::kSize, parser.value(option::kSize)) +
                       QStringLiteral(" (%1)").arg(why));
    const PictureLook look =
        parser.isSet(option::kSmooth) ? PictureLook::Smooth : PictureLook::Sharp;
    return {std::make_unique<VideoCommand>(order, look, out, shared.force)};
}

} // namespace lantern::tool
