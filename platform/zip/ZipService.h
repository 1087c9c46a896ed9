// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// Whether archives can be read on this machine: makes a tiny one in memory and reads it back.
bool ZipServiceWorks();

// The file name of the library behind the service.
QString ZipLibraryName();

// Loads the library from the path, for the whole process. Whether that helped shows at the next
// use of the service.
void LoadZipLibrary(const QString& path);

} // namespace lantern
