// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRing.h"

#include <algorithm>

namespace lantern {

void SoundRing::Reset(int capacityFrames)
{
    m_capacity = static_cast<std::uint64_t>(std::max(capacityFrames, 1));
    m_samples.assign(m_capacity * 2, 0.0F);
    m_written = 0;
    m_read = 0;
}

std::size_t SoundRing::IndexOf(std::uint64_t frame) const
{
    return static_cast<std::size_t>(frame % m_capacity) * 2;
}

int SoundRing::RoomFrames() const
{
    const std::uint64_t held = m_written.load(std::memory_order_relaxed) - m_read.load();
    return static_cast<int>(m_capacity - held);
}

void SoundRing::Write(std::span<const float> stereo)
{
    const std::uint64_t written = m_written.load(std::memory_order_relaxed);
    const auto first = std::min(stereo.size(), m_samples.size() - IndexOf(written));
    std::ranges::copy(stereo.first(first), m_samples.data() + IndexOf(written));
    std::ranges::copy(stereo.subspan(first), m_samples.data());
    m_written.store(written + stereo.size() / 2);
}

int SoundRing::Read(std::span<float> stereo)
{
    const std::uint64_t read = m_read.load(std::memory_order_relaxed);
    const auto held = static_cast<std::size_t>(m_written.load() - read) * 2;
    const std::span<float> target = stereo.first(std::min(stereo.size(), held));
    if (target.empty()) {
        return 0;
    }
    const auto first = std::min(target.size(), m_samples.size() - IndexOf(read));
    std::copy_n(m_samples.data() + IndexOf(read), first, target.data());
    std::copy_n(m_samples.data(), target.size() - first, target.data() + first);
    m_read.store(read + target.size() / 2);
    return static_cast<int>(target.size() / 2);
}

} // namespace lantern
