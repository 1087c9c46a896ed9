// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// Brings the picture to the screen. The interpreter and the clock decide when; how is not their
// business.
class Painter {
public:
    virtual ~Painter() = default;
    // Has the picture shown and clears PictureMemory's PictureDirty.
    virtual void PaintDisplay() = 0;
};

} // namespace lantern
