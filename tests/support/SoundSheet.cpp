// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundSheet.h"

#include "Process.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>

namespace lantern::test {
namespace {

// Short enough to be a sharp onset, long enough not to click by itself.
constexpr double kFadeSeconds = 0.001;

void Append(std::string& bytes, std::uint32_t value, int byteCount)
{
    for (int i = 0; i < byteCount; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

std::string WavHeader(std::uint32_t dataSize, std::uint32_t rate)
{
    std::string header = "RIFF";
    Append(header, 36 + dataSize, 4);
    header += "WAVEfmt ";
    Append(header, 16, 4);
    Append(header, 1, 2); // integer samples
    Append(header, 2, 2); // channels
    Append(header, rate, 4);
    Append(header, rate * 4, 4);
    Append(header, 4, 2);
    Append(header, 16, 2);
    header += "data";
    Append(header, dataSize, 4);
    return header;
}

} // namespace

SoundSheet::SoundSheet(double seconds)
    : m_stereo(2 * static_cast<std::size_t>(std::lround(seconds * kRate)), 0.0F)
{
}

void SoundSheet::Add(const Tone& tone)
{
    const auto first = static_cast<std::size_t>(std::lround(tone.start * kRate));
    const auto count = static_cast<std::size_t>(std::lround(tone.length * kRate));
    for (std::size_t i = 0; i < count && 2 * (first + i) + 1 < m_stereo.size(); ++i) {
        const double seconds = static_cast<double>(i) / kRate;
        const double fade =
            std::clamp(std::min(seconds, tone.length - seconds) / kFadeSeconds, 0.0, 1.0);
        const double value = fade * std::sin(2.0 * std::numbers::pi * tone.frequency * seconds);
        m_stereo[2 * (first + i)] += static_cast<float>(tone.left * value);
        m_stereo[2 * (first + i) + 1] += static_cast<float>(tone.right * value);
    }
}

void SoundSheet::WriteWav(const std::filesystem::path& path) const
{
    const auto dataSize = static_cast<std::uint32_t>(m_stereo.size() * 2);
    std::string bytes = WavHeader(dataSize, kRate);
    bytes.reserve(bytes.size() + dataSize);
    for (const float sample : m_stereo) {
        const long value = std::lround(std::clamp(sample, -1.0F, 1.0F) * 32767.0F);
        Append(bytes, static_cast<std::uint32_t>(value), 2);
    }
    WriteFile(path, bytes);
}

void SoundSheet::WriteMp3(const std::filesystem::path& path) const
{
    const ScratchFolder folder;
    WriteWav(folder / "sound.wav");
    OutputOf({.arguments = {"lame", "--quiet", "-b", "192", (folder / "sound.wav").string(),
                            path.string()}},
             120s);
}

} // namespace lantern::test
