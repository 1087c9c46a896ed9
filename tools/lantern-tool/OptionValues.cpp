// SPDX-License-Identifier: GPL-3.0-or-later
#include "OptionValues.h"

#include "FrameWriter.h"

#include <QStringList>

#include <cmath>
#include <limits>

namespace lantern::tool {

std::optional<QSize> SizeFrom(const QString& text)
{
    const QStringList sides = text.split(u'x');
    if (sides.size() != 2)
        return std::nullopt;
    const std::optional<int> width = NumberFrom(sides[0], 1, kLargestFrame);
    const std::optional<int> height = NumberFrom(sides[1], 1, kLargestFrame);
    return width && height ? std::optional(QSize(*width, *height)) : std::nullopt;
}

std::optional<std::int32_t> MsFromSeconds(const QString& text)
{
    bool isNumber = false;
    const double positionMs = std::round(text.toDouble(&isNumber) * 1000);
    // A NaN is not in the range, either.
    if (!isNumber || !(positionMs >= 0 && positionMs <= std::numeric_limits<std::int32_t>::max()))
        return std::nullopt;
    return static_cast<std::int32_t>(positionMs);
}

std::optional<int> NumberFrom(const QString& text, int least, int most)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

} // namespace lantern::tool
