// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketInterpreter.h"

#include <algorithm>
#include <array>
#include <span>

namespace lantern {

namespace {

constexpr std::uint8_t kColourMask = 0x0F;

// A paint at every so many packets: 20 a second.
constexpr PacketIndex kRepaintInterval = 15;

// Of the sixteen channels of the disc standard the first two are shown.
constexpr int kLastShownChannel = 1;

// Where one axis of a scroll lays its fill and reads the wrapped picture from, by its command.
// Reading past the first tile moves the picture back by one, reading up to the last tile moves it
// on by one.
struct ScrollAxis {
    bool moves = false;
    int fillFrom = 0;
    int fillTo = 0;
    int readOffset = 0;
};

constexpr std::array<ScrollAxis, 4> ScrollTable(int pictureSize, int tileSize)
{
    return {{{},
             {true, pictureSize - tileSize, pictureSize - 1, pictureSize - tileSize},
             {true, 0, tileSize - 1, tileSize},
             {}}};
}

constexpr auto kHorizontalScroll = ScrollTable(kPictureWidth, kTileWidth);
constexpr auto kVerticalScroll = ScrollTable(kPictureHeight, kTileHeight);
static_assert(kHorizontalScroll[1].readOffset == 294 && kVerticalScroll[1].readOffset == 204);

// The offset fields are three and four bits wide; what exceeds a tile is taken as it comes.
constexpr std::uint8_t kHorizontalOffsetMask = 0x07;
constexpr std::uint8_t kVerticalOffsetMask = 0x0F;

// A component has four bits; 17 spreads them over 0 to 255.
constexpr std::uint8_t Component(int fourBits)
{
    return static_cast<std::uint8_t>(fourBits * 17);
}

} // namespace

PacketInterpreter::PacketInterpreter(PictureMemory& picture, Painter& painter)
    : m_picture(picture), m_buffers(picture.Buffers()), m_painter(painter)
{
}

void PacketInterpreter::ShowCode(PacketIndex packetNo)
{
    if (packetNo <= 1)
        m_picture.Reset();
    if (packetNo == 0) {
        m_painter.PaintDisplay();
        return;
    }

    bool repaint = packetNo % kRepaintInterval == 0;
    if ((m_picture.CurrentPacket.Command & kSymbolMask) == kGraphicsCommand)
        repaint = Interpret(repaint);
    if (packetNo > 0 && packetNo % SnapshotInterval == 0)
        m_picture.TakeSnapshot(packetNo);
    if (repaint && m_picture.PictureDirty && !m_picture.CatchingUp)
        m_painter.PaintDisplay();
}

void PacketInterpreter::ClearPicture()
{
    ShowCode(0);
}

// The result is whether the packet is followed by a paint: what the pace says, unless the
// instruction knows better.
bool PacketInterpreter::Interpret(bool repaint)
{
    m_picture.CurrentPacket.Instruction &= kSymbolMask;
    const auto instruction = static_cast<CdgInstruction>(m_picture.CurrentPacket.Instruction);
    switch (instruction) {
    case CdgInstruction::MemoryPreset:
        MemoryPreset();
        return repaint;
    case CdgInstruction::BorderPreset:
        BorderPreset();
        return true;
    case CdgInstruction::TileBlock:
    case CdgInstruction::TileBlockXor:
        TileBlock(instruction == CdgInstruction::TileBlockXor);
        return repaint;
    case CdgInstruction::ScrollPreset:
    case CdgInstruction::ScrollCopy:
        Scroll(instruction);
        return repaint;
    // The low half of the table holds back even a paint that is due, so that a low load and the
    // high one that follows are shown as one.
    case CdgInstruction::LoadColourTableLow:
        LoadColourTable(0);
        return false;
    case CdgInstruction::LoadColourTableHigh:
        LoadColourTable(kColourCount / 2);
        return true;
    case CdgInstruction::DefineTransparentColour:
        break;
    }
    return repaint;
}

// Encoders repeat this packet in case one is lost; each repeat clears the picture again. The disc
// standard doesn't ask for the scroll offsets to return to rest, but lyrics are made for it.
void PacketInterpreter::MemoryPreset()
{
    m_picture.ResetView();
    m_buffers.FGsetcolor(m_picture.CurrentPacket.PacketData[0] & kColourMask);
    m_buffers.FGfillpage();
    m_picture.PictureDirty = true;
}

// The border is the window around the picture, so no pixel changes.
void PacketInterpreter::BorderPreset()
{
    m_picture.BorderColour = m_picture.CurrentPacket.PacketData[0] & kColourMask;
    m_picture.PictureDirty = true;
}

void PacketInterpreter::TileBlock(bool exclusive)
{
    const auto& data = m_picture.CurrentPacket.PacketData;
    const int channel = (data[0] >> 4 & 3) << 2 | (data[1] >> 4 & 3);
    const int row = data[2] & 0x1F;
    const int column = data[3] & 0x3F;
    if (row >= kTileRows || column >= kTileColumns || channel > kLastShownChannel)
        return;

    constexpr std::size_t kFirstRow = 4;
    m_buffers.DrawTile(column * kTileWidth, row * kTileHeight,
                       std::span(data).subspan<kFirstRow, kTileHeight>(), data[0] & kColourMask,
                       data[1] & kColourMask, exclusive);
    m_picture.PictureDirty = true;
}

void PacketInterpreter::Scroll(CdgInstruction instruction)
{
    const auto& data = m_picture.CurrentPacket.PacketData;
    const int colour = data[0] & kColourMask;
    const ScrollAxis& horizontal = kHorizontalScroll[data[1] >> 4 & 3];
    const ScrollAxis& vertical = kVerticalScroll[data[2] >> 4 & 3];

    if (horizontal.moves)
        FillScrollEdge(instruction, horizontal.fillFrom, horizontal.fillTo, 0, kPictureHeight - 1,
                       colour);
    if (vertical.moves)
        FillScrollEdge(instruction, 0, kPictureWidth - 1, vertical.fillFrom, vertical.fillTo,
                       colour);
    m_picture.ViewLeft = kRestingViewLeft + (data[1] & kHorizontalOffsetMask);
    m_picture.ViewTop = kRestingViewTop + (data[2] & kVerticalOffsetMask);
    if (horizontal.moves || vertical.moves)
        m_buffers.RollPage(horizontal.readOffset, vertical.readOffset, m_picture.PictureBuffer);
    m_picture.PictureDirty = true;
}

// The strip that leaves the picture comes in again on the far side. A preset colours it, a copy
// lets it wrap as it is.
void PacketInterpreter::FillScrollEdge(CdgInstruction instruction, int minX, int maxX, int minY,
                                       int maxY, int colour)
{
    if (instruction != CdgInstruction::ScrollPreset)
        return;
    m_buffers.FGsetcolor(colour);
    m_buffers.FGrect(minX, maxX, minY, maxY);
}

void PacketInterpreter::LoadColourTable(int baseEntry)
{
    const auto& data = m_picture.CurrentPacket.PacketData;
    auto* component = m_picture.ColourTable.begin() + std::ptrdiff_t{3} * baseEntry;
    for (std::size_t i = 0; i < data.size(); i += 2) {
        const int high = data[i];
        const int low = data[i + 1];
        *component++ = Component(high >> 2 & 0x0F);
        *component++ = Component((high & 3) << 2 | (low >> 4 & 3));
        *component++ = Component(low & 0x0F);
        m_picture.SendColours();
    }
    m_picture.PictureDirty = true;
}

} // namespace lantern
