// SPDX-License-Identifier: GPL-3.0-or-later
#include "ImageClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

namespace lantern {

void ImageClipboard::SetImage(const ClipImage& image)
{
    const QImage borrowed(reinterpret_cast<const uchar*>(image.pixels.data()), image.width,
                          image.height, qsizetype{image.width} * 4, QImage::Format_RGB32);
    // A deep copy: the pixels are only lent for the call.
    QGuiApplication::clipboard()->setImage(borrowed.copy());
}

} // namespace lantern
