// SPDX-License-Identifier: GPL-3.0-or-later
#include "LyricsCommand.h"

#include "LyricsText.h"
#include "OutputName.h"
#include "SongWords.h"
#include "TesseractReader.h"
#include "TrackLoad.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <utility>
#include <vector>

namespace lantern::tool {
namespace {

struct FormatRow {
    const char* name;
    LyricsFormat format;
};
constexpr std::array kFormats = {
    FormatRow{"txt", LyricsFormat::Txt},
    FormatRow{"lrc", LyricsFormat::Lrc},
    FormatRow{"srt", LyricsFormat::Srt},
    FormatRow{"json", LyricsFormat::Json},
};

// Readers of one language, each for one track at a time: they are large, and slow to load.
class Readers {
public:
    Readers(QString language, std::unique_ptr<LineReader> first) : m_language(std::move(language))
    {
        m_idle.push_back(std::move(first));
    }

    ReaderOffer Take()
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_idle.empty()) {
                ReaderOffer offer{std::move(m_idle.back()), {}};
                m_idle.pop_back();
                return offer;
            }
        }
        return LoadTesseractReader(m_language);
    }
    void GiveBack(std::unique_ptr<LineReader> reader)
    {
        const std::lock_guard lock(m_mutex);
        m_idle.push_back(std::move(reader));
    }

private:
    QString m_language;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<LineReader>> m_idle;
};

class LyricsCommand final : public TrackCommand {
public:
    LyricsCommand(const FormatRow& format, QString out, bool force, const QString& language,
                  std::unique_ptr<LineReader> reader)
        : m_format(format), m_out(std::move(out)),
          m_ifExists(force ? IfExists::Replace : IfExists::Keep),
          m_readers(language, std::move(reader))
    {
    }

    TrackResult DoTrack(const WantedTrack& wanted, const TellProgress&) override
    {
        Track track;
        QString error = LoadPackets(wanted.path, std::numeric_limits<PacketIndex>::max(), track);
        if (!error.isEmpty())
            return TrackResult::Failure(error);
        ReaderOffer offer = m_readers.Take();
        if (!offer.reader)
            return TrackResult::Failure(offer.error + QStringLiteral(": ") + wanted.path);
        const std::vector<SongLine> lines = ReadSongWords(track.PacketStore, *offer.reader);
        m_readers.GiveBack(std::move(offer.reader));
        if (lines.empty())
            return TrackResult::Failure(QStringLiteral("No words found: ") + wanted.path);

        TrackResult result;
        result.output = LyricsText(lines, m_format.format);
        return m_out.isEmpty() ? result : Write(wanted, result.output);
    }

private:
    TrackResult Write(const WantedTrack& wanted, const QByteArray& text)
    {
        const OutputName name(m_out, wanted, u'.' + QLatin1String(m_format.name));
        const QString path = name.Path();
        QString error = ClaimOutput(path, wanted);
        if (error.isEmpty())
            error = name.MakeFolder();
        return TrackResult::Of(error.isEmpty() ? WriteOutput(path, text, m_ifExists) : error);
    }

    const FormatRow& m_format;
    QString m_out; // empty for standard output
    IfExists m_ifExists;
    Readers m_readers;
};

} // namespace

ParsedCommand ParseLyrics(const QCommandLineParser& parser, const SharedOptions& shared)
{
    const FormatRow* format = kFormats.begin();
    if (parser.isSet(option::kFormat)) {
        const QString name = parser.value(option::kFormat);
        format = std::ranges::find_if(
            kFormats, [&](const FormatRow& row) { return name == QLatin1String(row.name); });
        if (format == kFormats.end())
            return ParsedCommand::Failure(BadValue(option::kFormat, name));
    }
    const QString out = parser.value(option::kOut);
    if (parser.isSet(option::kOut) && out.isEmpty())
        return ParsedCommand::Failure(BadValue(option::kOut, out));
    if (shared.several && out.isEmpty())
        return ParsedCommand::Failure(QStringLiteral("the lyrics of several tracks need --out"));
    const QString language =
        parser.isSet(option::kLanguage) ? parser.value(option::kLanguage) : QStringLiteral("eng");
    // What is missing is told before any track is read, and once.
    ReaderOffer offer = LoadTesseractReader(language);
    if (!offer.reader)
        return ParsedCommand::Failure(offer.error);
    return {std::make_unique<LyricsCommand>(*format, out, shared.force, language,
                                            std::move(offer.reader))};
}

} // namespace lantern::tool
