// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameWriter.h"

#include "PacketInterpreter.h"
#include "PathText.h"
#include "PictureMemory.h"
#include "RunToPacket.h"

#include <QBuffer>
#include <QImage>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace lantern::tool {
namespace {

// The pictures go to files, and only when they are complete.
class NoPainter final : public Painter {
    void PaintDisplay() override {}
};

class PngSink final : public ClipSink {
public:
    void SetImage(const ClipImage& image) override
    {
        const QImage view(reinterpret_cast<const uchar*>(image.pixels.data()), image.width,
                          image.height, QImage::Format_RGB32);
        QBuffer buffer(&png);
        view.convertToFormat(QImage::Format_RGB888).save(&buffer, "PNG");
    }

    QByteArray png;
};

QByteArray VisiblePng(PictureMemory& picture)
{
    PngSink sink;
    picture.Buffers().FGvb2clip(picture.ViewLeft, picture.ViewLeft + kVisibleWidth - 1,
                                picture.ViewTop, picture.ViewTop + kVisibleHeight - 1, sink);
    return sink.png;
}

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

QString WriteFile(const QString& path, const QByteArray& bytes)
{
    FILE* const file = std::fopen(NativeFromText(path).constData(), "wbe");
    bool written = file != nullptr;
    if (file != nullptr) {
        const auto size = static_cast<std::size_t>(bytes.size());
        written = std::fwrite(bytes.constData(), 1, size, file) == size;
        // What the system could not store may be told only here.
        written = std::fclose(file) == 0 && written;
    }
    if (written)
        return {};
    return QStringLiteral("Cannot write %1: %2").arg(path, QString::fromLocal8Bit(strerror(errno)));
}

QString WriteFrame(PictureMemory& picture, const QString& path, bool raw)
{
    if (!raw)
        return WriteFile(path, VisiblePng(picture));
    QString error = WriteFile(path, IndexPgm(picture));
    if (!error.isEmpty())
        return error;
    return WriteFile(path + QStringLiteral(".colours"), ColourLines(picture.ColourTable));
}

} // namespace

QString WriteFrames(const Track& track, const FrameRequest& request)
{
    VirtualBuffers buffers;
    PictureMemory picture(buffers);
    NoPainter painter;
    PacketInterpreter interpreter(picture, painter);
    picture.SetupGraphics(true);
    interpreter.ClearPicture();
    for (const PacketIndex packet : request.packets) {
        RunToPacket(picture, interpreter, track.PacketStore, packet);
        // Going to the start leaves the picture as it was; the player clears it then.
        if (packet == 0)
            interpreter.ClearPicture();
        QString path = request.out;
        path.replace(QStringLiteral("%d"), QString::number(packet));
        QString error = WriteFrame(picture, path, request.raw);
        if (!error.isEmpty())
            return error;
    }
    return {};
}

} // namespace lantern::tool
