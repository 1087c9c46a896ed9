// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

// What an archive says of its directory, which the library reads whole, whatever its size.
struct DirectoryClaims {
    std::uint64_t entries = 0;
    std::uint64_t bytes = 0;
};

// The most that any end record at the end of the file claims: a file may hold several, and only
// the library knows which of them it will believe. Zeros if there is none. Reads 64 KiB.
DirectoryClaims ReadDirectoryClaims(int descriptor, std::int64_t fileSize);

} // namespace lantern
