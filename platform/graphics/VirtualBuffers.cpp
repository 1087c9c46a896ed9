// SPDX-License-Identifier: GPL-3.0-or-later
#include "VirtualBuffers.h"

#include "PictureView.h"
#include "PixelBuffer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <unordered_map>
#include <vector>

namespace lantern {

namespace {

constexpr int kColours = 256;
constexpr int kColourBytes = 3;
constexpr int kOnlyDepth = 8;

std::uint32_t ColourWord(std::span<const std::uint8_t> rgb)
{
    return 0xFF000000U | std::uint32_t{rgb[0]} << 16 | std::uint32_t{rgb[1]} << 8 | rgb[2];
}

ColourWords BlackColours()
{
    ColourWords colours;
    colours.fill(0xFF000000U);
    return colours;
}

// Whether entries first..first+count-1 exist and have their bytes.
bool IsColourRange(int first, int count, std::span<const std::uint8_t> colours)
{
    return first >= 0 && count > 0 && count <= kColours - first &&
           colours.size() >= static_cast<std::size_t>(count) * kColourBytes;
}

} // namespace

struct VirtualBuffers::Implementation {
    PixelBuffer* Find(int handle)
    {
        const auto found = buffers.find(handle);
        return found == buffers.end() ? nullptr : &found->second;
    }
    // Whatever may change a pixel or a colour calls this; the view finds out what it was.
    void Touch() { ++revision; }

    bool started = false;
    int depth = kOnlyDepth;
    // Handles are never used twice, so that one of a freed buffer names none for good.
    int lastHandle = 0;
    int lastPalette = 0;
    std::size_t allocatedPixels = 0;
    std::unordered_map<int, PixelBuffer> buffers;
    PixelBuffer* active = nullptr;
    std::uint8_t colour = 0;
    ColourWords colours = BlackColours();
    std::uint64_t revision = 0;
    ScaleSurface* surface = nullptr;
    PictureView view;
};

VirtualBuffers::VirtualBuffers() : m_impl(std::make_unique<Implementation>())
{
}
VirtualBuffers::~VirtualBuffers() = default;

void VirtualBuffers::FGvbinit()
{
    m_impl->started = true;
}

void VirtualBuffers::FGvbfin()
{
    m_impl = std::make_unique<Implementation>();
}

void VirtualBuffers::FGvbdepth(int bitsPerPixel)
{
    m_impl->depth = bitsPerPixel;
}

int VirtualBuffers::FGvballoc(int width, int height)
{
    Implementation& impl = *m_impl;
    if (!impl.started || impl.depth != kOnlyDepth || !IsHoldable(width, height) ||
        impl.lastHandle == std::numeric_limits<int>::max())
        return 0;
    const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (pixels > kMaxAllocatedPixels - impl.allocatedPixels)
        return 0;
    try {
        impl.buffers.try_emplace(impl.lastHandle + 1, width, height);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    impl.allocatedPixels += pixels;
    return ++impl.lastHandle;
}

void VirtualBuffers::FGvbfree(int handle)
{
    const PixelBuffer* buffer = m_impl->Find(handle);
    if (!buffer)
        return;
    if (buffer == m_impl->active)
        FGvbclose();
    m_impl->allocatedPixels -= buffer->Size();
    m_impl->buffers.erase(handle);
}

void VirtualBuffers::FGvbopen(int handle)
{
    if (PixelBuffer* buffer = m_impl->Find(handle)) {
        m_impl->active = buffer;
        m_impl->Touch();
    }
}

void VirtualBuffers::FGvbclose()
{
    m_impl->active = nullptr;
}

void VirtualBuffers::FGvbcolors()
{
    // Every buffer shows in the one table of colours from the start.
}

void VirtualBuffers::FGsetdc(ScaleSurface* surface)
{
    m_impl->surface = surface;
    m_impl->view.Forget();
}

int VirtualBuffers::FGlogpal(int first, int count, std::span<const std::uint8_t> colours)
{
    // A true-colour surface has no palette of its own to load: the handle is all there is of it.
    if (!IsColourRange(first, count, colours) ||
        m_impl->lastPalette == std::numeric_limits<int>::max())
        return 0;
    return ++m_impl->lastPalette;
}

void VirtualBuffers::FGrealize(int /*palette*/)
{
    // Nothing to load, as above; the colours that show are those of FGsetdacs.
}

void VirtualBuffers::FGsetdacs(int first, int count, std::span<const std::uint8_t> colours)
{
    if (!IsColourRange(first, count, colours))
        return;
    for (int entry = 0; entry < count; ++entry) {
        const std::uint32_t word = ColourWord(
            colours.subspan(static_cast<std::size_t>(entry) * kColourBytes, kColourBytes));
        std::uint32_t& current =
            m_impl->colours[static_cast<std::size_t>(first) + static_cast<std::size_t>(entry)];
        if (current != word) {
            current = word;
            m_impl->Touch();
        }
    }
}

void VirtualBuffers::FGsetcolor(int index)
{
    m_impl->colour = static_cast<std::uint8_t>(index & 0xFF);
}

void VirtualBuffers::FGfillpage()
{
    if (!m_impl->active)
        return;
    m_impl->active->Fill(m_impl->colour);
    m_impl->Touch();
}

void VirtualBuffers::FGputpixel(int x, int y)
{
    if (!m_impl->active)
        return;
    m_impl->active->Put(x, y, m_impl->colour);
    m_impl->Touch();
}

int VirtualBuffers::FGgetpixel(int x, int y) const
{
    return m_impl->active ? m_impl->active->Get(x, y) : 0;
}

void VirtualBuffers::FGrect(int minX, int maxX, int minY, int maxY)
{
    if (!m_impl->active)
        return;
    m_impl->active->FillRect({minX, maxX, minY, maxY}, m_impl->colour);
    m_impl->Touch();
}

void VirtualBuffers::FGvbcopy(int minX, int maxX, int minY, int maxY, int newX, int newY,
                              int source, int destination)
{
    PixelBuffer* from = m_impl->Find(source);
    PixelBuffer* to = m_impl->Find(destination);
    const PixelBounds bounds{minX, maxX, minY, maxY};
    if (!from || !to)
        return;
    to->Copy(*from, bounds, newX, newY - (bounds.Height() - 1));
    m_impl->Touch();
}

void VirtualBuffers::FGcopypage(int source, int destination)
{
    const PixelBuffer* from = m_impl->Find(source);
    PixelBuffer* to = m_impl->Find(destination);
    if (!from || !to)
        return;
    to->CopyAll(*from);
    m_impl->Touch();
}

void VirtualBuffers::FGvbscale(int minX, int maxX, int minY, int maxY, int toMinX, int toMaxX,
                               int toMinY, int toMaxY)
{
    if (!m_impl->active || !m_impl->surface)
        return;
    const PictureView::Request request{
        {minX, maxX, minY, maxY}, {toMinX, toMaxX, toMinY, toMaxY}, m_impl->revision};
    m_impl->view.Show(request, *m_impl->active, m_impl->colours, *m_impl->surface);
}

void VirtualBuffers::ShowOn(ScaleSurface& surface, PictureView& view, int minX, int maxX, int minY,
                            int maxY, int toWidth, int toHeight) const
{
    if (!m_impl->active)
        return;
    const PictureView::Request request{
        {minX, maxX, minY, maxY}, {0, toWidth, 0, toHeight}, m_impl->revision};
    view.Show(request, *m_impl->active, m_impl->colours, surface);
}

void VirtualBuffers::FGvb2clip(int minX, int maxX, int minY, int maxY, ClipSink& sink) const
{
    const PixelBounds bounds{minX, maxX, minY, maxY};
    if (!m_impl->active || !IsHoldable(bounds.Width(), bounds.Height()))
        return;
    const auto width = static_cast<std::size_t>(bounds.Width());
    const int height = static_cast<int>(bounds.Height());
    std::vector<std::uint8_t> row(width);
    std::vector<std::uint32_t> pixels;
    pixels.reserve(width * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        m_impl->active->ReadRow(minX, minY + y, row);
        for (const std::uint8_t index : row)
            pixels.push_back(m_impl->colours[index]);
    }
    sink.SetImage({static_cast<int>(width), height, pixels});
}

void VirtualBuffers::DrawTile(int x, int y, std::span<const std::uint8_t, 12> rows,
                              std::uint8_t colour0, std::uint8_t colour1, bool exclusive)
{
    if (!m_impl->active)
        return;
    m_impl->active->DrawTile(x, y, {rows, colour0, colour1, exclusive});
    m_impl->Touch();
}

void VirtualBuffers::RollPage(int left, int top, int handle)
{
    PixelBuffer* buffer = m_impl->Find(handle);
    if (!buffer)
        return;
    const auto inside = [](int position, int size) { return (position % size + size) % size; };
    buffer->Roll(inside(left, buffer->Width()), inside(top, buffer->Height()));
    m_impl->Touch();
}

std::span<const std::uint8_t> VirtualBuffers::Pixels(int handle) const
{
    PixelBuffer* buffer = m_impl->Find(handle);
    return buffer ? buffer->Pixels() : std::span<const std::uint8_t>{};
}

int VirtualBuffers::AllocatedCount() const
{
    return static_cast<int>(m_impl->buffers.size());
}

} // namespace lantern
