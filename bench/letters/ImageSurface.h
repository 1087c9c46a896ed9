// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VirtualBuffers.h"

#include <QImage>

#include <cstdint>

namespace lantern {

// A picture is shown on it in one of the looks, as often as it is lost.
class ImageSurface final : public ScaleSurface {
public:
    ImageSurface(QSize size, PictureLook look) : m_image(size, QImage::Format_RGB32), m_look(look)
    {
    }

    SurfaceImage Image() override
    {
        return {.pixels = reinterpret_cast<std::uint32_t*>(m_image.bits()),
                .width = m_image.width(),
                .height = m_image.height(),
                .stride = static_cast<int>(m_image.bytesPerLine() / 4),
                .generation = m_generation,
                .look = m_look};
    }
    void Changed(const DeviceRect& rect) override { m_told += rect.width; }

    void Lose() { ++m_generation; }
    QImage& Retained() { return m_image; }

private:
    QImage m_image;
    PictureLook m_look;
    std::uint64_t m_generation = 1;
    std::int64_t m_told = 0;
};

} // namespace lantern
