// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VirtualBuffers.h"

namespace lantern {

// Puts a picture on the system's clipboard.
class ImageClipboard : public ClipSink {
public:
    void SetImage(const ClipImage& image) override;
};

} // namespace lantern
