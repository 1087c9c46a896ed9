// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Picture.h"

namespace lantern {

// The product's picture on the About panel: 96 by 128 pixels of the layout, opaque on black.
PictureReference AboutPicture();

// The picture at the side of the context menu: 16 by 118 pixels of the layout, opaque on black.
PictureReference MenuSidePicture();

// The pointer of 32 by 32 pixels that shows nothing, for where the pointer must disappear.
PictureReference BlankPointer();

} // namespace lantern
