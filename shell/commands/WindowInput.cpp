// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowInput.h"

#include "KeyMap.h"

namespace lantern {

void WindowInput::KeyPress(const QKeyEvent& event)
{
    if (event.key() == Qt::Key_F2) {
        if (!m_keyRepeats.IsRepeat(event))
            m_player.ToggleStage();
        return;
    }
    const KeyCode key = KeyCodeOf(event);
    // The release before an unmarked repeat has already counted as one.
    if (m_keyRepeats.IsRepeat(event) && !RepeatsWhileHeld(key))
        return;
    m_player.DoKeyDown(key, ShiftBitsOf(event));
}

void WindowInput::KeyRelease(const QKeyEvent& event)
{
    m_keyRepeats.NoteRelease(event);
    if (event.key() == Qt::Key_F2)
        return;
    // Some systems report releases while a key that repeats is still down.
    if (!event.isAutoRepeat())
        m_player.DoKeyUp(KeyCodeOf(event), ShiftBitsOf(event));
}

void WindowInput::Wheel(const QWheelEvent& event)
{
    if (const int notch = m_wheelTurns.Add(event.angleDelta().y()); notch != 0)
        m_player.MouseWheel(0, notch, 0, 0);
}

} // namespace lantern
