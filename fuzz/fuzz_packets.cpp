// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketInterpreter.h"
#include "Painter.h"
#include "PictureMemory.h"
#include "ReferencePicture.h"
#include "RunToPacket.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <span>
#include <vector>

// Any bytes as packets, and any order of seeks over them: the picture must be the one that the
// reference decoder has at that packet. An input is a stream as its file holds it. The packets are
// spread over a stream that is long enough for snapshots, with packets that do nothing between
// them. The seeks stand in a parity field, which no decoder reads.

namespace lantern {

namespace {

constexpr std::size_t kMostPackets = 256; // a scroll takes the reference a while
constexpr std::size_t kMostSeeks = 32;
constexpr PacketIndex kStreamLength = 2 * SnapshotInterval + 1000;

class NoPainter : public Painter {
public:
    void PaintDisplay() override {}
};

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

std::vector<CdgPacket> PacketsOf(std::span<const std::uint8_t> bytes)
{
    std::vector<CdgPacket> packets(std::min(bytes.size() / kPacketSize, kMostPackets));
    if (!packets.empty())
        std::memcpy(packets.data(), bytes.data(), packets.size() * kPacketSize);
    return packets;
}

OneBasedArray<CdgPacket> Spread(const std::vector<CdgPacket>& packets)
{
    OneBasedArray<CdgPacket> stream;
    stream.Resize(kStreamLength);
    PacketIndex packetNo = 1;
    for (const CdgPacket& packet : packets) {
        stream[packetNo] = packet;
        packetNo += kStreamLength / static_cast<PacketIndex>(packets.size());
    }
    return stream;
}

std::vector<PacketIndex> SeeksIn(const std::vector<CdgPacket>& packets)
{
    std::vector<PacketIndex> targets;
    for (const CdgPacket& packet : packets) {
        const auto& parity = packet.ParityP;
        if (parity[0] == 0 || targets.size() == kMostSeeks)
            continue;
        // As a rule within the stream, sometimes before or beyond it.
        const int target = parity[1] << 8 | parity[2];
        targets.push_back(parity[0] < 0xF0 ? target % (kStreamLength + 1) : target - 0x8000);
    }
    targets.push_back(kStreamLength);
    return targets;
}

// The reference's pictures at all packets that are asked for, from one pass over the stream.
std::map<PacketIndex, ReferencePicture> PicturesAt(const std::vector<PacketIndex>& targets,
                                                   const OneBasedArray<CdgPacket>& stream)
{
    std::map<PacketIndex, ReferencePicture> pictures;
    for (const PacketIndex target : targets)
        pictures.try_emplace(std::clamp(target, 0, kStreamLength));
    ReferencePicture picture;
    PacketIndex packetNo = 0;
    for (auto& [target, wanted] : pictures) {
        while (packetNo < target) {
            ++packetNo;
            picture.Apply(packetNo, stream[packetNo]);
        }
        wanted = picture;
    }
    return pictures;
}

void RequireSame(const PictureMemory& picture, std::span<const std::uint8_t> pixels,
                 const ReferencePicture& reference)
{
    Require(std::ranges::equal(pixels, reference.Pixels()));
    Require(picture.ColourTable == reference.Colours);
    Require(picture.BorderColour == reference.Border);
    Require(picture.ViewLeft == reference.Left && picture.ViewTop == reference.Top);
}

void SeekAndCompare(std::span<const std::uint8_t> bytes)
{
    const std::vector<CdgPacket> packets = PacketsOf(bytes);
    const OneBasedArray<CdgPacket> stream = Spread(packets);
    const std::vector<PacketIndex> targets = SeeksIn(packets);
    const auto expected = PicturesAt(targets, stream);

    VirtualBuffers buffers;
    PictureMemory picture(buffers);
    NoPainter painter;
    PacketInterpreter interpreter(picture, painter);
    picture.SetupGraphics(true);
    for (const PacketIndex target : targets) {
        RunToPacket(picture, interpreter, stream, target);
        const PacketIndex reached = std::clamp(target, 0, kStreamLength);
        Require(picture.PlayedPacket == reached);
        // The start of the stream leaves the picture as it was.
        if (reached != 0)
            RequireSame(picture, buffers.Pixels(picture.PictureBuffer), expected.at(reached));
    }
    picture.SetupGraphics(false);
    Require(buffers.AllocatedCount() == 0);
}

} // namespace

} // namespace lantern

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    lantern::SeekAndCompare({data, size});
    return 0;
}
