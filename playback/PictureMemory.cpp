// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureMemory.h"

#include <algorithm>

namespace lantern {

namespace {

constexpr int kBitsPerPixel = 8;

} // namespace

PictureMemory::PictureMemory(VirtualBuffers& buffers) : m_buffers(buffers)
{
}

void PictureMemory::SetupGraphics(bool open, ScaleSurface* surface)
{
    if (!open) {
        m_buffers.FGvbclose();
        FreeSnapshots();
        m_buffers.FGvbfree(PictureBuffer);
        m_buffers.FGvbfree(WrapBuffer);
        PictureBuffer = WrapBuffer = 0;
        m_buffers.FGvbfin();
        return;
    }
    const auto openNew = [this](int width, int height) {
        m_buffers.FGvbdepth(kBitsPerPixel);
        const int handle = m_buffers.FGvballoc(width, height);
        m_buffers.FGvbopen(handle);
        m_buffers.FGvbcolors();
        return handle;
    };
    m_buffers.FGvbinit();
    WrapBuffer = openNew(2 * kPictureWidth, 2 * kPictureHeight);
    PictureBuffer = openNew(kPictureWidth, kPictureHeight);
    m_buffers.FGsetdc(surface);
    PaletteHandle = m_buffers.FGlogpal(0, kColourCount, ColourTable);
    RealizePalette();
}

void PictureMemory::RealizePalette()
{
    m_buffers.FGrealize(PaletteHandle);
}

void PictureMemory::Reset()
{
    ColourTable = {};
    SendColours();
    ResetView();
    m_buffers.FGsetcolor(0);
    m_buffers.FGfillpage();
    BorderColour = 0;
    PictureDirty = true;
}

void PictureMemory::ResetView()
{
    ViewLeft = kRestingViewLeft;
    ViewTop = kRestingViewTop;
}

void PictureMemory::SendColours()
{
    m_buffers.FGsetdacs(0, kColourCount, ColourTable);
}

void PictureMemory::TakeSnapshot(PacketIndex packetNo)
{
    const auto index = static_cast<std::size_t>(packetNo / SnapshotInterval);
    if (index < Snapshots.size())
        return;
    Snapshots.resize(index + 1);
    PictureSnapshot& snapshot = Snapshots.back();
    snapshot.ViewLeft = ViewLeft;
    snapshot.ViewTop = ViewTop;
    snapshot.Colours = ColourTable;
    snapshot.BorderColour = BorderColour;
    snapshot.SnapshotBuffer = m_buffers.FGvballoc(kPictureWidth, kPictureHeight);
    m_buffers.FGcopypage(PictureBuffer, snapshot.SnapshotBuffer);
}

std::int32_t PictureMemory::NearestSnapshot(PacketIndex target) const
{
    const auto lastIndex = static_cast<std::int32_t>(Snapshots.size()) - 1;
    std::int32_t index = std::min(target / SnapshotInterval, lastIndex);
    while (index > 0 && Snapshots[static_cast<std::size_t>(index)].SnapshotBuffer == 0)
        --index;
    return std::max(index, 0);
}

void PictureMemory::RestoreSnapshot(std::int32_t index)
{
    const PictureSnapshot& snapshot = Snapshots.at(static_cast<std::size_t>(index));
    ViewTop = snapshot.ViewTop;
    ViewLeft = snapshot.ViewLeft;
    ColourTable = snapshot.Colours;
    BorderColour = snapshot.BorderColour;
    m_buffers.FGcopypage(snapshot.SnapshotBuffer, PictureBuffer);
    SendColours();
    PictureDirty = true;
    PlayedPacket = index * SnapshotInterval;
}

void PictureMemory::FreeSnapshots()
{
    for (std::size_t index = 1; index < Snapshots.size(); ++index)
        m_buffers.FGvbfree(Snapshots[index].SnapshotBuffer);
    Snapshots.clear();
}

} // namespace lantern
