// SPDX-License-Identifier: GPL-3.0-or-later
#include "RateChanger.h"

#include <algorithm>
#include <array>

namespace lantern {

RateChanger::RateChanger(int fromRate, int toRate)
{
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO; // which the library only reads
    SwrContext* converter = nullptr;
    swr_alloc_set_opts2(&converter, &stereo, AV_SAMPLE_FMT_FLTP, toRate, &stereo,
                        AV_SAMPLE_FMT_FLTP, fromRate, 0, nullptr);
    m_converter = Made(converter);
    Reset();
}

void RateChanger::Reset()
{
    // Between rates that are known to be rates, only memory can be wanting.
    if (swr_init(m_converter.get()) < 0)
        throw std::bad_alloc();
}

RateChanger::Sides RateChanger::Convert(std::span<const float> left, std::span<const float> right)
{
    const int frames = static_cast<int>(left.size());
    const int room = std::max(0, swr_get_out_samples(m_converter.get(), frames));
    m_left.resize(std::max(m_left.size(), static_cast<std::size_t>(room)));
    m_right.resize(m_left.size());
    std::array out = {reinterpret_cast<std::uint8_t*>(m_left.data()),
                      reinterpret_cast<std::uint8_t*>(m_right.data())};
    std::array in = {reinterpret_cast<const std::uint8_t*>(left.data()),
                     reinterpret_cast<const std::uint8_t*>(right.data())};
    const int converted = swr_convert(m_converter.get(), out.data(), room, in.data(), frames);
    const auto count = static_cast<std::size_t>(std::max(0, converted));
    return {std::span(m_left).first(count), std::span(m_right).first(count)};
}

} // namespace lantern
