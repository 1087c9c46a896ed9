// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SettledPicture.h"
#include "WordColours.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lantern {

// A line of letters as it stood on the picture, and when its pixels were sung.
struct FoundLine {
    struct Pixel {
        DiscColour colour = 0;
        bool isText = false;
        PacketIndex wipedAt = 0; // 0 for never
        PacketIndex goneAt = 0;
    };

    int top = 0; // where it stands, or stood last
    int height = 0;
    PacketIndex begin = 0;     // its first pixel
    PacketIndex end = 0;       // when it went
    std::vector<Pixel> pixels; // the whole rows

    Pixel& At(int x, int y) { return pixels[Place(x, y)]; }
    const Pixel& At(int x, int y) const { return pixels[Place(x, y)]; }

private:
    static std::size_t Place(int x, int y)
    {
        return static_cast<std::size_t>(y) * kPictureWidth + static_cast<std::size_t>(x);
    }
};

class LineWatcher {
public:
    virtual ~LineWatcher() = default;
    virtual void LineEnded(const FoundLine& line) = 0;
};

// Finds the lines of a track, in the order in which they end. Blank rows part them.
class LineFinder final : private SettledWatcher {
public:
    LineFinder(const OneBasedArray<CdgPacket>& packets, const WordColours& colours,
               LineWatcher& watcher);

    void Run();

private:
    struct Line {
        FoundLine found;
        int count = 0; // pixels of its letters
        int lost = 0;
        int gained = 0;
        int unlit = 0; // they have the colour of another line, or of one that is not sung yet
        bool isSung = false;
    };
    struct Row {
        int count = 0;          // pixels of letters
        PacketIndex change = 0; // the last time that one came or went
        bool isTaken = false;   // by a line
    };
    struct Band {
        int top = 0;
        int end = 0;
    };

    void PixelSettled(const SettledPixel& pixel) override;
    void Rolled(int right, int down) override;
    void Looked(PacketIndex now) override;

    Line* LineAt(int y);
    void TakeRows(const Line& line, bool isTaken);
    void TellLine(Line& line, const SettledPixel& pixel, bool isText, bool wasText);
    bool HasEnded(const Line& line) const;
    bool IsUnfinished(const Line& line) const;
    void End(Line& line, PacketIndex now);
    PacketIndex LastChange(const Band& band) const;
    std::vector<Band> FreeBands() const;
    void Begin(const Band& band);
    void TakeLetters(Line& line);

    static std::size_t Place(int x, int y)
    {
        return static_cast<std::size_t>(y) * kPictureWidth + static_cast<std::size_t>(x);
    }

    SettledPicture m_picture;
    const WordColours& m_colours;
    LineWatcher& m_watcher;
    std::vector<Line> m_lines;
    std::array<Row, kPictureHeight> m_rows{};
    PacketIndex m_now = 0;
    std::vector<PacketIndex> m_born;  // when a pixel became one of a letter; 0 if it is none
    std::vector<PacketIndex> m_wiped; // when such a pixel was sung
};

} // namespace lantern
