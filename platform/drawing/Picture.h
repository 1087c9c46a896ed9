// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <map>
#include <memory>

namespace lantern {

enum class PictureType { Bitmap, Icon };

// An image with a size in pixels of the layout, drawn crisp at any ratio of device pixels if it
// comes from vectors, and by repeating pixels if it comes from a bitmap.
class Picture {
public:
    static std::shared_ptr<const Picture> FromImage(const QImage& image,
                                                    PictureType type = PictureType::Bitmap);
    // Null if the bytes are no SVG.
    static std::shared_ptr<const Picture> FromSvg(const QByteArray& svg, QSize size,
                                                  PictureType type = PictureType::Bitmap);
    // From bytes that are known to be an SVG, as the program's own are: nothing is read of them
    // before the picture is first drawn, and most states of most buttons never are.
    static std::shared_ptr<const Picture> FromKnownSvg(const QByteArray& svg, QSize size,
                                                       PictureType type = PictureType::Bitmap);
    // From a file or a resource, by its contents. Null if it can't be read.
    static std::shared_ptr<const Picture> FromFile(const QString& path, QSize size = {},
                                                   PictureType type = PictureType::Bitmap);

    QSize Size() const { return m_size; }
    PictureType Type() const { return m_type; }
    // The picture at Size() times the ratio, its devicePixelRatio set. Kept once made.
    const QImage& ImageAt(qreal devicePixelRatio) const;

private:
    Picture() = default;

    QSize m_size;
    PictureType m_type = PictureType::Bitmap;
    QImage m_bitmap;
    QByteArray m_svg;
    mutable std::map<qreal, QImage> m_images;
};

// Held by reference: several controls show the same picture, and none outlives the others.
using PictureReference = std::shared_ptr<const Picture>;

} // namespace lantern
