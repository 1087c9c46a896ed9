// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

// The most bytes that any end record at the end of the file claims for the archive's directory:
// a file may hold several, and only the library knows which of them it will believe. It reads the
// directory whole, whatever its size; more entries than fit in it, it refuses. 0 if there is no
// record. Reads 64 KiB.
std::uint64_t ClaimedDirectoryBytes(int descriptor, std::int64_t fileSize);

} // namespace lantern
