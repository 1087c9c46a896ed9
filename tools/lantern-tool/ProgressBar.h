// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <chrono>
#include <cstddef>

namespace lantern::tool {

// A line on standard error that tells how far a run has come, where that is a terminal. It comes up
// when a run takes a while, and stays for as long as nothing else is printed.
class ProgressBar {
public:
    // Not wanted, it shows nothing, whatever it is told.
    ProgressBar(bool isWanted, std::size_t tracks);
    ~ProgressBar() { Hide(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    static bool IsOnTerminal();

    void Show(double tracksDone);
    // Before something else is printed.
    void Hide();

private:
    using Clock = std::chrono::steady_clock;

    bool m_isWanted;
    std::size_t m_tracks;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_shownAt = {};
    bool m_isShown = false;
};

// What the line says after so long.
QByteArray ProgressText(double tracksDone, std::size_t tracks, std::chrono::seconds elapsed);

} // namespace lantern::tool
