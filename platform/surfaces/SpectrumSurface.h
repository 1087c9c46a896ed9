// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SpectrumAnalyser.h"
#include "SpectrumLayout.h"
#include "SpectrumMotion.h"
#include "SpectrumPaint.h"
#include "SystemColours.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <vector>

namespace lantern {

// A black field on which the spectrum of the sound that is heard stands as bars.
//
// It measures and draws once a frame of the screen while it is on, can be seen, and a sound plays
// or its bars still fall; at any other time nothing of it runs. It can't be seen when it is
// hidden, in a minimised window, or behind another widget of its window.
class SpectrumSurface : public QWidget {
public:
    explicit SpectrumSurface(QWidget* parent);
    ~SpectrumSurface() override;

    // Borrows what measures the sound until another is attached or the surface is gone. Null is
    // none: the surface stays black. It starts without one, and off.
    void Attach(SpectrumAnalyser* analyser);
    void SetOn(bool on);
    void SetFirstColour(ColourValue colour);  // of the bars
    void SetSecondColour(ColourValue colour); // of their feet and their caps

    bool IsRunning() const { return m_timer.isActive(); }
    const SpectrumMotion& Motion() const { return m_motion; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool CanBeSeen() const;
    bool HasWork() const;
    void Wake();
    void Rest();
    void Advance();
    void FitBars();

    SpectrumAnalyser* m_analyser = nullptr;
    bool m_isOn = false;
    ColourValue m_firstColour = DirectColour(0xFF, 0xFF, 0xFF);
    ColourValue m_secondColour = DirectColour(0x80, 0x80, 0x80);

    bool m_hasNewColours = true;

    SpectrumLayout m_layout;
    SpectrumPaint m_paint;
    SpectrumMotion m_motion;
    std::vector<float> m_strengths;
    QTimer m_timer;
    QElapsedTimer m_sinceAdvance;
};

// Milliseconds from frame to frame of a screen that shows so many a second; of a usual one if the
// number makes no sense.
int FrameMs(qreal framesPerSecond);

} // namespace lantern
