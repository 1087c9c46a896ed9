// SPDX-License-Identifier: GPL-3.0-or-later
#include "Commands.h"

#include "AudioEngine.h"
#include "CommandTable.h"
#include "KeyMap.h"
#include "Track.h"

#include <algorithm>

namespace lantern {

Commands::Commands(const CommandTargets& targets) : m_targets(targets)
{
}

void Commands::MainPopup(CommandId command)
{
    if (const int device = NumberOf(command) - kFirstDeviceCommand; device >= 0) {
        m_targets.audio.SetAudioDevice(m_targets.engine.GetDeviceName(device));
        return;
    }
    const auto* row = std::ranges::find(kCommandTable, command, &Command::id);
    if (row != kCommandTable.end())
        row->run(m_targets);
}

void Commands::DoKeyDown(KeyCode keyCode, ShiftBits shift)
{
    if (m_targets.track.MediaLoading)
        return;
    if (!m_keyHeld)
        RunKey(keyCode, shift);
    if (!RepeatsWhileHeld(keyCode))
        m_keyHeld = true;
}

void Commands::DoKeyUp(KeyCode, ShiftBits)
{
    m_keyHeld = false;
}

void Commands::RunKey(KeyCode keyCode, ShiftBits shift)
{
    for (const KeyBinding& binding : kKeyMap) {
        if (binding.key != keyCode || !binding.shift.Holds(shift))
            continue;
        if (binding.run)
            binding.run(m_targets);
        else
            MainPopup(*binding.command);
        return;
    }
}

} // namespace lantern
