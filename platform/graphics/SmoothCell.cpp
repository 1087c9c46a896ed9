// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmoothCell.h"

#include "ColourLine.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <span>

namespace lantern {

namespace {

constexpr WindowMask kWholeWindow = 0xFFFF;

std::uint64_t FourBytes(const std::uint8_t* bytes)
{
    return std::uint64_t{bytes[0]} | std::uint64_t{bytes[1]} << 8 | std::uint64_t{bytes[2]} << 16 |
           std::uint64_t{bytes[3]} << 24;
}

// A bit for each byte that has this value, the lowest byte's first.
unsigned EqualBytes(std::uint64_t bytes, std::uint8_t value)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t lowBits = 0x7F * ones;
    constexpr std::uint64_t gather = 0x0102040810204080;
    const std::uint64_t differing = bytes ^ value * ones;
    const std::uint64_t high = ((differing & lowBits) + lowBits) | differing | lowBits;
    return static_cast<unsigned>((~high >> 7) * gather >> 56);
}

struct SeenLook {
    std::uint8_t look = 0;
    WindowMask mask = 0;
};

// What is in the window: the looks of the inner four pixels first.
struct SeenLooks {
    explicit SeenLooks(const CellWindow& window)
    {
        for (const std::uint8_t look :
             {window.Look(1, 1), window.Look(1, 2), window.Look(2, 1), window.Look(2, 2)})
            Add(window, look);
        inner = count;
    }
    void AddOuter(const CellWindow& window)
    {
        while (seen != kWholeWindow) {
            const auto pixel =
                static_cast<std::size_t>(std::countr_one(static_cast<unsigned>(seen)));
            Add(window, window.Look(pixel / 4, pixel % 4));
        }
    }
    void Add(const CellWindow& window, std::uint8_t look)
    {
        for (std::size_t known = 0; known < count; ++known) {
            if (looks[known].look == look)
                return;
        }
        const WindowMask mask = window.MaskOf(look);
        looks[count++] = {look, mask};
        seen |= mask;
    }

    std::array<SeenLook, 16> looks;
    std::size_t count = 0;
    std::size_t inner = 0;
    WindowMask seen = 0;
};

class CellMaker {
public:
    CellMaker(const CellWindow& window, const DistanceTable& table, ColourRamps& colours,
              SmoothCell& cell)
        : m_window(window), m_table(table), m_colours(colours), m_cell(cell), m_seen(window)
    {
    }

    void Make()
    {
        m_cell.looks = static_cast<std::uint8_t>(m_seen.inner);
        if (m_seen.inner == 2)
            return MakePair();
        if (!MakeShades())
            MakeCrowd();
    }

private:
    std::uint32_t Word(std::uint8_t look) const { return m_colours.Word(look); }

    // How far nodes lie on the far side of an edge; what is of neither side doesn't count.
    void ReadEdge(WindowMask before, WindowMask beyond, SmoothCell::Field& field) const
    {
        DistanceTable::Distances inside;
        DistanceTable::Distances outside;
        m_table.Read(beyond, inside);
        if ((before | beyond) == kWholeWindow) {
            for (std::size_t node = 0; node < field.size(); ++node)
                field[node] = static_cast<std::int16_t>(2 * inside[node]);
            return;
        }
        m_table.Read(before, outside);
        for (std::size_t node = 0; node < field.size(); ++node)
            field[node] = static_cast<std::int16_t>(inside[node] - outside[node]);
    }

    // Shades around the edge that lie on the line through its colours belong to the nearer one.
    void ReadStep(const ColourLine& line, int twiceMiddle, SmoothCell::Field& field) const
    {
        WindowMask before = 0;
        WindowMask beyond = 0;
        for (const SeenLook& seen : std::span(m_seen.looks).first(m_seen.count)) {
            const std::optional<int> place = line.PlaceOf(Word(seen.look));
            if (place && 2 * *place < twiceMiddle)
                before |= seen.mask;
            else if (place && 2 * *place > twiceMiddle)
                beyond |= seen.mask;
        }
        ReadEdge(before, beyond, field);
    }

    void MakePair()
    {
        const SeenLook& first = m_seen.looks[0];
        const SeenLook& second = m_seen.looks[1];
        m_cell.kind = SmoothCell::Kind::Pair;
        m_cell.ramps[0] = m_colours.RampOf(first.look, second.look);
        if (m_seen.seen == kWholeWindow)
            return ReadEdge(first.mask, second.mask, m_cell.fields[0]);
        m_seen.AddOuter(m_window);
        WindowMask before = first.mask;
        WindowMask beyond = second.mask;
        for (std::size_t outer = 2; outer < m_seen.count; ++outer) {
            const SeenLook& seen = m_seen.looks[outer];
            switch (m_colours.SideOf(first.look, second.look, seen.look)) {
            case ColourSide::From:
                before |= seen.mask;
                break;
            case ColourSide::To:
                beyond |= seen.mask;
                break;
            default:
                break;
            }
        }
        ReadEdge(before, beyond, m_cell.fields[0]);
    }

    // From one end of the line through the inner looks to the other, if they lie on one.
    bool MakeShades()
    {
        const ColourLine line = LongestLine();
        std::array<int, SmoothCell::kMostLooks> places{};
        for (std::size_t look = 0; look < m_seen.inner; ++look) {
            const std::optional<int> place = line.PlaceOf(Word(m_seen.looks[look].look));
            if (!place)
                return false;
            places[look] = *place;
            m_cell.shades[look] = Word(m_seen.looks[look].look);
        }
        SortShades(places);
        m_cell.kind = SmoothCell::Kind::Shades;
        m_seen.AddOuter(m_window);
        for (std::size_t step = 0; step + 1 < m_seen.inner; ++step)
            ReadStep(line, places[step] + places[step + 1], m_cell.fields[step]);
        return true;
    }

    void SortShades(std::array<int, SmoothCell::kMostLooks>& places)
    {
        for (std::size_t end = m_seen.inner - 1; end > 0; --end) {
            for (std::size_t look = 0; look < end; ++look) {
                if (places[look] <= places[look + 1])
                    continue;
                std::swap(places[look], places[look + 1]);
                std::swap(m_cell.shades[look], m_cell.shades[look + 1]);
            }
        }
    }

    ColourLine LongestLine() const
    {
        ColourLine longest(Word(m_seen.looks[0].look), Word(m_seen.looks[1].look));
        for (std::size_t first = 0; first < m_seen.inner; ++first) {
            for (std::size_t second = first + 1; second < m_seen.inner; ++second) {
                const ColourLine line(Word(m_seen.looks[first].look),
                                      Word(m_seen.looks[second].look));
                if (line.Length() > longest.Length())
                    longest = line;
            }
        }
        return longest;
    }

    void MakeCrowd()
    {
        m_cell.kind = SmoothCell::Kind::Crowd;
        for (std::size_t look = 0; look < m_seen.inner; ++look) {
            DistanceTable::Distances inside;
            m_table.Read(m_seen.looks[look].mask, inside);
            std::ranges::copy(inside, m_cell.fields[look].begin());
            for (std::size_t other = 0; other < m_seen.inner; ++other) {
                if (other != look) {
                    m_cell.ramps[look * SmoothCell::kMostLooks + other] =
                        m_colours.RampOf(m_seen.looks[other].look, m_seen.looks[look].look);
                }
            }
        }
    }

    const CellWindow& m_window;
    const DistanceTable& m_table;
    ColourRamps& m_colours;
    SmoothCell& m_cell;
    SeenLooks m_seen;
};

} // namespace

CellWindow::CellWindow(const std::array<const std::uint8_t*, 4>& rows)
    : halves{FourBytes(rows[0]) | FourBytes(rows[1]) << 32, FourBytes(rows[2]) | FourBytes(rows[3])
                                                                                     << 32}
{
}

std::uint8_t CellWindow::Look(std::size_t row, std::size_t column) const
{
    return static_cast<std::uint8_t>(halves[row / 2] >> (row % 2 * 32 + column * 8) & 0xFF);
}

WindowMask CellWindow::MaskOf(std::uint8_t look) const
{
    return static_cast<WindowMask>(EqualBytes(halves[0], look) | EqualBytes(halves[1], look) << 8);
}

void MakeCell(const CellWindow& window, const DistanceTable& table, ColourRamps& colours,
              SmoothCell& cell)
{
    CellMaker(window, table, colours, cell).Make();
}

} // namespace lantern
