// SPDX-License-Identifier: GPL-3.0-or-later
#include "Picture.h"

#include "Lettering.h"
#include "PacketTimeline.h"
#include "Score.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace lantern::demo {
namespace {

constexpr int kColumns = 50;
constexpr int kRows = 18;
constexpr int kTileWidth = 6;
constexpr int kTileHeight = 12;

// Entries beyond the letters'.
constexpr int kFrame = 6, kGlass = 7, kFlame = 9;
constexpr int kTitleBorder = 13, kVerseBorder = 14, kChorusBorder = 15;

constexpr Palette kPalette = {{
    {0, 1, 4}, // background
    {0, 0, 0}, // outline
    {5, 5, 6}, // letters, three steps
    {10, 10, 11},
    {15, 15, 15},
    {0, 0, 2}, // soft outline
    {9, 5, 1}, // the lantern's frame
    {4, 2, 1}, // its glass, unlit
    {0, 0, 0},
    {15, 14, 8}, // its flame
    {6, 4, 1},   // sung letters, three steps
    {11, 7, 0},
    {15, 10, 0},
    {0, 1, 4}, // borders: title, verse, chorus
    {0, 3, 8},
    {8, 2, 3},
}};

Palette Faded(double light)
{
    Palette faded = kPalette;
    const auto scale = [light](std::uint8_t value) {
        return static_cast<std::uint8_t>(std::lround(value * light));
    };
    for (Colour& colour : faded)
        colour = {scale(colour.red), scale(colour.green), scale(colour.blue)};
    return faded;
}

double LoadPalette(PacketTimeline& timeline, double seconds, const Palette& palette)
{
    return timeline.Place(timeline.Place(seconds, LoadLow(palette)), LoadHigh(palette));
}

void Fade(PacketTimeline& timeline, double seconds, double from, double to)
{
    constexpr int kSteps = 12;
    constexpr double kStepSeconds = 0.06;
    for (int step = 1; step <= kSteps; ++step)
        LoadPalette(timeline, seconds + step * kStepSeconds,
                    Faded(from + (to - from) * step / kSteps));
}

struct TilePlace {
    int column = 0;
    int row = 0;
};

// The rows of one bit for each pixel of a tile that the predicate chooses.
template <typename Predicate>
TileRows RowsWhere(const IndexImage& image, TilePlace tile, Predicate chosen)
{
    TileRows rows = {};
    for (int y = 0; y < kTileHeight; ++y) {
        for (int x = 0; x < kTileWidth; ++x) {
            const int pixelX = tile.column * kTileWidth + x;
            if (chosen(pixelX, image.At(pixelX, tile.row * kTileHeight + y)))
                rows[static_cast<std::size_t>(y)] |= static_cast<std::uint8_t>(0x20 >> x);
        }
    }
    return rows;
}

// A tile of any number of colours: the lowest bit plane as a plain block, each further one that
// has a pixel by exclusive or.
double DrawTile(PacketTimeline& timeline, double seconds, const IndexImage& image, TilePlace tile)
{
    for (int plane = 0; plane < 4; ++plane) {
        const int bit = 1 << plane;
        const TileRows rows =
            RowsWhere(image, tile, [bit](int, std::uint8_t index) { return (index & bit) != 0; });
        if (plane == 0)
            seconds = timeline.Place(seconds, TileBlock(tile.column, tile.row, 0, bit, rows));
        else if (rows != TileRows())
            seconds = timeline.Place(seconds, TileBlockXor(tile.column, tile.row, 0, bit, rows));
    }
    return seconds;
}

bool SameTile(const IndexImage& a, const IndexImage& b, TilePlace tile)
{
    for (int y = tile.row * kTileHeight; y < (tile.row + 1) * kTileHeight; ++y) {
        for (int x = tile.column * kTileWidth; x < (tile.column + 1) * kTileWidth; ++x) {
            if (a.At(x, y) != b.At(x, y))
                return false;
        }
    }
    return true;
}

// Turns what the disc shows into the new image over the tile rows given, column by column so that
// a line appears in reading order. Returns the time after the last packet.
double DrawRows(PacketTimeline& timeline, double seconds, const IndexImage& shown,
                const IndexImage& wanted, int firstRow, int lastRow)
{
    for (int column = 0; column < kColumns; ++column) {
        for (int row = firstRow; row <= lastRow; ++row) {
            if (!SameTile(shown, wanted, {column, row}))
                seconds = DrawTile(timeline, seconds, wanted, {column, row});
        }
    }
    return seconds;
}

// Where a line stands: three rows of tiles a slot, a free row between, and one above them all for
// the count-in.
constexpr int kLinePixels = 23;
constexpr int FirstRowOf(int slot)
{
    return 2 + slot * 4;
}

struct SungSyllable {
    double left = 0, right = 0; // pixels
    double startSeconds = 0, endSeconds = 0;
};

struct SungLine {
    Line line;
    IndexImage image; // the line alone, unsung
    std::vector<SungSyllable> syllables;

    double StartSeconds() const { return syllables.front().startSeconds; }
    double EndSeconds() const { return syllables.back().endSeconds; }
};

QString TextOf(std::span<const std::string_view> syllables)
{
    QString text;
    for (const std::string_view syllable : syllables)
        text += QString::fromUtf8(syllable.data(), static_cast<qsizetype>(syllable.size()));
    return text;
}

SungLine LayOut(const Line& line)
{
    const QFont font = DiscFont(kLinePixels);
    const QFontMetricsF metrics(font);
    const double width = metrics.horizontalAdvance(TextOf(line.syllables).trimmed());
    constexpr int kViewWidth = 288; // without the border
    if (width > kViewWidth)
        throw std::runtime_error("a line is too wide");
    const double left = (IndexImage::kWidth - width) / 2.0;
    const double baseLine = FirstRowOf(line.slot) * kTileHeight + 25.0;

    SungLine sung{line, {}, {}};
    DrawShape(sung.image, TextShape(font, TextOf(line.syllables), left, baseLine), 2.2);
    for (std::size_t i = 0; i < line.syllables.size(); ++i) {
        SungSyllable syllable;
        syllable.left = left + metrics.horizontalAdvance(TextOf(line.syllables.first(i)));
        syllable.right = left + metrics.horizontalAdvance(TextOf(line.syllables.first(i + 1)));
        sung.syllables.push_back(syllable);
    }
    return sung;
}

// Gives every syllable the time of its notes.
std::vector<SungLine> SungLines()
{
    std::vector<SungLine> lines;
    std::vector<std::pair<std::size_t, std::size_t>> order;
    for (const Line& line : Lines()) {
        lines.push_back(LayOut(line));
        for (std::size_t i = 0; i < line.syllables.size(); ++i)
            order.emplace_back(lines.size() - 1, i);
    }
    std::size_t next = 0;
    int tick = kFirstSungTick;
    SungSyllable* current = nullptr;
    for (const Note& note : Melody()) {
        if (note.newSyllable) {
            if (next == order.size())
                throw std::runtime_error("there are more notes than syllables");
            current = &lines[order[next].first].syllables[order[next].second];
            current->startSeconds = tick * kTickSeconds;
            ++next;
        }
        tick += note.ticks;
        current->endSeconds = tick * kTickSeconds;
    }
    if (next != order.size())
        throw std::runtime_error("there are more syllables than notes");
    return lines;
}

// Colours the fill between two columns, by exclusive or.
void WipeStep(PacketTimeline& timeline, double seconds, const SungLine& line, int from, int to)
{
    const int firstRow = FirstRowOf(line.line.slot);
    for (int column = from / kTileWidth; column * kTileWidth < to; ++column) {
        for (int row = firstRow; row < firstRow + 3; ++row) {
            const TileRows rows =
                RowsWhere(line.image, {column, row}, [from, to](int x, std::uint8_t index) {
                    return x >= from && x < to && IsFill(index);
                });
            if (rows != TileRows())
                seconds = timeline.Place(seconds, TileBlockXor(column, row, 0, kSungMask, rows));
        }
    }
}

void Wipe(PacketTimeline& timeline, const SungLine& line)
{
    constexpr double kStepSeconds = 1.0 / 30.0;
    constexpr double kLongestSweep = 0.9; // of a held note: the rest of it the word stands lit
    for (const SungSyllable& syllable : line.syllables) {
        const double length = std::min(syllable.endSeconds - syllable.startSeconds, kLongestSweep);
        const int steps = std::max(1, static_cast<int>(std::lround(length / kStepSeconds)));
        int from = static_cast<int>(std::lround(syllable.left));
        for (int step = 1; step <= steps; ++step) {
            const int to = static_cast<int>(
                std::lround(syllable.left + (syllable.right - syllable.left) * step / steps));
            WipeStep(timeline, syllable.startSeconds + (step - 1) * kStepSeconds, line, from, to);
            from = to;
        }
    }
}

// What the screen shows after a line was sung from end to end.
IndexImage Sung(const IndexImage& image)
{
    IndexImage sung = image;
    for (std::uint8_t& index : sung.pixels) {
        if (IsFill(index))
            index ^= kSungMask;
    }
    return sung;
}

void FillShape(IndexImage& image, const QPainterPath& shape, int index)
{
    for (int y = 0; y < IndexImage::kHeight; ++y) {
        for (int x = 0; x < IndexImage::kWidth; ++x) {
            if (shape.contains(QPointF(x + 0.5, y + 0.5)))
                image.At(x, y) = static_cast<std::uint8_t>(index);
        }
    }
}

void DrawLantern(IndexImage& image, double centreX, double top)
{
    const auto polygon = [&](std::initializer_list<QPointF> points) {
        QPainterPath path;
        for (const QPointF& point : points) {
            const QPointF at(centreX + point.x(), top + point.y());
            path.elementCount() == 0 ? path.moveTo(at) : path.lineTo(at);
        }
        path.closeSubpath();
        return path;
    };
    const auto ellipse = [&](double x, double y, double width, double height) {
        QPainterPath path;
        path.addEllipse(QPointF(centreX + x, top + y), width, height);
        return path;
    };
    FillShape(image, ellipse(0, 6, 7, 6) - ellipse(0, 6, 4.6, 3.8), kFrame);
    FillShape(image, polygon({{-5, 11}, {5, 11}, {17, 20}, {17, 23}, {-17, 23}, {-17, 20}}),
              kFrame);
    FillShape(image, polygon({{-15, 23}, {15, 23}, {12, 52}, {-12, 52}}), kFrame);
    FillShape(image, polygon({{-12, 26}, {12, 26}, {10, 50}, {-10, 50}}), kGlass);
    FillShape(image, polygon({{-16, 52}, {16, 52}, {16, 56}, {-16, 56}}), kFrame);
    FillShape(image, polygon({{0, 28}, {6, 38}, {6, 43}, {3, 48}, {-3, 48}, {-6, 43}, {-6, 38}}),
              kFill[2] ^ kSungMask);
    FillShape(image, polygon({{0, 34}, {3, 41}, {2, 46}, {-2, 46}, {-3, 41}}), kFlame);
}

void DrawCentred(IndexImage& image, const QString& text, int pixelSize, double baseLine,
                 double outlineWidth, bool sung)
{
    const QFont font = DiscFont(pixelSize);
    const double left = (IndexImage::kWidth - QFontMetricsF(font).horizontalAdvance(text)) / 2.0;
    DrawShape(image, TextShape(font, text, left, baseLine), outlineWidth, sung);
}

IndexImage TitlePage()
{
    IndexImage page;
    DrawLantern(page, IndexImage::kWidth / 2.0, 22.0);
    DrawCentred(page, QStringLiteral("Auld Lang Syne"), 36, 120.0, 2.6, true);
    DrawCentred(page, QStringLiteral("Words by Robert Burns, 1788"), 15, 154.0, 1.4, false);
    DrawCentred(page, QStringLiteral("to a traditional tune"), 15, 176.0, 1.4, false);
    return page;
}

IndexImage LastPage()
{
    IndexImage page;
    DrawLantern(page, IndexImage::kWidth / 2.0, 50.0);
    DrawCentred(page, QStringLiteral("Lyric Lantern"), 34, 150.0, 2.6, true);
    return page;
}

// Four dots over the first line, which go out one by one with the beats before it is sung.
constexpr int kDotRow = 1;
constexpr TileRows kDot = {0x00, 0x00, 0x00, 0x1E, 0x3F, 0x3F, 0x3F, 0x3F, 0x1E, 0x00, 0x00, 0x00};

void CountIn(PacketTimeline& timeline, double drawSeconds, double sungSeconds)
{
    constexpr int kDots = 4;
    constexpr int kFirstColumn = 22;
    for (int dot = 0; dot < kDots; ++dot) {
        const int column = kFirstColumn + 2 * dot;
        timeline.Place(drawSeconds, TileBlock(column, kDotRow, 0, 12, kDot));
        const double beats = kDots - dot;
        timeline.Place(sungSeconds - beats * 2.0 * kTickSeconds + 0.01,
                       TileBlock(column, kDotRow, 0, 0, TileRows()));
    }
}

// Moves the picture up by whole tiles, one pixel a step.
double ScrollUp(PacketTimeline& timeline, double seconds, int tiles, double stepSeconds)
{
    for (int tile = 0; tile < tiles; ++tile) {
        for (int offset = 1; offset < kTileHeight; ++offset) {
            timeline.Place(seconds, ScrollPreset(kBackground, 0, offset));
            seconds += stepSeconds;
        }
        timeline.Place(seconds, ScrollPreset(kBackground, 2, 0));
        seconds += stepSeconds;
    }
    return seconds;
}

void DrawTitle(PacketTimeline& timeline, double fadeSeconds)
{
    double seconds = timeline.Place(0.0, MemoryPreset(kBackground));
    seconds = timeline.Place(seconds, BorderPreset(kTitleBorder));
    seconds = LoadPalette(timeline, seconds, Faded(0.0));
    Fade(timeline, 0.1, 0.0, 1.0);
    const double drawn = DrawRows(timeline, seconds, IndexImage(), TitlePage(), 0, kRows - 1);
    if (drawn > fadeSeconds)
        throw std::runtime_error("the title is too long to draw");
    Fade(timeline, fadeSeconds, 1.0, 0.0);
}

// Draws each line once the one that stood in its place has been sung, and well before its own
// time.
void DrawLines(PacketTimeline& timeline, const std::vector<SungLine>& lines,
               double firstPageSeconds)
{
    constexpr double kRestSeconds = 0.35; // a sung line stays this long
    std::array<const SungLine*, 4> inSlot = {};
    double seconds = firstPageSeconds;
    for (const SungLine& line : lines) {
        const SungLine*& before = inSlot[static_cast<std::size_t>(line.line.slot)];
        const IndexImage shown = before ? Sung(before->image) : IndexImage();
        if (before)
            seconds = std::max(seconds, before->EndSeconds() + kRestSeconds);
        const int firstRow = FirstRowOf(line.line.slot);
        seconds = DrawRows(timeline, seconds, shown, line.image, firstRow, firstRow + 2);
        if (seconds > line.StartSeconds())
            throw std::runtime_error("a line is sung before it is drawn");
        before = &line;
    }
}

void DrawEnding(PacketTimeline& timeline, const std::vector<SungLine>& lines)
{
    const double sung = lines.back().EndSeconds();
    const double scrolled = ScrollUp(timeline, sung - 0.4, kRows - 2, 1.0 / 150.0);
    double seconds = timeline.Place(scrolled, MemoryPreset(kBackground));
    seconds = timeline.Place(seconds, BorderPreset(kTitleBorder));
    DrawRows(timeline, seconds, IndexImage(), LastPage(), 0, kRows - 1);
    Fade(timeline, kSongSeconds - 1.2, 1.0, 0.0);
}

} // namespace

std::vector<CdgPacket> DrawSong()
{
    constexpr double kTitleFadeSeconds = 7.3;
    constexpr double kFirstPageSeconds = kTitleFadeSeconds + 0.9;
    constexpr int kChorusTick = (kIntroBars + 8) * kTicksPerBar - kUpbeatTicks;

    const std::vector<SungLine> lines = SungLines();
    PacketTimeline timeline(kSongSeconds);
    // What has its time comes first: wipes, borders, fades. Drawing fills what they leave.
    for (const SungLine& line : lines)
        Wipe(timeline, line);
    timeline.Place(kChorusTick * kTickSeconds, BorderPreset(kChorusBorder));
    DrawTitle(timeline, kTitleFadeSeconds);

    timeline.Place(kFirstPageSeconds, MemoryPreset(kBackground));
    timeline.Place(kFirstPageSeconds, BorderPreset(kVerseBorder));
    const double firstSung = lines.front().StartSeconds();
    Fade(timeline, firstSung - 3.3, 0.0, 1.0);
    CountIn(timeline, firstSung - 3.5, firstSung);
    DrawLines(timeline, lines, kFirstPageSeconds + 0.02);
    DrawEnding(timeline, lines);
    return timeline.Packets();
}

} // namespace lantern::demo
