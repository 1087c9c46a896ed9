// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongStore.h"

#include <QString>

#include <memory>

namespace lantern {

// The records in an SQLite file. It is opened for each reading and each writing, so that it may be
// moved, deleted or put back at any time. Neither it nor its folder is made before there is
// something to be kept.
//
// A damaged file is put aside under the same name with ".damaged" behind it; the next
// writing begins a new one.
std::unique_ptr<SongStore> MakeSqliteSongStore(const QString& file);

} // namespace lantern
