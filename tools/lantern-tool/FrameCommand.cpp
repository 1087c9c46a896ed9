// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameCommand.h"

#include "FrameWriter.h"
#include "OptionValues.h"
#include "PlaybackClock.h"
#include "TrackLoad.h"

#include <limits>
#include <optional>
#include <utility>

namespace lantern::tool {
namespace {

class FrameCommand final : public TrackCommand {
public:
    FrameCommand(FrameRequest request, bool force) : m_request(std::move(request)), m_force(force)
    {
    }

    TrackResult DoTrack(const WantedTrack& wanted, const TellProgress&) override
    {
        Track track;
        std::vector<SkippedMember> skipped;
        const QString error = LoadTrack(wanted.path, track, skipped);
        return TrackResult::Of(error.isEmpty() ? WriteFrames(track, wanted, m_request, m_force)
                                               : error);
    }

private:
    FrameRequest m_request;
    bool m_force;
};

std::optional<PacketIndex> PacketFromNumber(const QString& text)
{
    return NumberFrom(text, 0, std::numeric_limits<PacketIndex>::max());
}

std::optional<PacketIndex> PacketFromSeconds(const QString& text)
{
    const std::optional<std::int32_t> positionMs = MsFromSeconds(text);
    return positionMs ? std::optional(PacketsFromMs(*positionMs)) : std::nullopt;
}

// The packets of one of the two options; nothing in the result and no error if it wasn't given.
template <typename Read>
QString ReadPackets(const QCommandLineParser& parser, const QCommandLineOption& option, Read read,
                    std::vector<PacketIndex>& packets)
{
    for (const QString& list : parser.values(option)) {
        for (const QString& text : list.split(u',')) {
            const std::optional<PacketIndex> packet = read(text);
            if (!packet)
                return BadValue(option, text);
            packets.push_back(*packet);
        }
    }
    return {};
}

} // namespace

ParsedCommand ParseFrame(const QCommandLineParser& parser, const SharedOptions& shared)
{
    const auto failure = [](const char* error) {
        return ParsedCommand::Failure(QString::fromLatin1(error));
    };
    FrameRequest frame;
    if (parser.isSet(option::kPacket) == parser.isSet(option::kAt))
        return failure("frame needs either --packet or --at");
    QString error = ReadPackets(parser, option::kPacket, PacketFromNumber, frame.packets);
    if (error.isEmpty())
        error = ReadPackets(parser, option::kAt, PacketFromSeconds, frame.packets);
    if (!error.isEmpty())
        return ParsedCommand::Failure(error);

    frame.out = parser.value(option::kOut);
    frame.raw = parser.isSet(option::kRaw);
    if (parser.isSet(option::kSize)) {
        frame.size = SizeFrom(parser.value(option::kSize));
        if (!frame.size)
            return ParsedCommand::Failure(BadValue(option::kSize, parser.value(option::kSize)));
    }
    if (parser.isSet(option::kSmooth))
        frame.look = PictureLook::Smooth;
    if (parser.isSet(option::kSmooth) && !frame.size)
        return failure("--smooth needs --size");
    if (frame.raw && frame.size)
        return failure("--raw has a size of its own");
    if (frame.out.isEmpty())
        return failure("frame needs --out FILE");
    const bool isInFolder = shared.several && !frame.out.contains(QStringLiteral("%t"));
    if (frame.packets.size() > 1 && !isInFolder && !frame.out.contains(QStringLiteral("%d")))
        return failure("several frames need a %d in --out");
    return {std::make_unique<FrameCommand>(std::move(frame), shared.force)};
}

} // namespace lantern::tool
