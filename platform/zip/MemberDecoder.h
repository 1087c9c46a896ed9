// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ZipDirectory.h"

#include <memory>

namespace lantern {

// Unpacks one member of an archive, by the library that knows its method.
class MemberDecoder {
public:
    virtual ~MemberDecoder() = default;

    // How many of the next bytes came: 0 at the end, negative on a failure.
    virtual std::int64_t Read(std::span<std::uint8_t> bytes) = 0;
    // In the words of the library, after a failure; may be empty.
    virtual QString FailureText() const = 0;
};

// Borrows the archive. The member's packed bytes begin at the offset. Nothing if no library knows
// the method.
std::unique_ptr<MemberDecoder> MakeMemberDecoder(const ArchiveBytes& archive, const ZipEntry& entry,
                                                 std::uint64_t dataOffset);

} // namespace lantern
