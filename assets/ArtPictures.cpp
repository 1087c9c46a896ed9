// SPDX-License-Identifier: GPL-3.0-or-later
#include "ArtPictures.h"

namespace lantern {

PictureReference AboutPicture()
{
    return Picture::FromFile(QStringLiteral(":/art/pictures/about.svg"), {96, 128});
}

PictureReference MenuSidePicture()
{
    return Picture::FromFile(QStringLiteral(":/art/pictures/menu-side.svg"), {16, 118});
}

PictureReference BlankPointer()
{
    QImage nothing(32, 32, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return Picture::FromImage(nothing, PictureType::Icon);
}

} // namespace lantern
