// SPDX-License-Identifier: GPL-3.0-or-later
#include "WheelTurns.h"

namespace lantern {
namespace {

constexpr int kNotch = 120; // eighths of a degree

} // namespace

int WheelTurns::Add(int angleDelta)
{
    const bool turnsBack = (angleDelta > 0 && m_gathered < 0) || (angleDelta < 0 && m_gathered > 0);
    m_gathered = (turnsBack ? 0 : m_gathered) + angleDelta;
    const int notches = m_gathered / kNotch;
    m_gathered %= kNotch;
    return notches > 0 ? 1 : notches < 0 ? -1 : 0;
}

} // namespace lantern
