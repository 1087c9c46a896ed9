// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureView.h"

#include <algorithm>

namespace lantern {

namespace {

// Far above any screen's; it keeps edges within the whole numbers that a double holds exactly.
constexpr double kMaxDevicePixelRatio = 64.0;

bool IsUsable(const SurfaceImage& image)
{
    return image.pixels && image.width > 0 && image.height > 0 && image.stride >= image.width &&
           image.devicePixelRatio > 0.0 && image.devicePixelRatio <= kMaxDevicePixelRatio;
}

bool IsEmpty(const AxisGeometry& geometry)
{
    return geometry.clipBegin >= geometry.clipEnd;
}

} // namespace

std::optional<PictureView::Layout> PictureView::MakeLayout(const Request& request,
                                                           const SurfaceImage& image,
                                                           const ScaleSurface& surface)
{
    const PixelBounds& source = request.source;
    const PixelBounds& to = request.destination;
    if (!IsUsable(image) || !IsHoldable(source.Width(), source.Height()))
        return std::nullopt;
    Layout layout;
    layout.source = source;
    layout.horizontal = MakeAxisGeometry(static_cast<int>(source.Width()), to.minX, to.maxX,
                                         image.devicePixelRatio, image.width);
    layout.vertical = MakeAxisGeometry(static_cast<int>(source.Height()), to.minY, to.maxY,
                                       image.devicePixelRatio, image.height);
    if (IsEmpty(layout.horizontal) || IsEmpty(layout.vertical))
        return std::nullopt;
    layout.surface = &surface;
    layout.pixels = image.pixels;
    layout.stride = image.stride;
    layout.generation = image.generation;
    if (SmoothScaler::Suits(layout.horizontal, layout.vertical))
        layout.look = image.look;
    return layout;
}

void PictureView::Show(const Request& request, const PixelBuffer& buffer,
                       const ColourWords& colours, ScaleSurface& surface)
{
    const SurfaceImage image = surface.Image();
    const std::optional<Layout> layout = MakeLayout(request, image, surface);
    if (!layout || (layout == m_layout && request.revision == m_revision))
        return;

    std::vector<DeviceRect> rects;
    PictureScaler& scaler = Scaler(layout->look);
    for (const ChangedCells::Block& block : Update(*layout, buffer, colours)) {
        const DeviceRect rect = scaler.Reach(block.columns, block.rows);
        if (rect.width > 0 && rect.height > 0)
            rects.push_back(rect);
    }
    m_revision = request.revision;
    m_colours = colours;
    for (const DeviceRect& rect : rects)
        scaler.Draw({m_shown, m_layout->horizontal.sourceCount}, m_colours, image, rect);
    // Last, since the surface may come back with another request, or take its image away.
    for (const DeviceRect& rect : rects)
        surface.Changed(rect);
}

std::vector<ChangedCells::Block>
PictureView::Update(const Layout& layout, const PixelBuffer& buffer, const ColourWords& colours)
{
    const int width = layout.horizontal.sourceCount;
    const int height = layout.vertical.sourceCount;
    if (layout == m_layout) {
        m_changed.Reset(width, height);
        ReadAndCompare(buffer, colours);
        return m_changed.Blocks();
    }
    // Known again only once all that it needs is there.
    m_layout.reset();
    Scaler(layout.look).SetGeometry(layout.horizontal, layout.vertical);
    m_row.resize(static_cast<std::size_t>(width));
    m_shown.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    m_layout = layout;
    ReadAll(buffer);
    return {{{0, width}, {0, height}}};
}

void PictureView::Forget()
{
    m_layout.reset();
}

std::span<std::uint8_t> PictureView::ShownRow(int y)
{
    const auto width = static_cast<std::size_t>(m_layout->horizontal.sourceCount);
    return std::span(m_shown).subspan(static_cast<std::size_t>(y) * width, width);
}

void PictureView::ReadAll(const PixelBuffer& buffer)
{
    const PixelBounds& source = m_layout->source;
    for (int y = 0; y < m_layout->vertical.sourceCount; ++y)
        buffer.ReadRow(source.minX, source.minY + y, ShownRow(y));
}

void PictureView::ReadAndCompare(const PixelBuffer& buffer, const ColourWords& colours)
{
    const PixelBounds& source = m_layout->source;
    const bool sameColours = colours == m_colours;
    for (int y = 0; y < m_layout->vertical.sourceCount; ++y) {
        const std::span<std::uint8_t> shown = ShownRow(y);
        buffer.ReadRow(source.minX, source.minY + y, m_row);
        if (sameColours)
            m_changed.CompareRow(y, shown, m_row);
        else
            m_changed.CompareRow(y, shown, m_colours, m_row, colours);
        std::ranges::copy(m_row, shown.begin());
    }
}

PictureScaler& PictureView::Scaler(PictureLook look)
{
    if (look == PictureLook::Sharp)
        return m_sharp;
    if (!m_smooth)
        m_smooth = std::make_unique<SmoothScaler>();
    return *m_smooth;
}

} // namespace lantern
