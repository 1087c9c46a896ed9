// SPDX-License-Identifier: GPL-3.0-or-later
// The player's companion for scripts: tells what is in a track and draws its picture, without a
// display and without a sound device.
#include "Arguments.h"
#include "FrameWriter.h"
#include "PathText.h"
#include "TellingPicture.h"
#include "TrackInfo.h"
#include "TrackLoad.h"
#include "Version.h"
#include "VisiblePicture.h"

#include <cstdio>

namespace lantern::tool {
namespace {

constexpr char kHelpText[] =
    R"(usage: lantern-tool info TRACK
       lantern-tool frame TRACK --packet N[,N...] --out FILE
                    [--raw | --size WxH [--smooth]]
       lantern-tool frame TRACK --at SECONDS[,SECONDS...] --out FILE
                    [--raw | --size WxH [--smooth]]
       lantern-tool thumbnail TRACK [--size N] --out FILE
       lantern-tool --help | --version

TRACK is what the player opens: a .cdg file, an audio file, a .bin or a .zip.

info   prints one JSON object: packets, length_ms, clips, each with its kind
       ("FILE" or "DATA"), start_ms, length_ms and, where it has one, path, and
       skipped: the members of a .zip that are no part of the track, each with
       its name and the reason. A byte of a path or a name that is no UTF-8
       appears as \udc80 to \udcff, the escape whose low byte it is.
frame  writes the picture after packet N (300 packets are a second; 0 is the
       empty picture before the first, and a number beyond the last packet shows
       the last picture): the visible 288 by 192 pixels as a PNG. Several
       packets are visited in the order given. Each %d in FILE becomes N.
       --size WxH scales it to W by H pixels, 8192 by 8192 at most, as sharp
       as in the window. With --smooth its letters have smooth edges, if it is
       1.5 times as large or more.
       --raw writes the whole picture of 300 by 216 colour indexes as a PGM
       instead, and its 16 colours to FILE.colours, one #rrggbb a line.
thumbnail
       writes a telling picture of the track, one with many words, as a PNG whose
       longer side has N pixels (256). Of a .cdg file nothing but its first ten
       minutes is read.

The exit code is 0, or 1 with one line on standard error.
)";

QString Print(const QByteArray& text)
{
    const auto size = static_cast<std::size_t>(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        return QStringLiteral("Cannot write to standard output");
    return {};
}

QString WriteThumbnail(const Arguments& arguments)
{
    Track track;
    const QString error = LoadPackets(arguments.track, kTellingPackets, track);
    if (!error.isEmpty())
        return error;
    const QImage picture = TellingPicture(track.PacketStore);
    return WriteFile(arguments.thumbnail.out,
                     PngOf(ScaledToSquare(picture, arguments.thumbnail.size)));
}

// The result is an error message, empty on success.
QString Run(const Arguments& arguments)
{
    if (!arguments.error.isEmpty())
        return arguments.error;
    if (arguments.command == Command::Help)
        return Print(kHelpText);
    if (arguments.command == Command::Version)
        return Print("lantern-tool " LANTERN_VERSION "\n");

    if (arguments.command == Command::Thumbnail)
        return WriteThumbnail(arguments);

    Track track;
    std::vector<SkippedMember> skipped;
    QString error = LoadTrack(arguments.track, track, skipped);
    if (!error.isEmpty())
        return error;
    if (arguments.command == Command::Info)
        return Print(TrackInfo(track, skipped));
    return WriteFrames(track, arguments.frame);
}

// A file's name may hold line ends and worse.
void PrintError(QString message)
{
    for (QChar& letter : message) {
        if (letter.category() == QChar::Other_Control)
            letter = u'?';
    }
    std::fprintf(stderr, "lantern-tool: %s\n", NativeFromText(message).constData());
}

} // namespace
} // namespace lantern::tool

int main(int argc, char** argv)
{
    using namespace lantern::tool;
    QStringList commandLine;
    for (int i = 0; i < argc; ++i)
        commandLine += lantern::TextFromNative(argv[i]);
    const QString error = Run(ParseArguments(commandLine));
    if (error.isEmpty())
        return 0;
    PrintError(error);
    return 1;
}
