// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ByteSource.h"

#include <cstdint>
#include <memory>

namespace lantern {

// What is larger is read again whenever it is wanted.
inline constexpr std::int64_t kLargestKeptBytes = std::int64_t{10} << 20;

// The same bytes, kept in memory as they are read for the first time: what happens to the file
// later takes nothing away. Larger sources come back as they are.
std::unique_ptr<ByteSource> KeepInMemory(std::unique_ptr<ByteSource> bytes);

} // namespace lantern
