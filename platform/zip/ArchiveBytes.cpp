// SPDX-License-Identifier: GPL-3.0-or-later
#include "ArchiveBytes.h"

#include <algorithm>
#include <limits>
#include <unistd.h>

namespace lantern {

std::vector<std::uint8_t> ArchiveBytes::Piece(std::uint64_t offset, std::size_t size) const
{
    std::vector<std::uint8_t> bytes(size);
    bytes.resize(ReadAt(offset, bytes));
    return bytes;
}

std::size_t FileBytes::ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const
{
    std::size_t filled = 0;
    while (filled < bytes.size() && offset + filled <= std::numeric_limits<off_t>::max()) {
        const auto rest = bytes.subspan(filled);
        const ssize_t came = pread(m_file.Descriptor(), rest.data(), rest.size(),
                                   static_cast<off_t>(offset + filled));
        if (came <= 0)
            break;
        filled += static_cast<std::size_t>(came);
    }
    return filled;
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
