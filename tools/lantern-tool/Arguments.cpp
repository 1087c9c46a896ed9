// SPDX-License-Identifier: GPL-3.0-or-later
#include "Arguments.h"

#include "PlaybackClock.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace lantern::tool {
namespace {

const QCommandLineOption kHelp(QStringList{QStringLiteral("h"), QStringLiteral("help")});
const QCommandLineOption kVersion(QStringList{QStringLiteral("v"), QStringLiteral("version")});
const QCommandLineOption kPacket(QStringLiteral("packet"), {}, QStringLiteral("N"));
const QCommandLineOption kAt(QStringLiteral("at"), {}, QStringLiteral("SECONDS"));
const QCommandLineOption kOut(QStringLiteral("out"), {}, QStringLiteral("FILE"));
const QCommandLineOption kRaw(QStringLiteral("raw"));
const QCommandLineOption kSize(QStringLiteral("size"), {}, QStringLiteral("SIZE"));
const QCommandLineOption kSmooth(QStringLiteral("smooth"));
const QList<QCommandLineOption> kCommandOptions = {kPacket, kAt, kOut, kRaw, kSize, kSmooth};

Arguments Failure(const QString& error)
{
    Arguments arguments;
    arguments.error = error;
    return arguments;
}

Arguments BadSize(const QString& text)
{
    return Failure(QStringLiteral("Bad value for --size: '%1'").arg(text));
}

// Of the form 1920x1280.
std::optional<QSize> SizeFrom(const QString& text)
{
    const QStringList sides = text.split(u'x');
    if (sides.size() != 2)
        return std::nullopt;
    bool isWidth = false;
    bool isHeight = false;
    const QSize size(sides[0].toInt(&isWidth), sides[1].toInt(&isHeight));
    const bool isPossible = isWidth && isHeight && size.width() >= 1 && size.height() >= 1 &&
                            size.width() <= kLargestFrame && size.height() <= kLargestFrame;
    return isPossible ? std::optional(size) : std::nullopt;
}

std::optional<PacketIndex> PacketFromNumber(const QString& text)
{
    bool isNumber = false;
    const int packet = text.toInt(&isNumber);
    return isNumber && packet >= 0 ? std::optional<PacketIndex>(packet) : std::nullopt;
}

std::optional<PacketIndex> PacketFromSeconds(const QString& text)
{
    bool isNumber = false;
    const double positionMs = std::round(text.toDouble(&isNumber) * 1000);
    // A NaN is not in the range, either.
    if (!isNumber || !(positionMs >= 0 && positionMs <= std::numeric_limits<std::int32_t>::max()))
        return std::nullopt;
    return PacketsFromMs(static_cast<std::int32_t>(positionMs));
}

// The packets of one of the two options; nothing in the result and no error if it wasn't given.
template <typename Read>
QString ReadPackets(const QCommandLineParser& parser, const QCommandLineOption& option, Read read,
                    std::vector<PacketIndex>& packets)
{
    for (const QString& list : parser.values(option)) {
        for (const QString& text : list.split(u',')) {
            const std::optional<PacketIndex> packet = read(text);
            if (!packet) {
                return QStringLiteral("Bad value for --%1: '%2'")
                    .arg(option.names().constFirst(), text);
            }
            packets.push_back(*packet);
        }
    }
    return {};
}

Arguments ParseFrame(const QCommandLineParser& parser)
{
    Arguments arguments;
    arguments.command = Command::Frame;
    FrameRequest& frame = arguments.frame;
    if (parser.isSet(kPacket) == parser.isSet(kAt))
        return Failure(QStringLiteral("frame needs either --packet or --at"));
    arguments.error = ReadPackets(parser, kPacket, PacketFromNumber, frame.packets);
    if (arguments.error.isEmpty())
        arguments.error = ReadPackets(parser, kAt, PacketFromSeconds, frame.packets);
    if (!arguments.error.isEmpty())
        return arguments;

    frame.out = parser.value(kOut);
    frame.raw = parser.isSet(kRaw);
    if (parser.isSet(kSize)) {
        const std::optional<QSize> size = SizeFrom(parser.value(kSize));
        if (!size)
            return BadSize(parser.value(kSize));
        frame.size = *size;
    }
    if (parser.isSet(kSmooth))
        frame.look = PictureLook::Smooth;
    if (parser.isSet(kSmooth) && !parser.isSet(kSize))
        return Failure(QStringLiteral("--smooth needs --size"));
    if (frame.raw && parser.isSet(kSize))
        return Failure(QStringLiteral("--raw has a size of its own"));
    if (frame.out.isEmpty())
        return Failure(QStringLiteral("frame needs --out FILE"));
    if (frame.packets.size() > 1 && !frame.out.contains(QStringLiteral("%d")))
        return Failure(QStringLiteral("several frames need a %d in --out"));
    return arguments;
}

Arguments ParseThumbnail(const QCommandLineParser& parser)
{
    constexpr int kLargest = 4096;
    Arguments arguments;
    arguments.command = Command::Thumbnail;
    ThumbnailRequest& thumbnail = arguments.thumbnail;
    if (parser.isSet(kSize)) {
        const QString text = parser.value(kSize);
        thumbnail.size = PacketFromNumber(text).value_or(0);
        if (thumbnail.size < 1 || thumbnail.size > kLargest)
            return BadSize(text);
    }
    thumbnail.out = parser.value(kOut);
    if (thumbnail.out.isEmpty())
        return Failure(QStringLiteral("thumbnail needs --out FILE"));
    return arguments;
}

Arguments ParseInfo(const QCommandLineParser&)
{
    Arguments arguments;
    arguments.command = Command::Info;
    return arguments;
}

struct CommandRow {
    QString name;
    QStringList options; // those that it takes
    Arguments (*parse)(const QCommandLineParser&);
};
const std::array kCommands = {
    CommandRow{QStringLiteral("info"), {}, ParseInfo},
    CommandRow{QStringLiteral("frame"),
               {QStringLiteral("packet"), QStringLiteral("at"), QStringLiteral("out"),
                QStringLiteral("raw"), QStringLiteral("size"), QStringLiteral("smooth")},
               ParseFrame},
    CommandRow{QStringLiteral("thumbnail"),
               {QStringLiteral("size"), QStringLiteral("out")},
               ParseThumbnail},
};

Arguments ParseCommand(const QCommandLineParser& parser)
{
    const QString command = parser.positionalArguments().value(0);
    if (command.isEmpty())
        return Failure(QStringLiteral("no command; try --help"));
    const auto* row = std::ranges::find(kCommands, command, &CommandRow::name);
    if (row == kCommands.end())
        return Failure(QStringLiteral("Unknown command '%1'").arg(command));
    for (const QCommandLineOption& option : kCommandOptions) {
        const QString name = option.names().constFirst();
        if (parser.isSet(option) && !row->options.contains(name))
            return Failure(QStringLiteral("--%1 is not for %2").arg(name, command));
    }
    return row->parse(parser);
}

} // namespace

Arguments ParseArguments(const QStringList& commandLine)
{
    QCommandLineParser parser;
    parser.addOptions(QList<QCommandLineOption>{kHelp, kVersion} + kCommandOptions);
    if (!parser.parse(commandLine))
        return Failure(parser.errorText());
    Arguments arguments;
    if (parser.isSet(kHelp) || parser.isSet(kVersion)) {
        arguments.command = parser.isSet(kHelp) ? Command::Help : Command::Version;
        return arguments;
    }
    arguments = ParseCommand(parser);
    const QStringList words = parser.positionalArguments();
    if (arguments.error.isEmpty() && words.size() != 2) {
        return Failure(words.size() < 2 ? QStringLiteral("no track")
                                        : QStringLiteral("more than one track"));
    }
    arguments.track = words.value(1);
    return arguments;
}

} // namespace lantern::tool
