// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace lantern {

// A descriptor of a new file without a name, which is gone when it is closed; -1 if there is no
// place for one. Folders whose files lie in memory come last.
int OpenTemporaryFile();
// Returns at once, also where the system takes its time to free a large file.
void CloseTemporaryFile(int descriptor);

// Both return how many bytes it was: fewer than asked at the end or on a failure. What is written
// as zeros takes no room on the disk.
std::size_t WriteTemporaryFile(int descriptor, std::size_t offset,
                               std::span<const std::byte> bytes);
std::size_t ReadTemporaryFile(int descriptor, std::size_t offset, std::span<std::byte> out);

// Whether more than so much is free on the file's disk.
bool HasRoom(int descriptor, std::uint64_t bytes);

} // namespace lantern
