// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "NativeFile.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace lantern {

// The bytes of an archive, wherever they lie. One thread at a time.
class ArchiveBytes {
public:
    virtual ~ArchiveBytes() = default;

    virtual std::uint64_t Size() const = 0;
    // Fills the bytes with those from the offset on, and gives how many came: fewer where the
    // archive ends or can't be read.
    virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const = 0;

    // As many of these bytes as there are.
    std::vector<std::uint8_t> Piece(std::uint64_t offset, std::size_t size) const;
};

class FileBytes final : public ArchiveBytes {
public:
    explicit FileBytes(const NativeFile& file) : m_file(file) {} // borrowed

    std::uint64_t Size() const override { return static_cast<std::uint64_t>(m_file.Size()); }
    std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;

private:
    const NativeFile& m_file;
};

class MemoryBytes final : public ArchiveBytes {
public:
    explicit MemoryBytes(std::string_view bytes) : m_bytes(bytes) {} // borrowed

    std::uint64_t Size() const override { return m_bytes.size(); }
    std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;

private:
    std::string_view m_bytes;
};

} // namespace lantern
