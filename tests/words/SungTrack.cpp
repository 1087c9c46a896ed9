// SPDX-License-Identifier: GPL-3.0-or-later
#include "SungTrack.h"

#include "SungWords.h"
#include "TileChannel.h"

#include <QFont>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <functional>
#include <random>
#include <stdexcept>
#include <utility>

namespace lantern::test {
namespace {

// Colour indexes. A letter has one for its full pixels and, antialiased, two paler ones; sung, it
// has that with the highest bit.
constexpr std::uint8_t kGround = 0;
constexpr std::uint8_t kEdge = 1;
constexpr std::uint8_t kLetters = 4;
constexpr std::uint8_t kOtherSinger = 5;
constexpr std::uint8_t kOtherGround = 7;
constexpr std::uint8_t kSungBit = 8;
constexpr std::uint8_t kFirstOfWords = 2; // with a colour for each word

constexpr int kMarginX = 6;
constexpr int kMarginY = 12;
constexpr int kRoomX = TileChannel::kWidth - 2 * kMarginX - 8;

struct LetterPixel {
    int x = 0;
    int y = 0;
    std::uint8_t index = 0;
};

struct DrawnWord {
    std::vector<LetterPixel> pixels; // by column
    std::size_t sung = 0;            // so many of them
    int left = 0;
    int right = 0;
    double startMs = 0;
    double endMs = 0;
    std::uint8_t entry = 0; // of the palette, for a word with a colour of its own
};

struct DrawnLine {
    std::vector<DrawnWord> words;
    std::vector<LetterPixel> edge;
    int top = 0;
};

class TrackMaker {
public:
    TrackMaker(const SungStyle& style, std::uint32_t seed)
        : m_style(style), m_random(seed),
          m_channel(style.wipe != Wipe::Recolour, style.damagedOneIn, seed), m_font(style.family),
          m_firstText(static_cast<unsigned>(m_random()))
    {
        m_font.setPixelSize(style.pixelSize);
        m_font.setBold(style.bold);
        m_font.setItalic(style.italic);
        if (!style.antialiased)
            m_font.setStyleStrategy(QFont::NoAntialias);
        // Where several foundries have a typeface, the name has theirs behind it.
        if (!QFontInfo(m_font).family().startsWith(style.family))
            throw std::runtime_error("no font " + style.family.toStdString());
        m_scale = style.doubled ? 2 : 1;
        m_height = QFontMetrics(m_font).height() * m_scale;
        m_pitch = style.paging == Paging::Scroll
                      ? 36
                      : (TileChannel::kHeight - 2 * kMarginY) / style.lines;
        for (int entry = 0; entry < TileChannel::kColours; ++entry)
            m_palette[static_cast<std::size_t>(entry)] = ColourOf(entry);
        for (const QString& line : LinesIn(style.language)) {
            const QString text = style.capitals ? line.toUpper() : line;
            if (QFontMetrics(m_font).horizontalAdvance(text) * m_scale < kRoomX)
                m_texts.push_back(text);
        }
        if (m_texts.size() < 6)
            throw std::runtime_error("too large: " + style.name);
    }

    SungTrack Make(int lineCount);

private:
    double NowMs() const { return m_channel.SentCount() * 1000.0 / kPacketsPerSecond; }
    double Random(double from, double to)
    {
        return from + (to - from) * static_cast<double>(m_random() % 1000) / 1000.0;
    }
    std::uint16_t ColourOf(int entry) const;
    std::uint8_t Ground(int x, int y) const
    {
        return m_style.textured && (x / 3 + y / 4 + x * y / 50) % 3 == 0 ? kOtherGround : kGround;
    }
    void RunUntil(double ms);
    DrawnLine Lay(const QString& text, int slot, bool isOtherSinger);
    void Draw(DrawnLine& line);
    void Erase(const DrawnLine& line);
    void Sing(DrawnLine& line, const std::function<void()>& meanwhile);
    void LightUp(DrawnLine& line, DrawnWord& word);
    void ClearPage();
    void Fade(int from, int to);
    void ScrollBy(DrawnLine& line, int tiles);
    void PassBreak();
    QString TextOf(int number) const;
    void BeginPage(int first, int end);
    void SingScrolling(int number);
    void SingReplacing(int number, int end);

    const SungStyle& m_style;
    std::mt19937 m_random;
    TileChannel m_channel;
    TileChannel::Palette m_palette{};
    QFont m_font;
    int m_scale = 1;
    int m_height = 0;
    int m_pitch = 0;
    std::uint8_t m_nextEntry = kFirstOfWords;
    std::vector<DrawnLine> m_page;
    int m_first = 0;     // the number of its first line
    QStringList m_texts; // those for which there is room
    unsigned m_firstText;
    SungTrack m_track;
};

std::uint16_t TrackMaker::ColourOf(int entry) const
{
    if (m_style.wipe == Wipe::Palette && entry >= kFirstOfWords)
        return 0xFFF;
    switch (entry) {
    case kGround:
        return 0x004;
    case kEdge:
        return 0x000;
    case kOtherGround:
        return 0x125;
    case kLetters - 2:
        return 0x558;
    case kLetters - 1:
        return 0xAAC;
    case kLetters:
        return 0xFFF;
    case kOtherSinger:
        return 0x8CF;
    case (kLetters - 2) | kSungBit:
        return 0x533;
    case (kLetters - 1) | kSungBit:
        return 0xA62;
    case kLetters | kSungBit:
        return 0xF91;
    case kOtherSinger | kSungBit:
        return 0xF3A;
    default:
        return 0x000;
    }
}

QString TrackMaker::TextOf(int number) const
{
    const auto which = (m_firstText + unsigned(number)) % unsigned(m_texts.size());
    return m_texts[static_cast<qsizetype>(which)];
}

void TrackMaker::RunUntil(double ms)
{
    while (NowMs() < ms)
        m_channel.SendOne();
}

DrawnLine TrackMaker::Lay(const QString& text, int slot, bool isOtherSinger)
{
    const QFontMetrics metrics(m_font);
    const int width = metrics.horizontalAdvance(text) * m_scale;
    const int left = std::max(kMarginX + 3, (TileChannel::kWidth - width) / 2);
    DrawnLine line;
    line.top = kMarginY + slot * m_pitch + (m_pitch - m_height) / 2;
    int at = 0;
    for (const QString& wordText : text.split(u' ')) {
        DrawnWord word;
        word.entry = m_nextEntry++;
        const int wordLeft = left + metrics.horizontalAdvance(text.left(at)) * m_scale;
        at += static_cast<int>(wordText.size()) + 1;
        constexpr int kRoom = 8;
        QImage image(metrics.horizontalAdvance(wordText) + 3 * kRoom, metrics.height() + 2,
                     QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setPen(Qt::white);
        painter.setFont(m_font);
        painter.drawText(kRoom, metrics.ascent(), wordText);
        painter.end();
        word.left = TileChannel::kWidth;
        for (int x = 0; x < image.width() * m_scale; ++x) {
            for (int y = 0; y < image.height() * m_scale; ++y) {
                const int grey = qGray(image.pixel(x / m_scale, y / m_scale));
                const int level = m_style.antialiased ? (grey + 42) / 85 : (grey > 127 ? 3 : 0);
                if (level == 0)
                    continue;
                const int pixelX = wordLeft + x - kRoom * m_scale;
                std::uint8_t index = std::uint8_t(kLetters - 3 + level);
                if (isOtherSinger)
                    index = kOtherSinger;
                if (m_style.wipe == Wipe::Palette)
                    index = word.entry;
                word.pixels.push_back({pixelX, y, index});
                word.left = std::min(word.left, pixelX);
                word.right = std::max(word.right, pixelX);
            }
        }
        for (const LetterPixel& pixel : word.pixels) {
            if (m_style.outlined) {
                for (int dx = -1; dx <= 1; ++dx) {
                    for (int dy = -1; dy <= 1; ++dy)
                        line.edge.push_back({pixel.x + dx, pixel.y + dy, kEdge});
                }
            }
            if (m_style.shadowed)
                line.edge.push_back({pixel.x + 2, pixel.y + 2, kEdge});
        }
        line.words.push_back(std::move(word));
    }
    return line;
}

void TrackMaker::Draw(DrawnLine& line)
{
    for (const LetterPixel& pixel : line.edge)
        m_channel.Put(pixel.x, pixel.y + line.top, pixel.index, TileChannel::Urgency::Drawn);
    for (const DrawnWord& word : line.words) {
        for (const LetterPixel& pixel : word.pixels)
            m_channel.Put(pixel.x, pixel.y + line.top, pixel.index, TileChannel::Urgency::Drawn);
    }
}

void TrackMaker::Erase(const DrawnLine& line)
{
    for (int y = line.top - 2; y < line.top + m_height + 3; ++y) {
        for (int x = 0; x < TileChannel::kWidth; ++x)
            m_channel.Put(x, y, Ground(x, y), TileChannel::Urgency::Drawn);
    }
}

void TrackMaker::LightUp(DrawnLine& line, DrawnWord& word)
{
    const double done = (NowMs() - word.startMs) / (word.endMs - word.startMs);
    if (done < 0 || word.sung == word.pixels.size())
        return;
    if (m_style.wipe == Wipe::Palette) {
        m_palette[word.entry] = 0xF91;
        m_channel.Load(m_palette);
        word.sung = word.pixels.size();
        return;
    }
    constexpr int kStep = 3;
    const int width = word.right - word.left + 1;
    int until = word.left + (static_cast<int>(done * width) / kStep + 1) * kStep;
    if (m_style.wipe == Wipe::Recolour)
        until = (until / 6 + 1) * 6;
    if (done >= 1 || m_style.wipe == Wipe::LineAtOnce)
        until = TileChannel::kWidth;
    for (; word.sung < word.pixels.size() && word.pixels[word.sung].x < until; ++word.sung) {
        const LetterPixel& pixel = word.pixels[word.sung];
        const int y = pixel.y + line.top;
        m_channel.Put(pixel.x, y,
                      m_style.wipe == Wipe::Vanish ? Ground(pixel.x, y)
                                                   : std::uint8_t(pixel.index | kSungBit),
                      TileChannel::Urgency::Sung);
    }
}

void TrackMaker::Sing(DrawnLine& line, const std::function<void()>& meanwhile)
{
    double at = NowMs() + Random(100, 400);
    const double lineStart = at;
    std::vector<KnownWord>& known = m_track.lines.back();
    for (std::size_t i = 0; i < line.words.size(); ++i) {
        DrawnWord& word = line.words[i];
        const double length = 120 + 4.0 * (word.right - word.left) * Random(0.7, 1.6);
        word.startMs = m_style.wipe == Wipe::LineAtOnce ? lineStart : at;
        word.endMs = at + length;
        known[i].startMs = word.startMs;
        at += length + (m_random() % 3 == 0 ? Random(0, 150) : 0);
    }
    bool isDue = true;
    while (NowMs() < at) {
        for (DrawnWord& word : line.words)
            LightUp(line, word);
        if (std::exchange(isDue, isDue && NowMs() < lineStart + 500) != isDue)
            meanwhile();
        m_channel.SendOne();
    }
    for (DrawnWord& word : line.words)
        LightUp(line, word);
}

// From one brightness of all colours to another, in eighths.
void TrackMaker::Fade(int from, int to)
{
    for (int light = from; light != to; light += to > from ? 1 : -1) {
        TileChannel::Palette dimmed{};
        for (std::size_t entry = 0; entry < dimmed.size(); ++entry) {
            for (const int shift : {0, 4, 8})
                dimmed[entry] |=
                    std::uint16_t((m_palette[entry] >> shift & 15) * light / 8 << shift);
        }
        m_channel.Load(dimmed);
        RunUntil(NowMs() + 60);
    }
    m_channel.Load(m_palette);
}

void TrackMaker::ClearPage()
{
    if (m_style.faded)
        Fade(8, 0);
    m_channel.Clear(kGround);
    if (m_style.faded)
        Fade(0, 8);
    if (m_style.wipe == Wipe::Palette) {
        m_nextEntry = kFirstOfWords;
        for (int entry = 0; entry < TileChannel::kColours; ++entry)
            m_palette[static_cast<std::size_t>(entry)] = ColourOf(entry);
        m_channel.Load(m_palette);
    }
    if (m_style.textured) {
        for (int y = 0; y < TileChannel::kHeight; ++y) {
            for (int x = 0; x < TileChannel::kWidth; ++x)
                m_channel.Put(x, y, Ground(x, y), TileChannel::Urgency::Drawn);
        }
        while (!m_channel.IsIdle())
            m_channel.SendOne();
    }
}

void TrackMaker::ScrollBy(DrawnLine& line, int tiles)
{
    for (int i = 0; i < tiles; ++i) {
        m_channel.ScrollUp(kGround);
        line.top -= 12;
        RunUntil(NowMs() + 100);
    }
}

// A bar that grows and goes, as many tracks have one in a break.
void TrackMaker::PassBreak()
{
    ClearPage();
    m_track.breakBeginMs = NowMs();
    const double end = NowMs() + 6000;
    for (int x = 60; NowMs() < end; ++x) {
        for (int y = 100; y < 108 && x < 240; ++y)
            m_channel.Put(x, y, kLetters, TileChannel::Urgency::Drawn);
        RunUntil(NowMs() + 30);
    }
    m_track.breakEndMs = NowMs();
}

// What is on the page from this line of words on.
void TrackMaker::BeginPage(int first, int end)
{
    ClearPage();
    m_page.clear();
    m_first = first;
    if (m_style.paging == Paging::Scroll)
        return;
    for (int number = first; number < std::min(first + m_style.lines, end); ++number) {
        m_page.push_back(Lay(TextOf(number), number - first, m_style.duet && number % 3 == 1));
        Draw(m_page.back());
    }
    RunUntil(NowMs() + 2500);
}

void TrackMaker::SingScrolling(int number)
{
    constexpr int kLowest = 4;
    DrawnLine line = Lay(TextOf(number), kLowest, false);
    Draw(line);
    RunUntil(NowMs() + 900);
    ScrollBy(line, 3);
    Sing(line, [] {});
}

// While a line is sung, the one before it is replaced by one to come.
void TrackMaker::SingReplacing(int number, int end)
{
    const int slot = (number - m_first) % m_style.lines;
    const int freed = (slot + m_style.lines - 1) % m_style.lines;
    const int next = number - 1 + m_style.lines;
    Sing(m_page[static_cast<std::size_t>(slot)], [&] {
        if (number == m_first || next >= end)
            return;
        DrawnLine& line = m_page[static_cast<std::size_t>(freed)];
        Erase(line);
        line = Lay(TextOf(next), freed, false);
        Draw(line);
    });
}

SungTrack TrackMaker::Make(int lineCount)
{
    m_channel.Load(m_palette);
    ClearPage();
    RunUntil(1000);
    const int half = lineCount / 2;
    for (int number = 0; number < lineCount; ++number) {
        const int end = number < half ? half : lineCount;
        const bool isFull = m_style.paging == Paging::Pages && number == m_first + m_style.lines;
        if (number == half)
            PassBreak();
        if (number == 0 || number == half || isFull)
            BeginPage(number, end);
        m_track.lines.emplace_back();
        for (const QString& word : TextOf(number).split(u' '))
            m_track.lines.back().push_back({word, 0});
        if (m_style.paging == Paging::Scroll)
            SingScrolling(number);
        else if (m_style.paging == Paging::LineByLine)
            SingReplacing(number, end);
        else
            Sing(m_page[static_cast<std::size_t>(number - m_first)], [] {});
    }
    RunUntil(NowMs() + 1500);
    ClearPage();
    RunUntil(NowMs() + 2000);
    m_track.packets = m_channel.Take();
    return std::move(m_track);
}

} // namespace

SungTrack MakeSungTrack(const SungStyle& style, int lineCount, std::uint32_t seed)
{
    // Only the toolkit's application has fonts.
    if (!QCoreApplication::instance()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argumentCount = 1;
        static char name[] = "sung-track";
        static char* arguments[] = {name, nullptr};
        static const QGuiApplication application(argumentCount, arguments);
    }
    return TrackMaker(style, seed).Make(lineCount);
}

} // namespace lantern::test
