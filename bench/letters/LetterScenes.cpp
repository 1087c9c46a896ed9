// SPDX-License-Identifier: GPL-3.0-or-later
#include "LetterScenes.h"

#include "ImageSurface.h"

#include <QFont>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace lantern {
namespace {

constexpr int kLarge = 22; // times the picture

enum Entry : std::uint8_t { Ground, Outline, Letter, SungOutline, Sung };

struct Line {
    const char* family;
    QFont::Weight weight;
    bool italic;
    int height; // of the typeface, in the picture's pixels
    double outline;
    double sung; // part of the line's width that is wiped
    const char* words;
};

constexpr std::size_t kLines = 4;
constexpr std::array<std::array<Line, kLines>, kSceneCount> kScenes = {{
    {{{"Liberation Sans", QFont::Bold, false, 30, 2, 0.55, "Sing along with"},
      {"Liberation Sans", QFont::Bold, false, 24, 1, 0, "Every word of it"},
      {"DejaVu Sans", QFont::Bold, false, 20, 1, 0.3, "Jugglers quiz & pack"},
      {"DejaVu Sans", QFont::Normal, false, 14, 0, 0, "Words and music by R. Young, 1987"}}},
    {{{"Liberation Serif", QFont::Bold, false, 34, 1, 0.45, "Moonlight (2)"},
      {"Liberation Serif", QFont::Bold, false, 26, 2, 0, "over the valley"},
      {"C059", QFont::Bold, false, 24, 1, 0.7, "Goodbye, my friend"},
      {"C059", QFont::Normal, true, 18, 0, 0, "softly, as before a storm"}}},
    {{{"URW Gothic", QFont::DemiBold, false, 40, 2, 0.6, "Boogie 8"},
      {"URW Gothic", QFont::DemiBold, false, 22, 1, 0, "Night and day fever?"},
      {"Liberation Sans", QFont::Bold, true, 24, 1, 0.5, "Wake me, shake me"},
      {"Liberation Sans", QFont::Normal, false, 12, 0, 0,
       "Copyright reserved. Made for home use"}}},
    {{{"Z003", QFont::Medium, true, 36, 1, 0, "Lovely Rita's kiss"},
      {"DejaVu Sans", QFont::Bold, false, 26, 2, 0.35, "HEY! Mr. Fox"},
      {"Liberation Serif", QFont::Normal, true, 24, 0, 0, "the summer wind blew"},
      {"URW Gothic", QFont::DemiBold, false, 20, 0, 0.5, "zigzag, queue, jump"}}},
}};

constexpr std::array<LetterScene::Colours, kSceneCount> kPalettes = {{
    {0, 0, 85, 0, 0, 0, 255, 221, 0, 0, 0, 0, 238, 51, 34},
    {0, 0, 0, 0, 0, 170, 255, 255, 255, 255, 255, 255, 204, 0, 0},
    {0, 102, 51, 255, 255, 255, 34, 0, 68, 0, 0, 0, 255, 153, 0},
    {221, 221, 255, 255, 255, 255, 17, 17, 119, 255, 255, 255, 204, 0, 102},
}};

QFont FontOf(const Line& line)
{
    QFont font(QString::fromLatin1(line.family));
    font.setWeight(line.weight);
    font.setItalic(line.italic);
    font.setPixelSize(line.height * kLarge);
    font.setHintingPreference(QFont::PreferNoHinting);
    // Another typeface in its place would measure something else.
    if (!QFontInfo(font).family().startsWith(font.family())) {
        qFatal("No typeface %s, but %s", line.family, qPrintable(QFontInfo(font).family()));
    }
    return font;
}

QPainterPath Placed(const Line& line, double top, double bottom)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addText(0, 0, FontOf(line), QString::fromLatin1(line.words));
    const QRectF box = path.boundingRect();
    // Between the pixels' edges, as chance has it.
    path.translate(kPictureSize.width() * kLarge / 2.0 - box.center().x() + 7.3,
                   (top + bottom) / 2 - box.center().y() + 3.1);
    return path;
}

void Fill(QPainter& painter, const QPainterPath& path, Entry entry)
{
    painter.fillPath(path, QColor(entry, entry, entry));
}

void FillLine(QPainter& painter, const QPainterPath& letters, double outline, Entry outlineEntry,
              Entry letterEntry)
{
    if (outline > 0) {
        QPainterPathStroker stroker;
        stroker.setWidth(2 * outline * kLarge);
        stroker.setJoinStyle(Qt::RoundJoin);
        QPainterPath around = stroker.createStroke(letters);
        around.setFillRule(Qt::WindingFill);
        Fill(painter, around, outlineEntry);
    }
    Fill(painter, letters, letterEntry);
}

// The colour that covers most of each of the picture's pixels.
QImage Reduced(const QImage& large)
{
    QImage small(kPictureSize, QImage::Format_Grayscale8);
    for (int y = 0; y < small.height(); ++y) {
        for (int x = 0; x < small.width(); ++x) {
            std::array<int, LetterScene::kColours> counts{};
            for (int row = 0; row < kLarge; ++row) {
                const uchar* pixels = large.constScanLine(y * kLarge + row) + x * kLarge;
                for (int column = 0; column < kLarge; ++column)
                    ++counts[pixels[column]];
            }
            small.scanLine(y)[x] =
                static_cast<uchar>(std::ranges::max_element(counts) - counts.begin());
        }
    }
    return small;
}

// How much of each large pixel lies on a small one, along one axis.
struct Share {
    int first = 0;
    std::vector<float> weights;
};
std::vector<Share> SharesOf(int large, int small)
{
    std::vector<Share> shares(static_cast<std::size_t>(small));
    const double step = static_cast<double>(large) / small;
    for (int pixel = 0; pixel < small; ++pixel) {
        const double begin = pixel * step;
        const double end = begin + step;
        Share& share = shares[static_cast<std::size_t>(pixel)];
        share.first = static_cast<int>(begin);
        for (int at = share.first; at < end - 1e-9 && at < large; ++at) {
            const double part = std::min(end, at + 1.0) - std::max(begin, double(at));
            share.weights.push_back(static_cast<float>(part / step));
        }
    }
    return shares;
}

} // namespace

LetterScene::LetterScene(std::size_t number) : m_colours(kPalettes[number])
{
    m_large = QImage(kPictureSize * kLarge, QImage::Format_Grayscale8);
    m_large.fill(Ground);
    QPainter painter(&m_large);
    const double lineHeight = m_large.height() / static_cast<double>(kLines);
    double top = 0;
    for (const Line& line : kScenes[number]) {
        const QPainterPath letters = Placed(line, top, top + lineHeight);
        top += lineHeight;
        FillLine(painter, letters, line.outline, Outline, Letter);
        const QRectF box = letters.boundingRect();
        if (line.sung > 0) {
            painter.setClipRect(QRectF(0, box.top() - 3 * kLarge,
                                       box.left() + line.sung * box.width(),
                                       box.height() + 6 * kLarge));
            FillLine(painter, letters, line.outline, SungOutline, Sung);
            painter.setClipping(false);
        }
        // As tall as the typeface's lines, whatever letters there are.
        const QFontMetricsF metrics(FontOf(line));
        const double margin = line.outline * kLarge;
        const QRectF text(box.left(), box.center().y() - metrics.height() / 2, box.width(),
                          metrics.height());
        m_boxes.append(text.adjusted(-margin, -margin, margin, margin) & QRectF(m_large.rect()));
    }
    painter.end();
    m_indexes = Reduced(m_large);
}

QImage LetterScene::Truth(QSize size) const
{
    const std::vector<Share> columns = SharesOf(m_large.width(), size.width());
    const std::vector<Share> rows = SharesOf(m_large.height(), size.height());
    QImage truth(size, QImage::Format_RGB32);
    std::vector<float> sums(static_cast<std::size_t>(m_large.width()) * 3);
    for (int y = 0; y < size.height(); ++y) {
        std::ranges::fill(sums, 0.0F);
        int row = rows[static_cast<std::size_t>(y)].first;
        for (const float weight : rows[static_cast<std::size_t>(y)].weights) {
            const uchar* entries = m_large.constScanLine(row++);
            for (std::size_t sum = 0; sum < sums.size(); ++sum)
                sums[sum] += weight * m_colours[std::size_t{entries[sum / 3]} * 3 + sum % 3];
        }
        auto* pixels = reinterpret_cast<QRgb*>(truth.scanLine(y));
        for (const Share& share : columns) {
            std::array<float, 3> mean{};
            std::size_t sum = static_cast<std::size_t>(share.first) * 3;
            for (const float weight : share.weights) {
                for (float& channel : mean)
                    channel += weight * sums[sum++];
            }
            *pixels++ = qRgb(qRound(mean[0]), qRound(mean[1]), qRound(mean[2]));
        }
    }
    return truth;
}

QList<QRect> LetterScene::TextBoxes(QSize size) const
{
    const double factor = static_cast<double>(size.width()) / m_large.width();
    QList<QRect> boxes;
    for (const QRectF& box : m_boxes) {
        const QRectF scaled(box.topLeft() * factor, box.size() * factor);
        boxes.append(scaled.toAlignedRect() & QRect(QPoint(), size));
    }
    return boxes;
}

QImage LetterScene::Scaled(const QImage& indexes, QSize size, PictureLook look) const
{
    ImageSurface surface(size, look);
    VirtualBuffers buffers;
    buffers.FGvbinit();
    buffers.FGvbopen(buffers.FGvballoc(indexes.width(), indexes.height()));
    buffers.FGsetdc(&surface);
    buffers.FGsetdacs(0, kColours, m_colours);
    for (int y = 0; y < indexes.height(); ++y) {
        for (int x = 0; x < indexes.width(); ++x) {
            buffers.FGsetcolor(indexes.constScanLine(y)[x]);
            buffers.FGputpixel(x, y);
        }
    }
    buffers.FGvbscale(0, indexes.width() - 1, 0, indexes.height() - 1, 0, size.width(), 0,
                      size.height());
    return surface.Retained();
}

QImage LetterScene::Shown(QSize size, PictureLook look) const
{
    return Scaled(m_indexes, size, look);
}

QImage LetterScene::ShownBilinear(QSize size) const
{
    return Scaled(m_indexes, kPictureSize, PictureLook::Sharp)
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage LetterScene::ShownByEpx(QSize size) const
{
    QImage larger(kPictureSize * 3, QImage::Format_Grayscale8);
    const auto at = [&](int x, int y) {
        return m_indexes.constScanLine(std::clamp(
            y, 0, kPictureSize.height() - 1))[std::clamp(x, 0, kPictureSize.width() - 1)];
    };
    for (int y = 0; y < kPictureSize.height(); ++y) {
        for (int x = 0; x < kPictureSize.width(); ++x) {
            const uchar a = at(x - 1, y - 1), b = at(x, y - 1), c = at(x + 1, y - 1);
            const uchar d = at(x - 1, y), e = at(x, y), f = at(x + 1, y);
            const uchar g = at(x - 1, y + 1), h = at(x, y + 1), i = at(x + 1, y + 1);
            std::array<uchar, 9> out;
            out.fill(e);
            if (b != h && d != f) {
                out = {d == b ? d : e,
                       (d == b && e != c) || (b == f && e != a) ? b : e,
                       b == f ? f : e,
                       (d == b && e != g) || (d == h && e != a) ? d : e,
                       e,
                       (b == f && e != i) || (h == f && e != c) ? f : e,
                       d == h ? d : e,
                       (d == h && e != i) || (h == f && e != g) ? h : e,
                       h == f ? f : e};
            }
            for (int part = 0; part < 9; ++part)
                larger.scanLine(3 * y + part / 3)[3 * x + part % 3] =
                    out[static_cast<std::size_t>(part)];
        }
    }
    return Scaled(larger, size, PictureLook::Sharp);
}

} // namespace lantern
