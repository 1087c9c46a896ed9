// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoader.h"

namespace lantern {

// Not read yet: the track stays empty.
void MediaLoader::AddBINFile(const QString&)
{
}

} // namespace lantern
