// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RetainedImage.h"
#include "VirtualBuffers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace lantern {

// The lyric picture's own sizes, shown at twice its size.
class View : public testing::Test {
protected:
    View()
    {
        buffers.FGvbinit();
        spare = buffers.FGvballoc(300, 216);
        picture = buffers.FGvballoc(300, 216);
        buffers.FGvbopen(picture);
        buffers.FGsetdc(&image);
        for (std::size_t byte = 0; byte < colours.size(); ++byte)
            colours[byte] = static_cast<std::uint8_t>(byte * 5);
        buffers.FGsetdacs(0, 16, colours);
    }

    void Show() { buffers.FGvbscale(6, 293, 12, 203, 0, 576, 0, 384); }
    const std::vector<DeviceRect>& ChangesOfShow()
    {
        image.changes.clear();
        Show();
        return image.changes;
    }
    void SetColour(std::size_t entry, std::uint8_t red)
    {
        colours[entry * 3] = red;
        buffers.FGsetdacs(0, 16, colours);
    }

    static constexpr DeviceRect kAll{0, 0, 576, 384};
    VirtualBuffers buffers;
    int picture = 0;
    int spare = 0;
    std::array<std::uint8_t, 48> colours{};
    RetainedImage image{576, 384};
};

} // namespace lantern
