// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoader.h"

namespace lantern {

// Not read yet: the track stays empty.
void MediaLoader::AddZipFile(const QString&)
{
}

} // namespace lantern
