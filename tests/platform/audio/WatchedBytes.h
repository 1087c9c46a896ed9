// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ByteSource.h"
#include "TestSounds.h"
#include "WorkLimit.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

namespace lantern {

// Bytes of which it is known how many have been read. Work on them can be halted after so many, and
// each read may take its time, as on a slow disk.
class WatchedBytes final : public ByteSource {
public:
    explicit WatchedBytes(Bytes bytes) : m_bytes(std::move(bytes)) {}

    void StopAfter(WorkLimit& limit, std::size_t bytes)
    {
        m_limit = &limit;
        m_stopAfter = bytes;
    }
    void TakeForEachRead(std::chrono::milliseconds time) { m_timeOfRead = time; }
    std::size_t BytesRead() const { return m_bytesRead; }

    std::int64_t Size() const override { return static_cast<std::int64_t>(m_bytes.size()); }

    std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const override
    {
        std::this_thread::sleep_for(m_timeOfRead);
        const auto first = std::min(static_cast<std::size_t>(offset), m_bytes.size());
        const auto part = std::span(m_bytes).subspan(first);
        const std::size_t size = std::min(part.size(), out.size());
        std::copy_n(part.begin(), size, out.begin());
        m_bytesRead += size;
        if (m_limit != nullptr && m_bytesRead >= m_stopAfter)
            m_limit->Stop();
        return size;
    }

private:
    Bytes m_bytes;
    mutable std::atomic<std::size_t> m_bytesRead = 0;
    WorkLimit* m_limit = nullptr;
    std::size_t m_stopAfter = 0;
    std::chrono::milliseconds m_timeOfRead{0};
};

} // namespace lantern
