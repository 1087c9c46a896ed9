// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"

#include <QScopedValueRollback>

namespace lantern {

// Keeps the tempo neutral while a sound is loaded and then measured or positioned, and hides that
// from the tick.
class TempoHold {
public:
    TempoHold(AudioEngine& engine, bool& tempoHeld)
        : m_held(tempoHeld, true), m_engine(engine), m_tempo(engine.GetEngineTempo())
    {
        m_engine.SetEngineTempo(0);
    }
    ~TempoHold() { m_engine.SetEngineTempo(m_tempo); }
    TempoHold(const TempoHold&) = delete;
    TempoHold& operator=(const TempoHold&) = delete;

private:
    QScopedValueRollback<bool> m_held;
    AudioEngine& m_engine;
    float m_tempo;
};

} // namespace lantern
