// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ZipHandler.h"

#include <cstdint>
#include <memory>

namespace lantern {

// A member that says or turns out to be larger counts as unreadable.
inline constexpr std::int64_t kLargestZipMember = std::int64_t{1} << 30;

// Unpacks to memory only; a member for a folder is skipped.
std::unique_ptr<ZipHandler> MakeZipHandler(std::int64_t largestMember = kLargestZipMember);

} // namespace lantern
