// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundModule.h"

#include "ToolModule.h"

namespace lantern::tool {

std::unique_ptr<AudioEngine> LoadMeasuringEngine(QString& error)
{
    const auto make = reinterpret_cast<MakeEngine>(
        ModuleFunction(LANTERN_SOUND_FROM_PROGRAM, kMakeEngine, error));
    if (make)
        return std::unique_ptr<AudioEngine>(make());
    error = QStringLiteral("Cannot load what measures sounds: ") + error;
    return nullptr;
}

SoundHealth ExamineSound(const QString& path, std::span<const std::uint8_t> bytes)
{
    SoundHealth health;
    QString ignored;
    const auto examine =
        reinterpret_cast<Examine>(ModuleFunction(LANTERN_SOUND_FROM_PROGRAM, kExamine, ignored));
    if (examine)
        examine(path, bytes, health);
    return health;
}

} // namespace lantern::tool
