// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"

#include <memory>

namespace lantern {

// The engine that plays on the system's sound devices. It wants a QCoreApplication to exist, and
// belongs to the thread that makes it.
std::unique_ptr<AudioEngine> MakeAudioEngine();

} // namespace lantern
