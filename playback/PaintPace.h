// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DisplayHost.h"
#include "Painter.h"

namespace lantern {

// Passes on the paints that the packets ask for, and tells the window when to thin them out. The
// usual twenty a second, and the fades and flashes of a disc, are all shown. A track may ask for
// hundreds a second, though, each of the whole picture: nobody sees so many, but a large window
// would keep the processor busy with them. Such paints get a small share of the time.
//
// Everything runs on the user-interface thread. Times are seconds of the host's SystemTimer.
class PaintPace : public Painter {
public:
    PaintPace(Painter& painter, DisplayHost& host);

    void PaintDisplay() override;

    // How long the window has to hold back its next painting: 0 for not at all. More may be asked
    // for in the meantime, so look again after that.
    double SecondsToWait() const;
    // The window has painted since the moment given.
    void NotePainted(double since);

private:
    double LevelAt(double now) const;

    Painter& m_painter;
    DisplayHost& m_host;
    double m_level = 0; // of the paints asked for, above those that every track may have
    double m_levelTime = 0;
    double m_paintedUntil = 0;
    double m_paintSeconds = 0; // that the last painting took
};

} // namespace lantern
