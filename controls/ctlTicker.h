// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OwnerDrawn.h"
#include "TickerFace.h"

#include <array>

namespace lantern {

// A strip that shows a time as mm:ss, or one of two fixed pictures in its place: what the program
// is called, and that it is loading. It keeps no time of its own.
class ctlTicker : public OwnerDrawn {
public:
    explicit ctlTicker(QWidget* parent, Ambient ambient = {});

    // Places are in twips.
    MouseHandler MouseDown;
    MouseHandler MouseUp;

    // Shows LOADING for -1 seconds, what the program is called for 0 seconds without state, else
    // the time. A time's minutes are taken off the seconds that were passed.
    void SetTicker(std::int32_t& seconds, bool state);
    void SetTicker(std::int32_t&& seconds, bool state) { SetTicker(seconds, state); }

    // What the strip says, in letters.
    QString ShownText() const { return TickerText(m_cover, m_shown); }

    Spoken Speak() const override;

protected:
    void SurfaceResized() override { DrawAll(); }
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // Whether something else is shown now.
    bool ChangeDigits(const TickerDigits& digits);
    bool SetCover(TickerCover cover);
    void DrawAll();
    void DrawDigit(std::size_t index);

    std::array<PictureReference, 10> m_num;
    PictureReference m_colon;
    PictureReference m_idle;
    PictureReference m_loading;

    TickerDigits m_shown{};
    TickerCover m_cover = TickerCover::None;
    std::int32_t m_lastSeconds = -999;
    bool m_lastState = false;
};

} // namespace lantern
