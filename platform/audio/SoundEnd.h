// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ByteSource.h"

#include <string_view>

namespace lantern {

// Whether a sound of that container, by FFmpeg's name of it, tells that there ought to be more of
// it than there is: an mp3 by the size that its encoder noted, an Ogg stream by a last page that
// says it is not the last. False where nothing tells.
bool LacksItsEnd(const ByteSource& bytes, std::string_view container);

} // namespace lantern
