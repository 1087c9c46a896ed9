// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameWriter.h"

#include "OutputName.h"
#include "VisiblePicture.h"

namespace lantern::tool {
namespace {

QByteArray IndexPgm(PictureMemory& picture)
{
    QByteArray pgm = "P5\n" + QByteArray::number(kPictureWidth) + ' ' +
                     QByteArray::number(kPictureHeight) + '\n' +
                     QByteArray::number(kColourCount - 1) + '\n';
    for (const std::uint8_t index : picture.Buffers().Pixels(picture.PictureBuffer))
        pgm += static_cast<char>(index);
    return pgm;
}

QByteArray ColourLines(const ColourBytes& colours)
{
    QByteArray lines;
    for (std::size_t entry = 0; entry < kColourCount; ++entry) {
        const char* rgb = reinterpret_cast<const char*>(colours.data()) + 3 * entry;
        lines += '#' + QByteArray::fromRawData(rgb, 3).toHex() + '\n';
    }
    return lines;
}

QByteArray FrameBytes(PictureMemory& picture, const FrameRequest& request)
{
    if (request.raw)
        return IndexPgm(picture);
    return PngOf(request.size ? ScaledPicture(picture, *request.size, request.look)
                              : VisiblePicture(picture));
}

QString WriteFrame(PictureMemory& picture, const QString& path, const FrameRequest& request,
                   IfExists ifExists)
{
    QString error = WriteOutput(path, FrameBytes(picture, request), ifExists);
    if (!error.isEmpty() || !request.raw)
        return error;
    return WriteOutput(path + QStringLiteral(".colours"), ColourLines(picture.ColourTable),
                       ifExists);
}

} // namespace

IfExists PictureIfExists(const WantedTrack& wanted, bool force)
{
    return force || !wanted.isOneOfMany ? IfExists::Replace : IfExists::Keep;
}

QString WriteFrames(const Track& track, const WantedTrack& wanted, const FrameRequest& request,
                    bool force)
{
    const QString number = request.packets.size() > 1 ? QStringLiteral(" %d") : QString();
    const OutputName name(request.out, wanted,
                          number + (request.raw ? QStringLiteral(".pgm") : QStringLiteral(".png")));
    QString error = name.MakeFolder();
    OfflinePicture offline;
    for (std::size_t i = 0; i < request.packets.size() && error.isEmpty(); ++i) {
        const PacketIndex packet = request.packets[i];
        const QString path = name.Path(QString::number(packet));
        error = ClaimOutput(path, wanted);
        if (!error.isEmpty())
            break;
        offline.RunTo(track.PacketStore, packet);
        error = WriteFrame(offline.Memory(), path, request, PictureIfExists(wanted, force));
    }
    return error;
}

} // namespace lantern::tool
