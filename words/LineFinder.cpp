// SPDX-License-Identifier: GPL-3.0-or-later
#include "LineFinder.h"

#include "Turned.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace lantern {
namespace {

// A line is whole when nothing has come or gone for so long.
constexpr PacketIndex kStanding = 45;
constexpr int kLeastHeight = 5;
constexpr int kLeastPixels = 20;

} // namespace

LineFinder::LineFinder(const OneBasedArray<CdgPacket>& packets, const WordColours& colours,
                       LineWatcher& watcher)
    : m_picture(packets), m_colours(colours), m_watcher(watcher),
      m_born(std::size_t{kPictureWidth} * kPictureHeight), m_wiped(m_born.size())
{
}

void LineFinder::Run()
{
    m_picture.Run(*this);
    // What stands at the end of the track.
    for (const Band& band : FreeBands())
        Begin(band);
    for (Line& line : m_lines)
        End(line, m_now);
}

void LineFinder::PixelSettled(const SettledPixel& pixel)
{
    const std::size_t place = Place(pixel.x, pixel.y);
    Row& row = m_rows[static_cast<std::size_t>(pixel.y)];
    const bool wasText = m_born[place] != 0;
    const bool isText = m_colours.text[pixel.to];
    if (isText != wasText) {
        row.count += isText ? 1 : -1;
        row.change = std::max(row.change, pixel.at);
        m_born[place] = isText ? pixel.at : 0;
        m_wiped[place] = 0;
    }
    // From one text to another without a blank in between, it is a letter of a new line.
    if (!m_colours.IsWipe(pixel.from, pixel.to)) {
        m_wiped[place] = 0;
        if (isText) {
            m_born[place] = pixel.at;
            row.change = std::max(row.change, pixel.at);
        }
    } else if (m_wiped[place] == 0) {
        m_wiped[place] = pixel.at;
    }
    if (row.isTaken)
        TellLine(*LineAt(pixel.y), pixel, isText, wasText);
}

void LineFinder::TellLine(Line& line, const SettledPixel& pixel, bool isText, bool wasText)
{
    FoundLine::Pixel& known = line.found.At(pixel.x, pixel.y - line.found.top);
    if (!known.isText) {
        line.gained += isText ? 1 : wasText ? -1 : 0;
        return;
    }
    if (isText != wasText) {
        line.lost += isText ? -1 : 1;
        known.goneAt = isText ? 0 : pixel.at;
    } else if (m_colours.IsWipe(pixel.from, pixel.to)) {
        if (known.wipedAt == 0)
            known.wipedAt = pixel.at;
        line.isSung = true;
    } else if (isText) {
        ++line.unlit;
    }
}

void LineFinder::Rolled(int right, int down)
{
    Turn(m_born, kPictureWidth, right, down);
    Turn(m_wiped, kPictureWidth, right, down);
    Turn(m_rows, 1, 0, down);
    const int fresh = down < 0 ? kPictureHeight + down : 0;
    for (int y = 0; y < kPictureHeight; ++y) {
        Row& row = m_rows[static_cast<std::size_t>(y)];
        row.isTaken = false;
        // What came in on the other side is about to be filled.
        if (down != 0 && y >= fresh && y < fresh + std::abs(down))
            row.change = m_now + kStanding;
    }
    for (Line& line : m_lines) {
        Turn(line.found.pixels, kPictureWidth, right, 0);
        line.found.top += down;
        TakeRows(line, true);
    }
}

LineFinder::Line* LineFinder::LineAt(int y)
{
    const auto at = std::ranges::find_if(m_lines, [&](const Line& line) {
        return y >= line.found.top && y < line.found.top + line.found.height;
    });
    return &*at;
}

void LineFinder::TakeRows(const Line& line, bool isTaken)
{
    const int end = std::min(line.found.top + line.found.height, kPictureHeight);
    for (int y = std::max(line.found.top, 0); y < end; ++y)
        m_rows[static_cast<std::size_t>(y)].isTaken = isTaken;
}

bool LineFinder::HasEnded(const Line& line) const
{
    const int gone = line.lost + line.unlit;
    const int fresh = line.gained + line.unlit;
    const bool isWrittenAnew = gone * 100 > line.count * 8 && fresh * 100 > line.count * 4;
    const bool isOutside =
        line.found.top + line.found.height <= 0 || line.found.top >= kPictureHeight;
    return isWrittenAnew || isOutside || line.lost * 10 >= line.count * 9;
}

// Rows that have come since touch it.
bool LineFinder::IsUnfinished(const Line& line) const
{
    if (line.isSung || line.lost > 0)
        return false;
    const auto touches = [&](int y) {
        if (y < 0 || y >= kPictureHeight)
            return false;
        const Row& row = m_rows[static_cast<std::size_t>(y)];
        return row.count > 0 && !row.isTaken;
    };
    return touches(line.found.top - 1) || touches(line.found.top + line.found.height);
}

void LineFinder::End(Line& line, PacketIndex now)
{
    TakeRows(line, false);
    // What is left there, and goes in a moment, is no other line.
    for (int y = std::max(line.found.top, 0);
         y < std::min(line.found.top + line.found.height, kPictureHeight); ++y)
        m_rows[static_cast<std::size_t>(y)].change = now;
    line.found.end = now;
    m_watcher.LineEnded(line.found);
}

void LineFinder::Looked(PacketIndex now)
{
    m_now = now;
    for (Line& line : m_lines) {
        const FoundLine& found = line.found;
        if (HasEnded(line)) {
            End(line, now);
            line.count = 0;
        } else if (IsUnfinished(line)) {
            TakeRows(line, false);
            line.count = 0;
        } else if (line.gained > 0 &&
                   LastChange({found.top, found.top + found.height}) <= now - kStanding) {
            TakeLetters(line);
        }
    }
    std::erase_if(m_lines, [](const Line& line) { return line.count == 0; });
    for (const Band& band : FreeBands()) {
        if (LastChange(band) <= now - kStanding)
            Begin(band);
    }
}

PacketIndex LineFinder::LastChange(const Band& band) const
{
    PacketIndex last = 0;
    for (int y = std::max(band.top, 0); y < std::min(band.end, kPictureHeight); ++y)
        last = std::max(last, m_rows[static_cast<std::size_t>(y)].change);
    return last;
}

std::vector<LineFinder::Band> LineFinder::FreeBands() const
{
    std::vector<Band> bands;
    for (int y = 0; y < kPictureHeight; ++y) {
        const Row& row = m_rows[static_cast<std::size_t>(y)];
        if (row.isTaken || row.count == 0)
            continue;
        if (!bands.empty() && bands.back().end == y)
            ++bands.back().end;
        else
            bands.push_back({y, y + 1});
    }
    // Dots and accents belong to the letters that they stand near.
    constexpr int kNear = 3;
    for (std::size_t i = 1; i < bands.size();) {
        const int above = bands[i - 1].end - bands[i - 1].top;
        const int below = bands[i].end - bands[i].top;
        const bool isPart = std::min(above, below) * 2 < std::max(above, below);
        if (isPart && bands[i].top - bands[i - 1].end <= kNear) {
            bands[i - 1].end = bands[i].end;
            bands.erase(bands.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
    return bands;
}

void LineFinder::Begin(const Band& band)
{
    if (band.end - band.top < kLeastHeight)
        return;
    Line line;
    line.found.top = band.top;
    line.found.height = band.end - band.top;
    line.found.pixels.resize(Place(0, line.found.height));
    TakeLetters(line);
    if (line.count < kLeastPixels)
        return;
    TakeRows(line, true);
    m_lines.push_back(std::move(line));
}

void LineFinder::TakeLetters(Line& line)
{
    FoundLine& found = line.found;
    line.gained = 0;
    for (int y = std::max(0, -found.top); y < std::min(found.height, kPictureHeight - found.top);
         ++y) {
        for (int x = 0; x < kPictureWidth; ++x) {
            const std::size_t place = Place(x, y + found.top);
            FoundLine::Pixel& pixel = found.At(x, y);
            if (m_born[place] == 0 || pixel.isText)
                continue;
            pixel = {m_picture.At(x, y + found.top), true, m_wiped[place], 0};
            line.isSung = line.isSung || m_wiped[place] != 0;
            found.begin = found.begin == 0 ? m_born[place] : std::min(found.begin, m_born[place]);
            ++line.count;
        }
    }
}

} // namespace lantern
