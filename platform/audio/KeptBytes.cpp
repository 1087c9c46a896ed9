// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeptBytes.h"

#include "MappedMemory.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace lantern {
namespace {

constexpr std::int64_t kBlockSize = 65536;

class KeptBytes final : public ByteSource {
public:
    explicit KeptBytes(std::unique_ptr<ByteSource> bytes)
        : m_bytes(std::move(bytes)), m_size(m_bytes->Size()),
          m_memory(std::in_place, static_cast<std::size_t>(m_size)),
          m_isKept(static_cast<std::size_t>((m_size + kBlockSize - 1) / kBlockSize))
    {
    }

    bool IsUsable() const { return m_memory->Size() != 0; }
    std::unique_ptr<ByteSource> Source() { return std::move(m_bytes); }

    std::int64_t Size() const override { return m_size; }

    std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const override
    {
        std::size_t done = 0;
        while (done < out.size()) {
            const std::int64_t at = offset + static_cast<std::int64_t>(done);
            if (at < 0 || at >= m_size)
                break;
            const std::size_t got = ReadInBlock(at, out.subspan(done));
            if (got == 0)
                break;
            done += got;
        }
        return done;
    }

    void Release() override
    {
        m_bytes->Release();
        const std::scoped_lock lock(m_mutex);
        m_memory.reset();
    }

private:
    std::size_t ReadInBlock(std::int64_t at, std::span<std::uint8_t> out) const
    {
        const std::int64_t first = at - at % kBlockSize;
        const auto size = static_cast<std::size_t>(std::min(kBlockSize, m_size - first));
        const auto block = static_cast<std::size_t>(at / kBlockSize);
        const auto into = static_cast<std::size_t>(at - first);
        {
            const std::scoped_lock lock(m_mutex);
            if (!m_memory)
                return 0;
            if (m_isKept[block])
                return Copy({Data(first), size}, into, out);
        }
        // Nobody waits for the disk because another does.
        std::array<std::uint8_t, kBlockSize> read;
        const auto got = std::span(read).first(m_bytes->ReadAt(first, std::span(read).first(size)));
        const std::scoped_lock lock(m_mutex);
        if (m_memory && got.size() == size) {
            std::ranges::copy(got, Data(first));
            m_isKept[block] = true;
        }
        return m_memory ? Copy(got, into, out) : 0;
    }

    static std::size_t Copy(std::span<const std::uint8_t> block, std::size_t into,
                            std::span<std::uint8_t> out)
    {
        const auto there = block.subspan(std::min(into, block.size()));
        const auto part = there.first(std::min(there.size(), out.size()));
        std::ranges::copy(part, out.begin());
        return part.size();
    }

    std::uint8_t* Data(std::int64_t offset) const
    {
        return reinterpret_cast<std::uint8_t*>(m_memory->Data()) + offset;
    }

    std::unique_ptr<ByteSource> m_bytes;
    const std::int64_t m_size;
    mutable std::mutex m_mutex;           // guards what follows, while it is copied
    std::optional<MappedMemory> m_memory; // none once released
    mutable std::vector<bool> m_isKept;   // of each block
};

} // namespace

std::unique_ptr<ByteSource> KeepInMemory(std::unique_ptr<ByteSource> bytes)
{
    if (!bytes || bytes->Size() > kLargestKeptBytes)
        return bytes;
    auto kept = std::make_unique<KeptBytes>(std::move(bytes));
    return kept->IsUsable() ? std::move(kept) : kept->Source();
}

} // namespace lantern
