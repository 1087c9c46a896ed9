// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenMetrics.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

constexpr double kTwipsPerInch = 1440;

std::int32_t TwipsAt(double dotsPerInch)
{
    return static_cast<std::int32_t>(
        std::lround(kTwipsPerInch / std::clamp(dotsPerInch, 24.0, kTwipsPerInch)));
}

} // namespace

TwipsPerPixel ScreenTwips()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    return {TwipsAt(screen->logicalDotsPerInchX()), TwipsAt(screen->logicalDotsPerInchY())};
}

QRect DesktopRect()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect();
}

bool KnowsWindowPlaces()
{
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

} // namespace lantern
