// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgressBar.h"

#include "ErrorLine.h"
#include "Interruption.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace lantern::tool {
namespace {

using namespace std::chrono_literals;

// Before that nobody wants to know, and more often nobody sees.
constexpr auto kPatience = 500ms;
constexpr auto kPace = 100ms;
constexpr int kCells = 30;

QByteArray TimeText(std::chrono::seconds time)
{
    const auto seconds = time.count();
    if (seconds < 60)
        return QByteArray::number(static_cast<qint64>(seconds)) + " s";
    if (seconds < 3600)
        return QByteArray::number(static_cast<qint64>((seconds + 30) / 60)) + " min";
    return QByteArray::number(static_cast<qint64>(seconds / 3600)) + " h " +
           QByteArray::number(static_cast<qint64>(seconds % 3600 / 60)) + " min";
}

} // namespace

QByteArray ProgressText(double tracksDone, std::size_t tracks, std::chrono::seconds elapsed)
{
    const double part =
        tracks == 0 ? 1 : std::clamp(tracksDone / static_cast<double>(tracks), 0.0, 1.0);
    const int cells = static_cast<int>(std::floor(part * kCells));
    QByteArray text = '[' + QByteArray(cells, '#') + QByteArray(kCells - cells, '.') + "] " +
                      QByteArray::number(static_cast<int>(part * 100)).rightJustified(3) + '%';
    if (tracks > 1) {
        text += ", " + QByteArray::number(static_cast<qint64>(tracksDone)) + " of " +
                QByteArray::number(static_cast<qint64>(tracks)) + " tracks";
    }
    // A first glance tells nothing of the rest.
    constexpr double kTellingPart = 0.02;
    if (part >= kTellingPart && part < 1 && elapsed >= 3s) {
        const double left = static_cast<double>(elapsed.count()) * (1 - part) / part;
        text += ", " + TimeText(std::chrono::seconds(std::llround(left))) + " left";
    }
    return text;
}

ProgressBar::ProgressBar(bool isWanted, std::size_t tracks) : m_isWanted(isWanted), m_tracks(tracks)
{
}

bool ProgressBar::IsOnTerminal()
{
    return isatty(fileno(ErrorStream())) == 1;
}

void ProgressBar::Show(double tracksDone)
{
    const auto now = Clock::now();
    if (!m_isWanted || now - m_start < kPatience || now - m_shownAt < kPace)
        return;
    m_shownAt = now;
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(now - m_start);
    if (!m_isShown)
        Interruption::SetLineShown(true);
    m_isShown = true;
    std::fprintf(ErrorStream(), "\r%s\x1B[K",
                 ProgressText(tracksDone, m_tracks, elapsed).constData());
}

void ProgressBar::Hide()
{
    if (!m_isShown)
        return;
    std::fputs("\r\x1B[K", ErrorStream());
    m_isShown = false;
    Interruption::SetLineShown(false);
}

} // namespace lantern::tool
