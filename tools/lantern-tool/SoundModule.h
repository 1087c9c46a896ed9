// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"

#include <QString>

#include <memory>

namespace lantern::tool {

// What measures sounds is a module of its own, loaded where it is needed: its libraries take longer
// to load than a thumbnail takes to draw.
//
// The result is null if there is no such module; why, is in `error` then.
std::unique_ptr<AudioEngine> LoadMeasuringEngine(QString& error);

// What the module is asked for, by its name there. The engine is the caller's to delete.
using MakeEngine = AudioEngine* (*)();
inline constexpr const char* kMakeEngine = "LanternMakeMeasuringEngine";

} // namespace lantern::tool
