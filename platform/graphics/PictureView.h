// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AreaScaler.h"
#include "ChangedCells.h"
#include "PixelBuffer.h"
#include "SmoothScaler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace lantern {

// What stands on the surface, and how to bring it up to date with the least drawing. It keeps a
// copy of the indexes and colours that it drew last, so that drawing operations need tell it no
// more than that something may have changed; it compares, and redraws what looks different.
class PictureView {
public:
    struct Request {
        PixelBounds source;
        PixelBounds destination;    // in units of the surface, the maximum bounds are edges
        std::uint64_t revision = 0; // the same as last time if nothing can have changed
    };
    void Show(const Request& request, const PixelBuffer& buffer, const ColourWords& colours,
              ScaleSurface& surface);
    void Forget(); // the next Show draws all

private:
    // Everything that decides where a pixel of the buffer lies on the surface, and whether the
    // surface still holds what was drawn on it.
    struct Layout {
        PixelBounds source;
        AxisGeometry horizontal;
        AxisGeometry vertical;
        const ScaleSurface* surface = nullptr;
        const std::uint32_t* pixels = nullptr;
        int stride = 0;
        std::uint64_t generation = 0;
        PictureLook look = PictureLook::Sharp;

        bool operator==(const Layout&) const = default;
    };
    static std::optional<Layout> MakeLayout(const Request& request, const SurfaceImage& image,
                                            const ScaleSurface& surface);
    void ReadAll(const PixelBuffer& buffer);
    void ReadAndCompare(const PixelBuffer& buffer, const ColourWords& colours);
    std::vector<ChangedCells::Block> Update(const Layout& layout, const PixelBuffer& buffer,
                                            const ColourWords& colours);
    PictureScaler& Scaler(PictureLook look);
    std::span<std::uint8_t> ShownRow(int y);

    std::optional<Layout> m_layout;
    std::uint64_t m_revision = 0;
    std::vector<std::uint8_t> m_shown; // the indexes of the source rectangle
    std::vector<std::uint8_t> m_row;
    ColourWords m_colours{};
    ChangedCells m_changed;
    AreaScaler m_sharp;
    std::unique_ptr<SmoothScaler> m_smooth; // made when it is first asked for
};

} // namespace lantern
