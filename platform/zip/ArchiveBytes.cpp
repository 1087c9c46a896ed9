// SPDX-License-Identifier: GPL-3.0-or-later
#include "ArchiveBytes.h"

#include <algorithm>
#include <limits>

namespace lantern {

std::vector<std::uint8_t> ArchiveBytes::Piece(std::uint64_t offset, std::size_t size) const
{
    std::vector<std::uint8_t> bytes(size);
    bytes.resize(ReadAt(offset, bytes));
    return bytes;
}

std::size_t FileBytes::ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const
{
    constexpr std::uint64_t kFarthest = std::numeric_limits<std::int64_t>::max();
    return offset > kFarthest ? 0 : m_file.ReadAt(static_cast<std::int64_t>(offset), bytes);
}

std::size_t MemoryBytes::ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const
{
    if (offset >= m_bytes.size())
        return 0;
    const std::string_view from = m_bytes.substr(static_cast<std::size_t>(offset));
    const std::size_t count = std::min(from.size(), bytes.size());
    std::copy_n(from.begin(), count, bytes.begin());
    return count;
}

} // namespace lantern
