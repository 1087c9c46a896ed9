// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumPaint.h"

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

QRgb Mixed(QRgb from, QRgb to, float part)
{
    const auto mixed = [part](int a, int b) {
        return static_cast<int>(
            std::lround(static_cast<float>(a) + part * static_cast<float>(b - a)));
    };
    return qRgb(mixed(qRed(from), qRed(to)), mixed(qGreen(from), qGreen(to)),
                mixed(qBlue(from), qBlue(to)));
}

} // namespace

SpectrumPaint::SpectrumPaint(const SpectrumLayout& layout, QRgb first, QRgb second)
    : m_layout(layout), m_tallestBar(layout.barWidth, layout.height, QImage::Format_RGB32),
      m_capColour(second)
{
    for (int y = 0; y < m_tallestBar.height(); ++y) {
        const float up = static_cast<float>(layout.height - y) / static_cast<float>(layout.height);
        const QRgb colour = Mixed(second, first, std::min(up * 2.0F, 1.0F));
        for (int x = 0; x < m_tallestBar.width(); ++x)
            m_tallestBar.setPixel(x, y, colour);
    }
}

void SpectrumPaint::DrawBars(QPainter& painter, std::span<const SpectrumBar> bars) const
{
    int index = 0;
    for (const SpectrumBar& bar : bars) {
        const QRect body = m_layout.Bar(index, bar.height);
        painter.drawImage(body.topLeft(), m_tallestBar,
                          QRect(0, body.top(), body.width(), body.height()));
        painter.fillRect(m_layout.Cap(index, bar.cap), m_capColour);
        ++index;
    }
}

} // namespace lantern
