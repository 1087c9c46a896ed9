// SPDX-License-Identifier: GPL-3.0-or-later
#include "SungLine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>

namespace lantern {
namespace {

struct Frame {
    int left = kPictureWidth;
    int right = -1;
};

Frame FrameOf(const FoundLine& found)
{
    Frame frame;
    for (int y = 0; y < found.height; ++y) {
        for (int x = 0; x < kPictureWidth; ++x) {
            if (found.At(x, y).isText) {
                frame.left = std::min(frame.left, x);
                frame.right = std::max(frame.right, x);
            }
        }
    }
    return frame;
}

template <typename IsLetter>
LineMask MaskOf(const FoundLine& found, const Frame& frame, IsLetter isLetter)
{
    LineMask mask;
    mask.left = frame.left;
    mask.width = frame.right - frame.left + 1;
    mask.height = found.height;
    for (int y = 0; y < found.height; ++y) {
        for (int x = frame.left; x <= frame.right; ++x)
            mask.pixels.push_back(isLetter(found.At(x, y)) ? 1 : 0);
    }
    return mask;
}

// The median over each column's pixels, where most of them tell a time.
template <typename TimeOf>
std::vector<PacketIndex> ColumnTimes(const FoundLine& found, const Frame& frame, TimeOf timeOf)
{
    std::vector<PacketIndex> medians;
    std::vector<PacketIndex> times;
    for (int x = frame.left; x <= frame.right; ++x) {
        times.clear();
        int count = 0;
        for (int y = 0; y < found.height; ++y) {
            const FoundLine::Pixel& pixel = found.At(x, y);
            count += pixel.isText ? 1 : 0;
            if (pixel.isText && timeOf(pixel) != 0)
                times.push_back(timeOf(pixel));
        }
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        if (times.empty() || std::ssize(times) * 2 < count) {
            medians.push_back(0);
        } else {
            std::ranges::nth_element(times, middle);
            medians.push_back(*middle);
        }
    }
    return medians;
}

// Words are sung from left to right, a column at a time. Where the pixels of a column change at as
// different times as those of the whole line, all of it was drawn anew at once, in rows of tiles.
template <typename TimeOf>
PacketIndex LitAt(const FoundLine& found, const Frame& frame, TimeOf timeOf)
{
    struct Span {
        PacketIndex first = 0;
        PacketIndex last = 0;
        void Add(PacketIndex time)
        {
            first = first == 0 ? time : std::min(first, time);
            last = std::max(last, time);
        }
    };
    Span all;
    std::int64_t spread = 0;
    std::int64_t columns = 0;
    for (int x = frame.left; x <= frame.right; ++x) {
        Span column;
        for (int y = 0; y < found.height; ++y) {
            const FoundLine::Pixel& pixel = found.At(x, y);
            if (!pixel.isText || timeOf(pixel) == 0)
                continue;
            column.Add(timeOf(pixel));
            all.Add(timeOf(pixel));
        }
        if (column.first == 0)
            continue;
        spread += column.last - column.first;
        ++columns;
    }
    return spread * 3 > (all.last - all.first) * columns ? all.first : 0;
}

// Letters that are cleared go at once, or tile by tile as fast as the disc can.
bool GoesSlowly(const std::vector<PacketIndex>& times)
{
    constexpr PacketIndex kSlow = 200;
    PacketIndex first = 0;
    PacketIndex last = 0;
    for (const PacketIndex time : times) {
        if (time == 0)
            continue;
        first = first == 0 ? time : std::min(first, time);
        last = std::max(last, time);
    }
    return last - first > kSlow;
}

// The two colours, if there are two, that share most of the letters.
std::vector<DiscColour> MainColours(const FoundLine& found)
{
    std::map<DiscColour, int> counts;
    int all = 0;
    for (const FoundLine::Pixel& pixel : found.pixels) {
        if (pixel.isText) {
            ++counts[pixel.colour];
            ++all;
        }
    }
    std::vector<DiscColour> colours;
    for (const auto& [colour, count] : counts) {
        if (count * 5 > all)
            colours.push_back(colour);
    }
    return colours.size() == 2 ? colours : std::vector<DiscColour>();
}

} // namespace

SungLine MakeSungLine(const FoundLine& found, const WordColours& colours)
{
    SungLine line;
    line.shown = found.begin;
    line.gone = found.end;
    const Frame frame = FrameOf(found);
    if (frame.right < frame.left)
        return line;
    using Pixel = FoundLine::Pixel;
    line.mask = MaskOf(found, frame, [](const Pixel& pixel) { return pixel.isText; });
    for (const DiscColour colour : MainColours(found)) {
        line.singles.push_back(MaskOf(found, frame, [&](const Pixel& pixel) {
            return pixel.isText && pixel.colour == colour;
        }));
    }
    const auto wipedAt = [](const Pixel& pixel) { return pixel.wipedAt; };
    const auto goneAt = [](const Pixel& pixel) { return pixel.goneAt; };
    line.columnTimes = ColumnTimes(found, frame, wipedAt);
    if (colours.wipes.empty()) {
        line.columnTimes = ColumnTimes(found, frame, goneAt);
        if (!GoesSlowly(line.columnTimes))
            std::ranges::fill(line.columnTimes, 0);
    } else {
        line.litAt = LitAt(found, frame, wipedAt);
    }
    return line;
}

} // namespace lantern
