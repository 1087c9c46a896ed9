// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRing.h"

#include <algorithm>
#include <bit>

namespace lantern {

void SoundRing::Reset(int depthFrames)
{
    m_depth = static_cast<std::uint32_t>(std::max(depthFrames, 1));
    m_samples.assign(std::size_t{std::bit_ceil(m_depth)} * 2, 0.0F);
    m_ends = Ends{};
    m_released = 0;
}

std::size_t SoundRing::IndexOf(std::uint32_t frame) const
{
    return (std::size_t{frame} * 2) & (m_samples.size() - 1);
}

int SoundRing::RoomFrames() const
{
    return static_cast<int>(m_depth - (m_ends.load().written - m_released.load()));
}

int SoundRing::HeldFrames() const
{
    const Ends ends = m_ends;
    return static_cast<int>(ends.written - ends.read);
}

void SoundRing::Write(std::span<const float> stereo)
{
    Ends ends = m_ends;
    const std::size_t index = IndexOf(ends.written);
    const std::size_t first = std::min(stereo.size(), m_samples.size() - index);
    std::ranges::copy(stereo.first(first), m_samples.data() + index);
    std::ranges::copy(stereo.subspan(first), m_samples.data());
    const auto frames = static_cast<std::uint32_t>(stereo.size() / 2);
    while (!m_ends.compare_exchange_weak(ends, {ends.read, ends.written + frames})) {
    }
}

int SoundRing::TakeBack(int keptFrames, std::span<float> first)
{
    const auto kept = static_cast<std::uint32_t>(std::max(keptFrames, 0));
    Ends ends = m_ends;
    do {
        if (ends.written - ends.read <= kept)
            return 0;
    } while (!m_ends.compare_exchange_weak(ends, {ends.read, ends.read + kept}));
    const std::uint32_t taken = ends.written - ends.read - kept;
    CopyOut(ends.read + kept, first.first(std::min(first.size(), std::size_t{taken} * 2)));
    return static_cast<int>(taken);
}

int SoundRing::Read(std::span<float> stereo)
{
    Ends ends = m_ends;
    std::uint32_t frames = 0;
    do {
        const auto asked = static_cast<std::uint32_t>(stereo.size() / 2);
        frames = std::min(asked, ends.written - ends.read);
    } while (!m_ends.compare_exchange_weak(ends, {ends.read + frames, ends.written}));
    CopyOut(ends.read, stereo.first(std::size_t{frames} * 2));
    m_released = ends.read + frames;
    return static_cast<int>(frames);
}

void SoundRing::CopyOut(std::uint32_t frame, std::span<float> stereo) const
{
    const std::size_t index = IndexOf(frame);
    const std::size_t first = std::min(stereo.size(), m_samples.size() - index);
    std::copy_n(m_samples.data() + index, first, stereo.data());
    std::copy_n(m_samples.data(), stereo.size() - first, stereo.data() + first);
}

} // namespace lantern
