// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundImage.h"

#include <QString>

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

// What a track is, whatever file it came from: every packet of its picture, and its audio
// timeline. There is one track at a time; the main window owns it.
namespace lantern {

// A position in packets. 75 sectors a second with 4 packets each, by the disc standard.
using PacketIndex = std::int32_t;
inline constexpr int kPacketsPerSecond = 300;

// One subcode packet as the R to W channels carry it: 24 bytes, six bits used in each.
struct CdgPacket {
    std::uint8_t Command = 0;
    std::uint8_t Instruction = 0;
    std::array<std::uint8_t, 2> ParityQ = {};
    std::array<std::uint8_t, 16> PacketData = {};
    std::array<std::uint8_t, 4> ParityP = {};

    bool operator==(const CdgPacket&) const = default;
};
// Every field has six bits at most; the two above them belong to the P and Q channels.
inline constexpr std::uint8_t kSymbolMask = 0x3F;

// The codes of the disc standard: the command of a packet that changes the picture, and what the
// instruction of such a packet may be.
inline constexpr std::uint8_t kGraphicsCommand = 9;
enum class CdgInstruction : std::uint8_t {
    MemoryPreset = 1,
    BorderPreset = 2,
    TileBlock = 6,
    ScrollPreset = 20,
    ScrollCopy = 24,
    DefineTransparentColour = 28,
    LoadColourTableLow = 30,
    LoadColourTableHigh = 31,
    TileBlockXor = 38,
};

// A packet of that kind whose data are zeros.
inline CdgPacket GraphicsPacket(CdgInstruction instruction)
{
    CdgPacket packet;
    packet.Command = kGraphicsCommand;
    packet.Instruction = static_cast<std::uint8_t>(instruction);
    return packet;
}

inline constexpr std::size_t kPacketSize = 24;
static_assert(sizeof(CdgPacket) == kPacketSize && alignof(CdgPacket) == 1);

// Memory that the system gives as zeros: a page of it takes none before something is written there.
// For elements of which zero bytes are a new one.
template <typename Element>
struct BlankMemory {
    using value_type = Element;

    BlankMemory() = default;
    template <typename Other>
    BlankMemory(const BlankMemory<Other>&) noexcept
    {
    }

    Element* allocate(std::size_t count)
    {
        void* const memory = std::calloc(count, sizeof(Element));
        if (!memory)
            throw std::bad_alloc();
        return static_cast<Element*>(memory);
    }
    void deallocate(Element* memory, std::size_t) noexcept { std::free(memory); }

    template <typename Other>
    void construct(Other*) // it is there
    {
    }
    template <typename Other, typename... Arguments>
    void construct(Other* place, Arguments&&... arguments)
    {
        ::new (static_cast<void*>(place)) Other(std::forward<Arguments>(arguments)...);
    }

    bool operator==(const BlankMemory&) const = default;
};

// An array whose first index is 1. An index outside it is a bug of ours and ends the program.
template <typename Element>
class OneBasedArray {
public:
    std::int32_t Count() const { return static_cast<std::int32_t>(m_elements.size()); }
    bool IsEmpty() const { return m_elements.empty(); }

    Element& operator[](std::int32_t index) { return m_elements[Checked(index)]; }
    const Element& operator[](std::int32_t index) const { return m_elements[Checked(index)]; }

    void Add(Element element) { m_elements.push_back(std::move(element)); }
    // New elements are value-initialised: a packet of zero bytes, which does nothing.
    void Resize(std::int32_t count)
    {
        // What goes is new again, should it come back.
        for (std::int32_t index = count; index < Count(); ++index)
            m_elements[static_cast<std::size_t>(index)] = Element();
        m_elements.resize(static_cast<std::size_t>(count));
    }
    // Gives the memory back, too.
    void Erase() { Elements().swap(m_elements); }

    Element* Data() { return m_elements.data(); }
    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }

private:
    std::size_t Checked(std::int32_t index) const
    {
        if (index < 1 || index > Count())
            std::abort();
        return static_cast<std::size_t>(index) - 1;
    }

    using Memory = std::conditional_t<std::is_trivially_copyable_v<Element>, BlankMemory<Element>,
                                      std::allocator<Element>>;
    using Elements = std::vector<Element, Memory>;

    Elements m_elements;
};

enum class ClipKind { File, Data };

// One piece of the audio timeline.
struct AudioClip {
    ClipKind Kind = ClipKind::File;
    QString Path; // of the audio file, for File
    std::int32_t LengthMs = 0;
    std::int32_t StartMs = 0; // where the clip begins on the track's timeline
    SoundImage Data;          // a whole sound, for Data
    bool IsFiller = false;    // silence, as the packets outlast the sound
};

struct Track {
    OneBasedArray<CdgPacket> PacketStore; // in stream order, 300 to the second
    OneBasedArray<AudioClip> ClipList;    // in playing order
    std::int32_t TotalLengthMs = 0;       // of all clips
    std::int32_t CurrentClip = 0;         // the clip loaded in the engine; 0 for none
    QString CurrentMedia;                 // path of the open track, or of the last one
    bool MediaLoading = false;            // while a track is being opened
    bool TempoHeld = false;               // while the tempo is held at 0 for a load or a seek

    PacketIndex PacketCount() const { return PacketStore.Count(); }
    std::int32_t ClipCount() const { return ClipList.Count(); }
};

} // namespace lantern
