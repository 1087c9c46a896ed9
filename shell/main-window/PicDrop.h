// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DropData.h"

#include <QString>

#include <functional>

namespace lantern {

class PictureSurface;

// Opens what is dropped on the picture: the first file that the player can use. No other surface
// of the player takes a drop.
class PicDrop {
public:
    using OpenMedia = std::function<void(const QString& path)>;

    // The surface is borrowed; from now on it asks this object, until it goes.
    PicDrop(PictureSurface& pic, OpenMedia openMedia);
    PicDrop(const PicDrop&) = delete;
    PicDrop& operator=(const PicDrop&) = delete;

    DropEffect DragOver(DropData& data, DragState state);

    // Whether there was a track to open. It is opened from the event loop: the program that it was
    // dragged from waits for this answer, and opening may take long.
    bool Drop(DropData& data);

private:
    PictureSurface& m_pic;
    OpenMedia m_openMedia;
    DropEffect m_effect = DropEffect::None; // of the drag that is over the picture
};

} // namespace lantern
