// SPDX-License-Identifier: GPL-3.0-or-later
#include "ThumbnailCommand.h"

#include "FrameWriter.h"
#include "OutputName.h"
#include "TellingPicture.h"
#include "TrackLoad.h"
#include "VisiblePicture.h"

namespace lantern::tool {
namespace {

class ThumbnailCommand final : public TrackCommand {
public:
    ThumbnailCommand(int size, const QString& out, bool force)
        : m_size(size), m_out(out), m_force(force)
    {
    }

    TrackResult DoTrack(const WantedTrack& wanted, const TellProgress&) override
    {
        const OutputName name(m_out, wanted, QStringLiteral(".png"));
        const QString path = name.Path();
        Track track;
        QString error = LoadPackets(wanted.path, kTellingPackets, track);
        if (error.isEmpty())
            error = ClaimOutput(path, wanted);
        if (error.isEmpty())
            error = name.MakeFolder();
        if (!error.isEmpty())
            return TrackResult::Failure(error);
        const QImage picture = TellingPicture(track.PacketStore);
        return TrackResult::Of(WriteOutput(path, PngOf(ScaledToSquare(picture, m_size)),
                                           PictureIfExists(wanted, m_force)));
    }

private:
    int m_size; // of the longer side, in pixels
    QString m_out;
    bool m_force;
};

} // namespace

ParsedCommand ParseThumbnail(const QCommandLineParser& parser, const SharedOptions& shared)
{
    constexpr int kUsual = 256;
    constexpr int kLargest = 4096;
    int size = kUsual;
    if (parser.isSet(option::kSize)) {
        const QString text = parser.value(option::kSize);
        size = text.toInt(); // 0 for what is no number
        if (size < 1 || size > kLargest)
            return ParsedCommand::Failure(BadValue(option::kSize, text));
    }
    const QString out = parser.value(option::kOut);
    if (out.isEmpty())
        return ParsedCommand::Failure(QStringLiteral("thumbnail needs --out FILE"));
    return {std::make_unique<ThumbnailCommand>(size, out, shared.force)};
}

} // namespace lantern::tool
