// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ByteSource.h"
#include "DecodedStream.h"
#include "WorkLimit.h"

#include <memory>

namespace lantern {

// A sound of which the first frames are decoded, and what decodes the rest.
struct OpenedSound {
    std::unique_ptr<ByteSource> bytes;
    std::unique_ptr<WorkLimit> limit;
    std::unique_ptr<DecodedStream> stream; // uses both
};

} // namespace lantern
