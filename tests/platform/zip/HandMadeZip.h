// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lantern::test {

// A member as an archive tells of it, true or not. What isn't given is filled in truthfully.
struct HandMadeMember {
    std::string name;
    std::string contents;
    bool isDeflated = false;
    std::optional<std::uint16_t> method = std::nullopt; // told, whatever is done
    std::optional<std::uint32_t> size = std::nullopt;
    std::optional<std::uint32_t> storedSize = std::nullopt;
    std::optional<std::uint32_t> checksum = std::nullopt;
    std::optional<std::uint32_t> offset = std::nullopt; // of the member's own header
    std::uint16_t flags = 0;
    bool isMadeByUnix = true;
    std::uint32_t unixMode = 0;
};

// The archive's bytes. Its directory names the members in the order given here; the members
// themselves stand the other way round.
std::string HandMadeZip(const std::vector<HandMadeMember>& members);

} // namespace lantern::test
