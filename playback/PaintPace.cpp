// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaintPace.h"

#include <algorithm>

namespace lantern {
namespace {

// What a track may ask for a second, and beyond that at once.
constexpr double kSteadyRate = 60;
constexpr double kBurst = 30;
// It has to be calm for a tenth of a second to count as calm.
constexpr double kMostLevel = kBurst + kSteadyRate / 10;
// Of the time, for the painting of what is above.
constexpr double kShare = 0.02;
// However long a painting takes: three pictures a second.
constexpr double kLongestWait = 1.0 / 3;

} // namespace

PaintPace::PaintPace(Painter& painter, DisplayHost& host) : m_painter(painter), m_host(host)
{
}

void PaintPace::PaintDisplay()
{
    const double now = m_host.SystemTimer();
    m_level = std::min(LevelAt(now) + 1, kMostLevel);
    m_levelTime = now;
    m_painter.PaintDisplay();
}

double PaintPace::LevelAt(double now) const
{
    return std::max(m_level - kSteadyRate * (now - m_levelTime), 0.0);
}

double PaintPace::SecondsToWait() const
{
    const double now = m_host.SystemTimer();
    const double toCalm = (LevelAt(now) - kBurst) / kSteadyRate;
    const double toShare = m_paintedUntil + std::min(m_paintSeconds / kShare, kLongestWait) - now;
    return std::max(std::min(toCalm, toShare), 0.0);
}

void PaintPace::NotePainted(double since)
{
    m_paintedUntil = m_host.SystemTimer();
    m_paintSeconds = m_paintedUntil - since;
}

} // namespace lantern
