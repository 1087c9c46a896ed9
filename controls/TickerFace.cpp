// SPDX-License-Identifier: GPL-3.0-or-later
#include "TickerFace.h"

#include "Application.h"

namespace lantern {

TickerCover CoverFor(std::int32_t seconds, bool state)
{
    if (seconds == -1)
        return TickerCover::Loading;
    return seconds == 0 && !state ? TickerCover::Idle : TickerCover::None;
}

TickerTime TimeOf(std::int32_t seconds)
{
    const std::int32_t minutes = seconds / 60 % 100;
    const std::int32_t rest = seconds % 60;
    return {{static_cast<std::int16_t>(rest % 10), static_cast<std::int16_t>(rest / 10),
             static_cast<std::int16_t>(minutes % 10), static_cast<std::int16_t>(minutes / 10)},
            rest};
}

QString TickerText(TickerCover cover, const TickerDigits& digits)
{
    switch (cover) {
    case TickerCover::Idle:
        return kApplicationTitle;
    case TickerCover::Loading:
        return QStringLiteral("LOADING");
    default:
        return QStringLiteral("%1%2:%3%4")
            .arg(digits[3])
            .arg(digits[2])
            .arg(digits[1])
            .arg(digits[0]);
    }
}

} // namespace lantern
