// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumLayout.h"

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

// In pixels of the layout.
constexpr qreal kBarWidth = 4.0;
constexpr qreal kGap = 1.0;
constexpr qreal kCapHeight = 1.0;

int AtLeastOne(qreal pixels)
{
    return std::max(static_cast<int>(std::lround(pixels)), 1);
}

int Reached(float part, int pixels)
{
    return static_cast<int>(std::lround(std::clamp(part, 0.0F, 1.0F) * static_cast<float>(pixels)));
}

} // namespace

SpectrumLayout LayOutSpectrum(QSize deviceSize, qreal ratio)
{
    SpectrumLayout layout;
    const int gap = AtLeastOne(kGap * ratio);
    layout.barWidth = AtLeastOne(kBarWidth * ratio);
    layout.pitch = layout.barWidth + gap;
    layout.capHeight = AtLeastOne(kCapHeight * ratio);
    layout.capGap = gap;
    layout.height = deviceSize.height();
    const bool hasRoom = layout.height > layout.capHeight + layout.capGap;
    layout.count = hasRoom ? std::max((deviceSize.width() + gap) / layout.pitch, 0) : 0;
    layout.left = (deviceSize.width() - layout.count * layout.pitch + gap) / 2;
    return layout;
}

QRect SpectrumLayout::Bar(int index, float part) const
{
    const int reached = Reached(part, height - capHeight - capGap);
    return {left + index * pitch, height - reached, barWidth, reached};
}

QRect SpectrumLayout::Cap(int index, float part) const
{
    const int reached = Reached(part, height - capHeight - capGap);
    const int top = height - reached - capGap - capHeight;
    return {left + index * pitch, top, barWidth, reached > 0 ? capHeight : 0};
}

} // namespace lantern
