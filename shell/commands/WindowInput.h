// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "KeyCodes.h"
#include "KeyRepeats.h"
#include "WheelTurns.h"

#include <QWheelEvent>

#include <cstdint>

namespace lantern {

// The player, as the keys and the wheel of its windows act on it.
class InputTarget {
public:
    virtual ~InputTarget() = default;

    virtual void DoKeyDown(KeyCode keyCode, ShiftBits shift) = 0;
    virtual void DoKeyUp(KeyCode keyCode, ShiftBits shift) = 0;
    virtual void MouseWheel(std::int32_t keys, std::int32_t delta, std::int32_t x,
                            std::int32_t y) = 0;
    // Opens the stage window, or closes it.
    virtual void ToggleStage() = 0;
};

// The keys and the wheel of one window, on their way to the player. F2 is no key of the player's
// table: it is for the stage window, before the table is asked.
class WindowInput {
public:
    // The player is borrowed.
    explicit WindowInput(InputTarget& player) : m_player(player) {}

    void KeyPress(const QKeyEvent& event);
    void KeyRelease(const QKeyEvent& event);
    void Wheel(const QWheelEvent& event);

private:
    InputTarget& m_player;
    KeyRepeats m_keyRepeats;
    WheelTurns m_wheelTurns;
};

} // namespace lantern
