// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

// A descriptor of a new file without a name, which is gone when it is closed; -1 if there is no
// place for one. Folders whose files lie in memory come last.
int OpenTemporaryFile();
// Returns at once, also where the system takes its time to free a file of this size.
void CloseTemporaryFile(int descriptor, std::int64_t size);
// Whether the file's disk has room to spare.
bool HasRoom(int descriptor);

} // namespace lantern
