// SPDX-License-Identifier: GPL-3.0-or-later
#include "MusepackHeader.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lantern {
namespace {

// A bounded reader: what lies beyond the end reads as failure and stays one.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : m_rest(bytes) {}

    void Skip(std::size_t count)
    {
        m_failed = m_failed || count > m_rest.size();
        if (!m_failed)
            m_rest = m_rest.subspan(count);
    }

    void Expect(std::string_view text)
    {
        const auto start = m_rest.first(std::min(m_rest.size(), text.size()));
        m_failed = m_failed || !std::ranges::equal(text, start, {}, [](char c) {
                       return static_cast<std::uint8_t>(c);
                   });
        Skip(text.size());
    }

    // Seven bits a byte, the highest first; the top bit tells that another byte follows.
    std::int64_t Number()
    {
        constexpr int kLongest = 8;
        std::int64_t value = 0;
        for (int i = 0; i < kLongest && !m_rest.empty(); ++i) {
            const std::uint8_t byte = m_rest.front();
            Skip(1);
            value = value << 7 | (byte & 0x7F);
            if ((byte & 0x80) == 0)
                return value;
        }
        m_failed = true;
        return 0;
    }

    bool Failed() const { return m_failed; }

private:
    std::span<const std::uint8_t> m_rest;
    bool m_failed = false;
};

} // namespace

std::optional<MusepackHeader> ParseMusepackHeader(std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t kChecksumSize = 4;
    constexpr std::size_t kVersionSize = 1;

    Reader reader(bytes);
    reader.Expect("MPCKSH");
    reader.Number(); // the size of the packet
    reader.Skip(kChecksumSize + kVersionSize);
    const std::int64_t frames = reader.Number();
    const std::int64_t silentFrames = reader.Number();
    if (reader.Failed() || frames <= silentFrames)
        return std::nullopt;
    return MusepackHeader{.frameCount = frames - silentFrames, .silentFrames = silentFrames};
}

} // namespace lantern
