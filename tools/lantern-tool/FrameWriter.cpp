// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameWriter.h"

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

QString WriteFrame(PictureMemory& picture, const QString& path, const FrameRequest& request)
{
    if (request.size)
        return WriteFile(path, PngOf(ScaledPicture(picture, *request.size, request.look)));
    if (!request.raw)
        return WriteFile(path, PngOf(VisiblePicture(picture)));
    QString error = WriteFile(path, IndexPgm(picture));
    if (!error.isEmpty())
        return error;
    return WriteFile(path + QStringLiteral(".colours"), ColourLines(picture.ColourTable));
}

} // namespace

QString WriteFrames(const Track& track, const FrameRequest& request)
{
    OfflinePicture offline;
    for (const PacketIndex packet : request.packets) {
        offline.RunTo(track.PacketStore, packet);
        QString path = request.out;
        path.replace(QStringLiteral("%d"), QString::number(packet));
        QString error = WriteFrame(offline.Memory(), path, request);
        if (!error.isEmpty())
            return error;
    }
    return {};
}

} // namespace lantern::tool
