// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "SoundHealth.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>

namespace lantern::tool {

// What measures sounds is a module of its own, loaded where it is needed: its libraries take longer
// to load than a thumbnail takes to draw.
//
// The result is null if there is no such module; why, is in `error` then.
std::unique_ptr<AudioEngine> LoadMeasuringEngine(QString& error);

// What a decode of the whole sound finds: of the file, or of the bytes where the path is empty. It
// takes as long as such a decode, and no longer than a minute. Nothing if there is no such module.
SoundHealth ExamineSound(const QString& path, std::span<const std::uint8_t> bytes);

// What the module is asked for, by its name there. The engine is the caller's to delete.
using MakeEngine = AudioEngine* (*)();
inline constexpr const char* kMakeEngine = "LanternMakeMeasuringEngine";
using Examine = void (*)(const QString& path, std::span<const std::uint8_t> bytes,
                         SoundHealth& health);
inline constexpr const char* kExamine = "LanternExamineSound";

} // namespace lantern::tool
