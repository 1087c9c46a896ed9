// SPDX-License-Identifier: GPL-3.0-or-later
#include "VisiblePicture.h"

#include "RunToPacket.h"

#include <QBuffer>

namespace lantern::tool {
namespace {

class ImageSink final : public ClipSink {
public:
    void SetImage(const ClipImage& clip) override
    {
        const QImage view(reinterpret_cast<const uchar*>(clip.pixels.data()), clip.width,
                          clip.height, QImage::Format_RGB32);
        image = view.convertToFormat(QImage::Format_RGB888);
    }

    QImage image;
};

// Takes one picture.
class ImageSurface final : public ScaleSurface {
public:
    ImageSurface(QSize size, PictureLook look) : image(size, QImage::Format_RGB32), m_look(look) {}

    SurfaceImage Image() override
    {
        return {.pixels = reinterpret_cast<std::uint32_t*>(image.bits()),
                .width = image.width(),
                .height = image.height(),
                .stride = static_cast<int>(image.bytesPerLine() / 4),
                .look = m_look};
    }
    void Changed(const DeviceRect&) override {}

    QImage image;

private:
    PictureLook m_look;
};

} // namespace

OfflinePicture::OfflinePicture()
{
    m_memory.SetupGraphics(true);
    m_interpreter.ClearPicture();
}

void OfflinePicture::RunTo(const OneBasedArray<CdgPacket>& packets, PacketIndex packet)
{
    RunToPacket(m_memory, m_interpreter, packets, packet);
    // Going to the start leaves the picture as it was; the player clears it then.
    if (packet == 0)
        m_interpreter.ClearPicture();
}

QImage VisiblePicture(PictureMemory& picture)
{
    ImageSink sink;
    picture.Buffers().FGvb2clip(picture.ViewLeft, picture.ViewLeft + kVisibleWidth - 1,
                                picture.ViewTop, picture.ViewTop + kVisibleHeight - 1, sink);
    return sink.image;
}

void ShowScaled(PictureMemory& picture, QSize size)
{
    picture.Buffers().FGvbscale(picture.ViewLeft, picture.ViewLeft + kVisibleWidth - 1,
                                picture.ViewTop, picture.ViewTop + kVisibleHeight - 1, 0,
                                size.width(), 0, size.height());
}

QImage ScaledPicture(PictureMemory& picture, QSize size, PictureLook look)
{
    ImageSurface surface(size, look);
    picture.Buffers().FGsetdc(&surface);
    ShowScaled(picture, size);
    picture.Buffers().FGsetdc(nullptr);
    return surface.image.convertToFormat(QImage::Format_RGB888);
}

QByteArray PngOf(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    // The library's usual effort takes half as long again for hardly smaller files.
    constexpr int kLittleEffort = 80;
    image.save(&buffer, "PNG", kLittleEffort);
    return png;
}

} // namespace lantern::tool
