// SPDX-License-Identifier: GPL-3.0-or-later
#include "Picture.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace lantern {
namespace {

QSize DeviceSize(QSize size, qreal ratio)
{
    return {static_cast<int>(std::lround(size.width() * ratio)),
            static_cast<int>(std::lround(size.height() * ratio))};
}

QImage Render(const QByteArray& svg, QSize deviceSize)
{
    QImage image(deviceSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(svg);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(deviceSize)));
    return image;
}

} // namespace

PictureReference Picture::FromImage(const QImage& image, PictureType type)
{
    if (image.isNull())
        return nullptr;
    const std::shared_ptr<Picture> picture(new Picture);
    picture->m_size = image.size();
    picture->m_type = type;
    picture->m_bitmap = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    picture->m_bitmap.setDevicePixelRatio(1.0);
    return picture;
}

PictureReference Picture::FromSvg(const QByteArray& svg, QSize size, PictureType type)
{
    const QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return nullptr;
    return FromKnownSvg(svg, size.isEmpty() ? renderer.defaultSize() : size, type);
}

PictureReference Picture::FromKnownSvg(const QByteArray& svg, QSize size, PictureType type)
{
    const std::shared_ptr<Picture> picture(new Picture);
    picture->m_size = size;
    picture->m_type = type;
    picture->m_svg = svg;
    return picture;
}

PictureReference Picture::FromFile(const QString& path, QSize size, PictureType type)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    const QByteArray bytes = file.readAll();
    if (path.endsWith(QStringLiteral(".svg")))
        return FromSvg(bytes, size, type);
    const QImage image = QImage::fromData(bytes);
    return image.isNull() ? FromSvg(bytes, size, type) : FromImage(image, type);
}

const QImage& Picture::ImageAt(qreal devicePixelRatio) const
{
    const auto kept = m_images.find(devicePixelRatio);
    if (kept != m_images.end())
        return kept->second;
    const QSize deviceSize = DeviceSize(m_size, devicePixelRatio);
    QImage image = m_svg.isEmpty()
                       ? m_bitmap.scaled(deviceSize, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                       : Render(m_svg, deviceSize);
    image.setDevicePixelRatio(devicePixelRatio);
    return m_images.emplace(devicePixelRatio, std::move(image)).first->second;
}

} // namespace lantern
