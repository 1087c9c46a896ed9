// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace lantern {

// Whether archives can be read on this machine, tried with a tiny one in memory.
bool ZipServiceWorks();
// Whether it reads these bytes as an archive that holds "karaoke" in a member "test.cdg".
bool ZipServiceReads(std::string_view bytes);

// The file name of the library behind the service.
QString ZipLibraryName();

// Loads the library from the path, for the whole process. Whether that helped shows at the next
// use of the service.
void LoadZipLibrary(const QString& path);

} // namespace lantern
