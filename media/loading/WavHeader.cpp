// SPDX-License-Identifier: GPL-3.0-or-later
#include "WavHeader.h"

#include <algorithm>
#include <string_view>

namespace lantern {
namespace {

// Writes fields one after the other, numbers in little-endian order.
class HeaderWriter {
public:
    void Name(std::string_view name)
    {
        for (const char letter : name)
            Byte(static_cast<std::uint8_t>(letter));
    }
    void Number(std::uint32_t value, int bytes)
    {
        for (int i = 0; i < bytes; ++i)
            Byte(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    const std::array<std::uint8_t, kWavHeaderSize>& Header() const { return m_header; }

private:
    void Byte(std::uint8_t value) { m_header.at(m_size++) = value; }

    std::array<std::uint8_t, kWavHeaderSize> m_header = {};
    std::size_t m_size = 0;
};

constexpr std::uint32_t kChunkHeadSize = 8; // a chunk's name and size, which its size leaves out
constexpr std::uint32_t kFormatSize = 18;
constexpr std::uint32_t kPcmTag = 1;
constexpr std::uint32_t kChannels = 2;
constexpr std::uint32_t kSampleBits = 16;

} // namespace

std::array<std::uint8_t, kWavHeaderSize> WavHeader(std::uint32_t audioBytes)
{
    HeaderWriter writer;
    writer.Name("RIFF");
    writer.Number(audioBytes + static_cast<std::uint32_t>(kWavHeaderSize) - kChunkHeadSize, 4);
    writer.Name("WAVE");
    writer.Name("fmt ");
    writer.Number(kFormatSize, 4);
    writer.Number(kPcmTag, 2);
    writer.Number(kChannels, 2);
    writer.Number(kDiscSampleRate, 4);
    writer.Number(kDiscBytesPerSecond, 4);
    writer.Number(kDiscFrameBytes, 2);
    writer.Number(kSampleBits, 2);
    writer.Number(0, 2);
    writer.Name("data");
    writer.Number(audioBytes, 4);
    return writer.Header();
}

} // namespace lantern
